#pragma once

#include "KPActiveFolders.h"

#include <QAbstractItemModel>
#include <functional>
#include <memory>
#include <vector>

class KPCrumbController;

// The tree of the folders that hold results, with how many each holds. Only levels that were opened
// are kept; all of them are brought up to date in one walk over what the search delivers.
// Threads: main. No file call. Ownership: the controller must outlive it.
class KPLocationsModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    // The first is that of the source list, whose delegate draws the rows.
    enum Role { CountText = Qt::UserRole, Path = Qt::UserRole + 10 };

    explicit KPLocationsModel(KPCrumbController &controller, QObject *parent = nullptr);
    ~KPLocationsModel() override;

    // From the searcher's last delivery.
    void refresh();
    QString pathOf(const QModelIndex &index) const;
    QModelIndex indexOf(const QString &path) const; // among the opened levels

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &) const override { return 1; }
    bool hasChildren(const QModelIndex &parent = {}) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

private:
    using Folder = KPActiveFolders::Folder;
    struct Node
    {
        Folder folder;
        Node *above = nullptr;
        bool isRead = false; // the level below it
        std::vector<std::unique_ptr<Node>> below = {};
    };

    Node *nodeOf(const QModelIndex &index) const;
    QModelIndex indexOfNode(const Node *node) const;
    void forEachOpen(const std::function<void(Node &)> &act);
    void merge(Node &node, const QList<Folder> &folders);
    QList<Folder> currentRoots() const;
    const KPActiveFolders::Table &table() const;

    KPCrumbController &m_controller;
    std::unique_ptr<Node> m_root;
};
