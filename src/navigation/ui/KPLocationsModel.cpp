#include "KPLocationsModel.h"

#include "KPCrumbController.h"
#include "KPDocPasteboard.h"
#include "KPNavigationLook.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "KPSearcher.h"

#include <QLocale>
#include <QMimeData>
#include <algorithm>

KPLocationsModel::KPLocationsModel(KPCrumbController &controller, QObject *parent)
    : QAbstractItemModel(parent), m_controller(controller), m_root(std::make_unique<Node>())
{
    m_root->isRead = true;
    refresh();
}

KPLocationsModel::~KPLocationsModel() = default;

const KPActiveFolders::Table &KPLocationsModel::table() const
{
    static const KPActiveFolders::Table none;
    const auto &delivery = m_controller.navigator().searcher().currentDelivery();
    return delivery ? delivery->activeFolders : none;
}

// --- The tree

KPLocationsModel::Node *KPLocationsModel::nodeOf(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Node *>(index.internalPointer()) : m_root.get();
}

QModelIndex KPLocationsModel::indexOfNode(const Node *node) const
{
    if (node == m_root.get())
        return {};
    const auto &row = node->above->below;
    const auto found = std::find_if(row.begin(), row.end(),
                                    [node](const auto &each) { return each.get() == node; });
    return createIndex(static_cast<int>(std::distance(row.begin(), found)), 0, node);
}

QModelIndex KPLocationsModel::index(int row, int column, const QModelIndex &parent) const
{
    const auto &below = nodeOf(parent)->below;
    if (row < 0 || column != 0 || static_cast<size_t>(row) >= below.size())
        return {};
    return createIndex(row, column, below[static_cast<size_t>(row)].get());
}

QModelIndex KPLocationsModel::parent(const QModelIndex &index) const
{
    return index.isValid() ? indexOfNode(nodeOf(index)->above) : QModelIndex();
}

int KPLocationsModel::rowCount(const QModelIndex &parent) const
{
    return static_cast<int>(nodeOf(parent)->below.size());
}

bool KPLocationsModel::hasChildren(const QModelIndex &parent) const
{
    const Node *node = nodeOf(parent);
    return node->isRead ? !node->below.empty() : node->folder.hasChildren;
}

bool KPLocationsModel::canFetchMore(const QModelIndex &parent) const
{
    return !nodeOf(parent)->isRead;
}

void KPLocationsModel::fetchMore(const QModelIndex &parent)
{
    Node *node = nodeOf(parent);
    node->isRead = true;
    merge(*node, KPActiveFolders(table()).below({node->folder.path}).value(node->folder.path));
}

QString KPLocationsModel::pathOf(const QModelIndex &index) const
{
    return index.isValid() ? nodeOf(index)->folder.path : QString();
}

QModelIndex KPLocationsModel::indexOf(const QString &path) const
{
    std::vector<const Node *> waiting{m_root.get()};
    while (!waiting.empty()) {
        const Node *node = waiting.back();
        waiting.pop_back();
        for (const auto &below : node->below) {
            if (below->folder.path == path)
                return indexOfNode(below.get());
            waiting.push_back(below.get());
        }
    }
    return {};
}

// --- What the search delivers

// The folders that are searched; of everywhere the volumes.
QList<KPActiveFolders::Folder> KPLocationsModel::currentRoots() const
{
    const QStringList entries =
        m_controller.searchState()->strings(KPSearchStateKey::constraintFolders);
    const KPSearchFolders::Real real = KPSearchFolders::realFolders(entries);
    QStringList folders = real.folders;
    if (real.wholeDisk || real.everything || entries.isEmpty())
        folders.prepend(QStringLiteral("/"));
    if (real.everything || entries.isEmpty())
        folders += KPSearchFolders::instance().mountedVolumes();
    folders.removeDuplicates();
    return KPActiveFolders(table()).roots(folders);
}

void KPLocationsModel::refresh()
{
    merge(*m_root, currentRoots());
    QStringList open;
    forEachOpen([&](Node &node) { open.append(node.folder.path); });
    const auto levels = KPActiveFolders(table()).below(open);
    forEachOpen([&](Node &node) { merge(node, levels.value(node.folder.path)); });
}

// From the outside in: a level that goes takes what is open in it along.
void KPLocationsModel::forEachOpen(const std::function<void(Node &)> &act)
{
    std::vector<Node *> waiting{m_root.get()};
    while (!waiting.empty()) {
        Node *node = waiting.back();
        waiting.pop_back();
        for (const auto &below : node->below) {
            if (!below->isRead)
                continue;
            act(*below);
            waiting.push_back(below.get());
        }
    }
}

// Brings a level up to date: both lists are in the same order, so each row is met once.
void KPLocationsModel::merge(Node &node, const QList<Folder> &folders)
{
    const QModelIndex above = indexOfNode(&node);
    QHash<QStringView, qsizetype> wanted;
    for (qsizetype place = 0; place < folders.size(); ++place)
        wanted.insert(folders[place].path, place);
    for (size_t row = node.below.size(); row-- > 0;) {
        if (wanted.contains(node.below[row]->folder.path))
            continue;
        const int number = static_cast<int>(row);
        beginRemoveRows(above, number, number);
        node.below.erase(node.below.begin() + number);
        endRemoveRows();
    }
    for (qsizetype place = 0; place < folders.size(); ++place) {
        const int number = static_cast<int>(place);
        const bool isThere =
            static_cast<size_t>(place) < node.below.size() &&
            node.below[static_cast<size_t>(place)]->folder.path == folders[place].path;
        if (!isThere) {
            beginInsertRows(above, number, number);
            auto made = std::make_unique<Node>();
            made->folder = folders[place];
            made->above = &node;
            node.below.insert(node.below.begin() + number, std::move(made));
            endInsertRows();
            continue;
        }
        Node &known = *node.below[static_cast<size_t>(place)];
        if (known.folder == folders[place])
            continue;
        known.folder = folders[place];
        const QModelIndex changed = createIndex(number, 0, &known);
        Q_EMIT dataChanged(changed, changed);
    }
}

// --- What the rows show

QVariant KPLocationsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Folder &folder = nodeOf(index)->folder;
    const KPLocationItem item({folder.path});
    switch (role) {
    case Qt::DisplayRole:
        return item.displayName();
    case Qt::DecorationRole:
        return KPNavigationLook::icon(item);
    case Qt::ToolTipRole:
        return item.tooltip();
    case Qt::AccessibleTextRole:
        return item.displayName() + QStringLiteral(", ") + QLocale().toString(folder.count);
    case CountText:
        return QLocale().toString(folder.count);
    case Path:
        return folder.path;
    default:
        return {};
    }
}

Qt::ItemFlags KPLocationsModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
}

// --- Dragging

QStringList KPLocationsModel::mimeTypes() const
{
    return {KPDocPasteboard::documentsType};
}

QMimeData *KPLocationsModel::mimeData(const QModelIndexList &indexes) const
{
    auto *data = new QMimeData;
    QStringList paths;
    for (const QModelIndex &index : indexes)
        paths.append(pathOf(index));
    KPLocationItem(paths).writeItemToPasteboard(*data);
    return data;
}

Qt::DropActions KPLocationsModel::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction;
}

bool KPLocationsModel::canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int,
                                       const QModelIndex &parent) const
{
    return parent.isValid() &&
           KPLocationItem({pathOf(parent)}).validateDropOfType(action, row, nullptr, *data) !=
               Qt::IgnoreAction;
}

bool KPLocationsModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int,
                                    const QModelIndex &parent)
{
    if (parent.isValid())
        KPLocationItem({pathOf(parent)}).acceptDrop(*data, action, row, nullptr);
    return false; // the search tells what came of it
}
