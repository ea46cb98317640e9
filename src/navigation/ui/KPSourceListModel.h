#pragma once

#include "KPBaseItem.h"
#include "KPBookmarks.h"
#include "XPNotificationCenter.h"

#include <QAbstractItemModel>
#include <QTimer>
#include <vector>

class KPCrumbController;
class KPRowCounts;

// The rows of the source list: sections (Library, Dates, Kinds, Places, Saved), each with its
// items and theirs. It follows the groups of types, the search folders, the volumes and the saved
// searches; each section is made anew when what it shows changes.
// Threads: main. No file call. Ownership: controller, bookmarks and counts must outlive it.
class KPSourceListModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role { CountText = Qt::UserRole, IsSection, Identifier };

    // `counts` may be null: no row has a count then.
    KPSourceListModel(KPCrumbController &controller, KPBookmarks &bookmarks, KPRowCounts *counts,
                      QObject *parent = nullptr);
    ~KPSourceListModel() override;

    KPBaseItem::Ptr itemAt(const QModelIndex &index) const; // null: none
    // The row of the item; of several that are equal the one whose search is the state's.
    QModelIndex indexOf(const KPBaseItem &item, const KPSearchState::Ptr &state) const;
    void setLastImport(const KPSearchState::Ptr &fileList);
    // The rows that are to be seen: these alone are counted.
    void countRows(const QModelIndexList &rows);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &) const override { return 1; }
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

Q_SIGNALS:
    void failed(const XPError &error); // what a person asked for was not done

private:
    struct Node
    {
        KPBaseItem::Ptr item;
        Node *above = nullptr;
        std::vector<std::unique_ptr<Node>> below = {};
    };
    using Maker = void (KPSourceListModel::*)(Node &section) const;
    enum Section { Library, Dates, Kinds, Places, Saved, SectionCount };

    static Node *add(Node &above, const KPBaseItem::Ptr &item);
    void makeLibrary(Node &section) const;
    void makeDates(Node &section) const;
    void makeKinds(Node &section) const;
    void makePlaces(Node &section) const;
    void makeSaved(Node &section) const;
    void addBookmarks(Node &above, const KPBookmark &folder) const;
    void remake(Section section);
    Node *nodeOf(const QModelIndex &index) const;
    QModelIndex indexOfNode(const Node *node) const;
    void follow(const QString &keyPath, Section section);
    QString nameForCount(const Node &node) const;

    KPCrumbController &m_controller;
    KPBookmarks &m_bookmarks;
    KPRowCounts *m_counts;
    KPSearchState::Ptr m_lastImport;
    std::unique_ptr<Node> m_root;
    std::vector<XPObservation> m_observations;
};
