#include "KPTagTreeModel.h"

#include "XPPath.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QLocale>

void KPTagTreeModel::setTree(KPTagTree tree)
{
    beginResetModel();
    m_tree = std::move(tree);
    endResetModel();
}

int KPTagTreeModel::nodeOf(const QModelIndex &index)
{
    return index.isValid() ? static_cast<int>(index.internalId()) : KPTagTree::root;
}

QModelIndex KPTagTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const auto &children = m_tree.node(nodeOf(parent)).children;
    if (row < 0 || column < 0 || column >= columnCount() ||
        row >= static_cast<int>(children.size()))
        return {};
    return createIndex(row, column, static_cast<quintptr>(children[static_cast<size_t>(row)]));
}

QModelIndex KPTagTreeModel::indexOf(int node) const
{
    return node == KPTagTree::root
               ? QModelIndex()
               : createIndex(m_tree.node(node).row, 0, static_cast<quintptr>(node));
}

QModelIndex KPTagTreeModel::parent(const QModelIndex &child) const
{
    return indexOf(std::max(KPTagTree::root, m_tree.node(nodeOf(child)).parent));
}

int KPTagTreeModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(m_tree.node(nodeOf(parent)).children.size());
}

QVariant KPTagTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const KPTagTree::Node &node = m_tree.node(nodeOf(index));
    const bool isCount = index.column() == 1;
    switch (role) {
    case tagRole:
        return node.tag;
    case Qt::DisplayRole: {
        const qsizetype count = std::max(node.count, node.branchCount);
        if (!isCount)
            return XPPath::printable(node.name);
        return count > 0 ? QLocale().toString(count) : QString();
    }
    case Qt::SizeHintRole: {
        constexpr int air = 8;
        return QSize(0, QFontMetrics(QGuiApplication::font()).height() + air);
    }
    case Qt::ToolTipRole:
        return XPPath::printable(node.tag);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignVCenter | (isCount ? Qt::AlignRight : Qt::AlignLeft));
    default:
        return {};
    }
}

QVariant KPTagTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == 0 ? qtTrId("KPTagsWindowTag") : qtTrId("KPTagsWindowDocuments");
}
