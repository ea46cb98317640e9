#pragma once

#include <QStandardItemModel>

class KPBookmarkCommands;
struct KPBookmark;

// The outline of saved searches: their titles, and in a second column what they look for.
// Threads: main. Ownership: the commands must outlive it.
class KPBookmarkModel : public QStandardItemModel
{
    Q_OBJECT

public:
    enum Role { Identifier = Qt::UserRole };

    explicit KPBookmarkModel(KPBookmarkCommands &commands, QObject *parent = nullptr);
    ~KPBookmarkModel() override;
    void rebuild();
    QModelIndex indexOf(const QString &identifier) const;

    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

private:
    static void fill(QStandardItem *above, const KPBookmark &folder);

    KPBookmarkCommands &m_commands;
};
