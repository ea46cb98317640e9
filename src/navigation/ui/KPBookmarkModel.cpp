#include "KPBookmarkModel.h"

#include "KPBookmarkCommands.h"
#include "KPBookmarkItems.h"
#include "KPCrumbs.h"
#include "KPDocPasteboard.h"
#include "KPNavigationLook.h"
#include "XPPath.h"

#include <QMimeData>

KPBookmarkModel::KPBookmarkModel(KPBookmarkCommands &commands, QObject *parent)
    : QStandardItemModel(parent), m_commands(commands)
{
    rebuild();
}

KPBookmarkModel::~KPBookmarkModel() = default;

// NOLINTNEXTLINE(misc-no-recursion): the depth of a file of saved searches is limited
void KPBookmarkModel::fill(QStandardItem *above, const KPBookmark &folder)
{
    for (const KPBookmark &each : folder.children) {
        auto *item =
            new QStandardItem(KPNavigationLook::icon(each.isFolder ? QStringLiteral("folder")
                                                                   : QStringLiteral("saved")),
                              XPPath::printable(each.title));
        item->setData(each.identifier, Identifier);
        item->setDropEnabled(each.isFolder);
        auto *words = new QStandardItem;
        words->setEditable(false);
        words->setDropEnabled(false);
        above->appendRow({item, words});
        fill(item, each);
    }
}

void KPBookmarkModel::rebuild()
{
    clear();
    setHorizontalHeaderLabels({qtTrId("KPBookmarkTitle"), qtTrId("KPBookmarkLooksFor")});
    fill(invisibleRootItem(), m_commands.bookmarks().root());
}

QModelIndex KPBookmarkModel::indexOf(const QString &identifier) const
{
    return match(index(0, 0), Identifier, identifier, 1, Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
}

QVariant KPBookmarkModel::data(const QModelIndex &index, int role) const
{
    // In words only when it is to be seen: there may be thousands.
    const bool isWords =
        index.column() == 1 && (role == Qt::DisplayRole || role == Qt::ToolTipRole);
    if (!isWords)
        return QStandardItemModel::data(index, role);
    const KPBookmark *bookmark =
        m_commands.bookmarks().find(index.siblingAtColumn(0).data(Identifier).toString());
    return bookmark && !bookmark->isFolder ? KPCrumbs::sentenceOf(bookmark->searchState())
                                           : QVariant();
}

bool KPBookmarkModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole)
        return QStandardItemModel::setData(index, value, role);
    m_commands.rename(index.data(Identifier).toString(), value.toString());
    return true; // made anew by the change
}

QStringList KPBookmarkModel::mimeTypes() const
{
    return {KPDocPasteboard::folderType, KPDocPasteboard::searchType, KPDocPasteboard::locationType,
            KPDocPasteboard::documentsType};
}

QMimeData *KPBookmarkModel::mimeData(const QModelIndexList &indexes) const
{
    QStringList identifiers;
    for (const QModelIndex &index : indexes)
        if (index.column() == 0)
            identifiers.append(index.data(Identifier).toString());
    auto *data = new QMimeData;
    KPBookmarkFolderItem::write(*data, m_commands.bookmarks(), identifiers);
    return data;
}

bool KPBookmarkModel::canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int,
                                      const QModelIndex &parent) const
{
    const KPBookmarkFolderItem folder(m_commands.bookmarks(),
                                      parent.siblingAtColumn(0).data(Identifier).toString());
    const bool isFolder = folder.bookmark() && folder.bookmark()->isFolder;
    return isFolder && folder.validateDropOfType(action, row, nullptr, *data) != Qt::IgnoreAction;
}

bool KPBookmarkModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row,
                                   int column, const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const KPBookmarkPlace place{parent.siblingAtColumn(0).data(Identifier).toString(), row};
    if (const auto moved = KPBookmarkFolderItem::identifiersOf(*data); !moved.isEmpty())
        m_commands.move(moved, place);
    else if (const auto made = KPBookmarkFolderItem::madeOf(*data))
        m_commands.add({*made}, place);
    return false; // the list tells of its change; no row is to be removed by the view
}
