#include "KPDocsTable.h"

using Model = KPLibraryModel;

KPDocsTable::KPDocsTable(KPLibraryModel &model, QObject *parent) : QIdentityProxyModel(parent)
{
    setSourceModel(&model);
    // What the base does would have every remembered cell end in the first column, which the model
    // has alone; of several in a row, all but one would then outlive this table.
    disconnect(&model, &Model::layoutAboutToBeChanged, this, nullptr);
    disconnect(&model, &Model::layoutChanged, this, nullptr);
    connect(&model, &Model::layoutAboutToBeChanged, this,
            [this](const auto &, Hint hint) { keepCells(hint); });
    connect(&model, &Model::layoutChanged, this,
            [this](const auto &, Hint hint) { moveCells(hint); });
}

void KPDocsTable::keepCells(Hint hint)
{
    Q_EMIT layoutAboutToBeChanged({}, hint);
    m_cells = persistentIndexList();
    for (const QModelIndex &cell : std::as_const(m_cells))
        m_rows.append(mapToSource(cell));
}

void KPDocsTable::moveCells(Hint hint)
{
    QModelIndexList now;
    for (qsizetype i = 0; i < m_cells.size(); ++i)
        now.append(index(m_rows.at(i).row(), m_cells.at(i).column()));
    changePersistentIndexList(m_cells, now);
    m_cells.clear();
    m_rows.clear();
    Q_EMIT layoutChanged({}, hint);
}

int KPDocsTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(Model::ColumnCount);
}

QModelIndex KPDocsTable::index(int row, int column, const QModelIndex &parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex KPDocsTable::mapToSource(const QModelIndex &index) const
{
    return index.isValid() ? sourceModel()->index(index.row(), 0) : QModelIndex();
}

QModelIndex KPDocsTable::mapFromSource(const QModelIndex &index) const
{
    return index.isValid() ? createIndex(index.row(), index.column()) : QModelIndex();
}

QVariant KPDocsTable::data(const QModelIndex &index, int role) const
{
    const QModelIndex row = mapToSource(index);
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(
            Qt::AlignVCenter |
            (index.column() == Model::SizeColumn ? Qt::AlignRight : Qt::AlignLeft));
    const bool isOwnText = role == Qt::DisplayRole ||
                           (role == Qt::AccessibleTextRole && index.column() != Model::NameColumn);
    return sourceModel()->data(row, isOwnText ? Model::ColumnTextRole + index.column() : role);
}

QVariant KPDocsTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= Model::ColumnCount)
        return {};
    const auto column = Model::Column(section);
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignVCenter |
                                (column == Model::SizeColumn ? Qt::AlignRight : Qt::AlignLeft));
    // The flag's column is too narrow for a word.
    if (role == Qt::DisplayRole)
        return column == Model::FlagColumn ? QString() : Model::titleOf(column);
    return role == Qt::ToolTipRole || role == Qt::AccessibleTextRole ? Model::titleOf(column)
                                                                     : QVariant();
}
