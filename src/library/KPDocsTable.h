#pragma once

#include "KPLibraryModel.h"

#include <QIdentityProxyModel>

// The library's model with its columns beside each other, as a table wants them. Rows are the
// model's. Threads: main. The model is not owned.
class KPDocsTable : public QIdentityProxyModel
{
    Q_OBJECT

public:
    using Hint = QAbstractItemModel::LayoutChangeHint;

    explicit KPDocsTable(KPLibraryModel &model, QObject *parent = nullptr);

    int columnCount(const QModelIndex &parent = {}) const override;
    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &) const override { return {}; }
    QModelIndex sibling(int row, int column, const QModelIndex &) const override
    {
        return index(row, column);
    }
    QModelIndex mapToSource(const QModelIndex &index) const override;
    QModelIndex mapFromSource(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void keepCells(Hint hint);
    void moveCells(Hint hint);

    QModelIndexList m_cells; // those that someone remembers, while the rows are laid out anew
    QList<QPersistentModelIndex> m_rows; // theirs
};
