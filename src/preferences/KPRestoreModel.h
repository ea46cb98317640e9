#pragma once

#include "KarvexRestore.h"

#include <QAbstractTableModel>
#include <QBitArray>

// What a restore would change: a row a file, with what it has now and what it would have then, and
// a box that says whether it is to be changed. Threads: main.
class KPRestoreModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, Folder, Before, After, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    // All of them are chosen.
    void setChanges(const QList<KarvexRestore::Change> &changes);
    qsizetype chosenCount() const { return m_chosen.count(true); }
    // By their paths in the backup.
    QSet<QString> chosen() const;
    void choose(bool all);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void chosenChanged();

private:
    QList<KarvexRestore::Change> m_changes;
    QBitArray m_chosen;
};
