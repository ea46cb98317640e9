#pragma once

#include "KPTagTree.h"

#include <QAbstractItemModel>

// The tree of tags for a view: the name, and how many documents. Threads: main.
class KPTagTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    static constexpr int tagRole = Qt::UserRole; // the whole tag

    using QAbstractItemModel::QAbstractItemModel;

    void setTree(KPTagTree tree);
    const KPTagTree &tree() const { return m_tree; }
    QModelIndex indexOf(int node) const; // invalid: of the root

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex & = {}) const override { return 2; }
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    static int nodeOf(const QModelIndex &index);

    KPTagTree m_tree;
};
