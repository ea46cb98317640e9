#include "KPSourceListModel.h"

#include "KPBookmarkItems.h"
#include "KPCrumbController.h"
#include "KPDocPasteboard.h"
#include "KPNavigationLook.h"
#include "KPRowCounts.h"

#include <QLocale>
#include <QMimeData>
#include <algorithm>

KPBaseItem::Ptr KPSourceListModel::itemAt(const QModelIndex &index) const
{
    return index.isValid() ? nodeOf(index)->item : nullptr;
}

// --- The tree

KPSourceListModel::Node *KPSourceListModel::nodeOf(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Node *>(index.internalPointer()) : m_root.get();
}

QModelIndex KPSourceListModel::indexOfNode(const Node *node) const
{
    if (node == m_root.get())
        return {};
    const auto &row = node->above->below;
    const auto found = std::find_if(row.begin(), row.end(),
                                    [node](const auto &each) { return each.get() == node; });
    return createIndex(static_cast<int>(std::distance(row.begin(), found)), 0, node);
}

QModelIndex KPSourceListModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, nodeOf(parent)->below[static_cast<size_t>(row)].get());
}

QModelIndex KPSourceListModel::parent(const QModelIndex &index) const
{
    return index.isValid() ? indexOfNode(nodeOf(index)->above) : QModelIndex();
}

int KPSourceListModel::rowCount(const QModelIndex &parent) const
{
    return static_cast<int>(nodeOf(parent)->below.size());
}

QModelIndex KPSourceListModel::indexOf(const KPBaseItem &item,
                                       const KPSearchState::Ptr &state) const
{
    std::vector<const Node *> waiting{m_root.get()};
    while (!waiting.empty()) {
        const Node *node = waiting.back();
        waiting.pop_back();
        const KPBaseItem::Ptr &own = node->item;
        if (own && own->isSelectable() && own->isEqual(item)) {
            const KPSearchState::Ptr search = own->searchState();
            const KPSearchState::Ptr wanted = item.searchState();
            if (search && wanted && search->isEqualToSearchState(*wanted) && state)
                return indexOfNode(node);
        }
        for (auto below = node->below.rbegin(); below != node->below.rend(); ++below)
            waiting.push_back(below->get());
    }
    return {};
}

// --- What the rows show

QString KPSourceListModel::nameForCount(const Node &node) const
{
    return node.item->persistantID() + u' ' + node.item->displayName();
}

QVariant KPSourceListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Node &node = *nodeOf(index);
    const bool isSection = node.above == m_root.get();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return node.item->displayName();
    case Qt::DecorationRole:
        return isSection ? QVariant() : KPNavigationLook::icon(*node.item);
    case Qt::ToolTipRole:
        return node.item->tooltip();
    case Qt::AccessibleTextRole: {
        const QString count = index.data(CountText).toString();
        return count.isEmpty() ? node.item->displayName()
                               : node.item->displayName() + QStringLiteral(", ") + count;
    }
    case IsSection:
        return isSection;
    case Identifier:
        return node.item->persistantID() + (isSection ? QString() : node.item->displayName());
    case CountText: {
        const auto count =
            m_counts && !isSection ? m_counts->count(nameForCount(node)) : std::nullopt;
        return count ? QLocale().toString(*count) : QString();
    }
    default:
        return {};
    }
}

Qt::ItemFlags KPSourceListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    const KPBaseItem &item = *nodeOf(index)->item;
    Qt::ItemFlags flags = Qt::ItemIsDropEnabled;
    const bool isFolder = item.numberOfChildren() != -1;
    if (item.isSelectable() || isFolder)
        flags |= Qt::ItemIsEnabled;
    if (item.isSelectable())
        flags |= Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
    if (item.isEditable())
        flags |= Qt::ItemIsEditable | Qt::ItemIsDragEnabled;
    return flags;
}

bool KPSourceListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const auto item = std::dynamic_pointer_cast<KPBookmarkItem>(itemAt(index));
    if (!item || role != Qt::EditRole || value.toString().trimmed().isEmpty())
        return false;
    if (const auto error = m_bookmarks.rename(item->identifier(), value.toString())) {
        Q_EMIT failed(*error);
        return false;
    }
    return true;
}

// --- Counts

void KPSourceListModel::countRows(const QModelIndexList &rows)
{
    if (!m_counts)
        return;
    KPRowCounts::Rows wanted;
    for (const QModelIndex &index : rows) {
        const Node &node = *nodeOf(index);
        const KPSearchState::Ptr state =
            node.item->isSelectable() ? node.item->searchState() : nullptr;
        if (state)
            wanted.insert(nameForCount(node),
                          KPCrumbController::stateInLocation(state, m_controller.locationItem()));
    }
    m_counts->setRows(wanted);
}

// --- Dragging

QStringList KPSourceListModel::mimeTypes() const
{
    return {KPDocPasteboard::documentsType, KPDocPasteboard::folderType,
            KPDocPasteboard::searchType, KPDocPasteboard::locationType};
}

QMimeData *KPSourceListModel::mimeData(const QModelIndexList &indexes) const
{
    auto *data = new QMimeData;
    for (const QModelIndex &index : indexes) {
        if (itemAt(index)->writeItemToPasteboard(*data))
            return data; // one row is selected at a time
    }
    delete data;
    return nullptr;
}

Qt::DropActions KPSourceListModel::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction;
}

bool KPSourceListModel::canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int,
                                        const QModelIndex &parent) const
{
    const KPBaseItem::Ptr item = itemAt(parent);
    return item && item->validateDropOfType(action, row, nullptr, *data) != Qt::IgnoreAction;
}

bool KPSourceListModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int,
                                     const QModelIndex &parent)
{
    const KPBaseItem::Ptr item = itemAt(parent);
    if (!item)
        return false;
    const Qt::DropAction taken = item->validateDropOfType(action, row, nullptr, *data);
    if (taken != Qt::IgnoreAction)
        item->acceptDrop(*data, taken, row, nullptr);
    return false; // the list is told of its own changes; no row is to be removed by the view
}
