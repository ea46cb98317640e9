#include "KPBookmarkItems.h"

#include "KPCrumbs.h"
#include "KPDocPasteboard.h"
#include "KPLocationItem.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QMimeData>

KPBookmarkItem::KPBookmarkItem(KPBookmarks &bookmarks, const QString &identifier)
    : m_bookmarks(bookmarks), m_identifier(identifier)
{
}

QString KPBookmarkItem::displayName() const
{
    const KPBookmark *found = bookmark();
    return found ? XPPath::printable(found->title) : QString();
}

QString KPBookmarkItem::tooltip() const
{
    const KPSearchState::Ptr state = searchState();
    return state ? KPCrumbs::sentenceOf(state) : QString();
}

QStringList KPBookmarkItem::menu() const
{
    return {QStringLiteral("KPBookmarkRename"), QStringLiteral("KPBookmarkUpdate"),
            QStringLiteral("KPBookmarkCombine"), QStringLiteral("KPBookmarkExport"),
            QStringLiteral("KPBookmarkDelete")};
}

KPSearchState::Ptr KPBookmarkItem::searchState() const
{
    const KPBookmark *found = bookmark();
    return found ? found->searchState() : nullptr;
}

bool KPBookmarkItem::writeItemToPasteboard(QMimeData &pasteboard) const
{
    pasteboard.setData(KPDocPasteboard::searchType, m_identifier.toUtf8());
    return true;
}

// --- Folders

QString KPBookmarkFolderItem::displayName() const
{
    return identifier().isEmpty() ? qtTrId("KPSourceListSaved") : KPBookmarkItem::displayName();
}

QStringList KPBookmarkFolderItem::menu() const
{
    return {QStringLiteral("KPBookmarkRename"), QStringLiteral("KPBookmarkExport"),
            QStringLiteral("KPBookmarkDelete")};
}

int KPBookmarkFolderItem::numberOfChildren() const
{
    const KPBookmark *found = bookmark();
    return found ? static_cast<int>(found->children.size()) : 0;
}

bool KPBookmarkFolderItem::writeItemToPasteboard(QMimeData &pasteboard) const
{
    write(pasteboard, m_bookmarks, {identifier()});
    return true;
}

void KPBookmarkFolderItem::write(QMimeData &pasteboard, const KPBookmarks &bookmarks,
                                 const QStringList &identifiers)
{
    QByteArray searches;
    QByteArray folders;
    for (const QString &each : identifiers) {
        const KPBookmark *bookmark = bookmarks.find(each);
        if (bookmark)
            (bookmark->isFolder ? folders : searches) += each.toUtf8() + '\n';
    }
    if (!searches.isEmpty())
        pasteboard.setData(KPDocPasteboard::searchType, searches);
    if (!folders.isEmpty())
        pasteboard.setData(KPDocPasteboard::folderType, folders);
}

QStringList KPBookmarkFolderItem::identifiersOf(const QMimeData &pasteboard)
{
    QStringList identifiers;
    for (const QString &type : {KPDocPasteboard::folderType, KPDocPasteboard::searchType})
        identifiers += QString::fromUtf8(pasteboard.data(type)).split(u'\n', Qt::SkipEmptyParts);
    return identifiers;
}

std::optional<KPBookmark> KPBookmarkFolderItem::madeOf(const QMimeData &pasteboard)
{
    if (KPDocPasteboard::hasDocuments(pasteboard)) {
        const QStringList paths = KPDocPasteboard::paths(pasteboard);
        if (paths.isEmpty())
            return {};
        const auto others = static_cast<int>(paths.size()) - 1;
        QString title = XPPath::printable(XPPath::fileName(paths.first()));
        if (others > 0)
            title += u' ' + qtTrId("KPAndMore", others);
        return KPBookmark::search(
            title, *KPSearchState::blankSearchState()->searchStateWithNewFileList(paths));
    }
    const auto location = KPLocationItem::fromPasteboard(pasteboard);
    if (!location)
        return {};
    return KPBookmark::search(location->displayName(), *location->searchState());
}

Qt::DropAction KPBookmarkFolderItem::validateDropOfType(Qt::DropActions possible, int index,
                                                        const KPBaseItem *dragged,
                                                        const QMimeData &pasteboard) const
{
    const QStringList moved = identifiersOf(pasteboard);
    for (const QString &each : moved) {
        const KPBookmark *found = m_bookmarks.find(each);
        if (!found || found->find(identifier()))
            return Qt::IgnoreAction; // a folder does not go into itself
    }
    if (!moved.isEmpty())
        return Qt::MoveAction;
    if (KPDocPasteboard::hasDocuments(pasteboard) ||
        pasteboard.hasFormat(KPDocPasteboard::locationType))
        return Qt::CopyAction;
    return KPBookmarkItem::validateDropOfType(possible, index, dragged, pasteboard);
}

bool KPBookmarkFolderItem::acceptDrop(const QMimeData &pasteboard, Qt::DropAction, int index,
                                      const Ptr &)
{
    const KPBookmarks::Place place{identifier(), index};
    if (const QStringList moved = identifiersOf(pasteboard); !moved.isEmpty())
        return !m_bookmarks.move(moved, place);
    const auto made = madeOf(pasteboard);
    return made && !m_bookmarks.insert({*made}, place);
}
