#include "KPLocationItem.h"

#include "KPDocPasteboard.h"
#include "KPDocServices.h"
#include "KPItemArchive.h"
#include "KPSearchFolders.h"
#include "KPSearchStateKeys.h"
#include "XPFileTransfers.h"
#include "XPFolders.h"
#include "XPPasteboardSupport.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QCoreApplication>
#include <QMimeData>

KPLocationItem::KPLocationItem(const QStringList &folders, const QString &displayName)
    : m_folders(folders), m_displayName(displayName)
{
}

KPLocationItem::Location KPLocationItem::withFolder(const QString &folder)
{
    return std::make_shared<KPLocationItem>(QStringList{folder});
}

KPLocationItem::Location KPLocationItem::everywhere()
{
    return withFolder(KPSearchFolders::everywhere);
}

KPLocationItem::Location KPLocationItem::searchFolders()
{
    return withFolder(KPSearchFolders::preferredLocations);
}

KPLocationItem::Location KPLocationItem::ofState(const KPSearchState &state)
{
    const QStringList folders = state.strings(KPSearchStateKey::constraintFolders);
    return folders.isEmpty() ? nullptr : std::make_shared<KPLocationItem>(folders);
}

static bool isFolder(const QString &entry)
{
    return entry.startsWith(u'/') || entry.startsWith(u'~');
}

std::optional<QString> KPLocationItem::singleFolder() const
{
    if (m_folders.size() != 1 || !isFolder(m_folders.first()))
        return {};
    return XPPath::absolute(XPFolders::expandTilde(m_folders.first()));
}

std::optional<QString> KPLocationItem::path() const
{
    if (m_folders.isEmpty() || isEverywhereItem())
        return {};
    const QString path = KPSearchFolders::instance().actualPath(m_folders.first());
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

KPLocationItem::Location KPLocationItem::parentLocation() const
{
    const auto folder = singleFolder();
    if (!folder || *folder == u'/')
        return nullptr;
    return withFolder(XPPath::folder(*folder));
}

QString KPLocationItem::persistantID() const
{
    return QStringLiteral("Location:") + m_folders.join(u'\n');
}

static QString nameOf(const QString &entry)
{
    if (KPSearchFolders::isPreferredLocation(entry))
        return qtTrId("KPPlacesSearchFolders");
    if (entry == KPSearchFolders::everywhere)
        return qtTrId("KPPlacesEverywhere");
    if (entry == KPSearchFolders::filedDocuments)
        return qtTrId("KPPlacesFiledDocuments");
    if (entry == KPSearchFolders::filedToday)
        return qtTrId("KPPlacesFiledToday");
    if (entry == KPSearchFolders::filedThisMonth)
        return qtTrId("KPPlacesFiledThisMonth");
    if (entry == KPSearchFolders::filedPast7Days)
        return qtTrId("KPPlacesFiledPast7Days");
    if (entry == u'/')
        return qtTrId("KPPlacesComputer");
    if (entry == u'~' || entry == XPFolders::home())
        return qtTrId("KPPlacesHome");
    const QString name = XPPath::fileName(entry);
    return XPPath::printable(name.isEmpty() ? entry : name);
}

QString KPLocationItem::displayName() const
{
    if (!m_displayName.isEmpty())
        return m_displayName;
    if (m_folders.isEmpty())
        return qtTrId("KPPlacesEverywhere");
    const QString first = nameOf(m_folders.first());
    const auto others = static_cast<int>(m_folders.size()) - 1;
    return others == 0 ? first : first + u' ' + qtTrId("KPAndMore", others);
}

QString KPLocationItem::itemImage() const
{
    if (isEverywhereItem() || m_folders.value(0) == u'/')
        return QStringLiteral("computer");
    if (m_folders.value(0).startsWith(KPSearchFolders::filedDocuments))
        return QStringLiteral("filed");
    return m_folders.value(0) == XPFolders::home() ? QStringLiteral("home")
                                                   : QStringLiteral("folder");
}

QString KPLocationItem::tooltip() const
{
    QStringList lines;
    for (const QString &entry : m_folders)
        lines.append(isFolder(entry) ? XPPath::printable(XPFolders::abbreviateWithTilde(entry))
                                     : nameOf(entry));
    return lines.join(u'\n');
}

bool KPLocationItem::isEverywhereItem() const
{
    return m_folders.isEmpty() || m_folders.first() == KPSearchFolders::everywhere;
}

KPSearchState::Ptr KPLocationItem::searchState() const
{
    return KPSearchState::blankSearchState()->searchStateWithNewContstraintFolders(m_folders);
}

bool KPLocationItem::isEqual(const KPBaseItem &other) const
{
    const auto *item = dynamic_cast<const KPLocationItem *>(&other);
    return item && item->m_folders == m_folders;
}

// Where what another program drops becomes a document; an empty one: today's folder.
std::optional<QString> KPLocationItem::folderForImports() const
{
    const QString only = m_folders.size() == 1 ? m_folders.first() : QString();
    if (only == KPSearchFolders::filedDocuments || only == KPSearchFolders::filedToday)
        return QString();
    return singleFolder();
}

Qt::DropAction KPLocationItem::validateDropOfType(Qt::DropActions possible, int index,
                                                  const KPBaseItem *dragged,
                                                  const QMimeData &pasteboard) const
{
    if (index == -1 && KPDocPasteboard::hasDocuments(pasteboard) && singleFolder())
        return possible.testFlag(Qt::MoveAction) ? Qt::MoveAction : Qt::CopyAction;
    // A copy for the other program, which is never to delete what it dragged.
    if (index == -1 && !KPDocPasteboard::isOurs(pasteboard) && folderForImports() &&
        XPPasteboardSupport::canImportFromPB(&pasteboard))
        return Qt::CopyAction;
    return KPBaseSearchItem::validateDropOfType(possible, index, dragged, pasteboard);
}

bool KPLocationItem::acceptDrop(const QMimeData &pasteboard, Qt::DropAction action, int index,
                                const Ptr &dragged)
{
    xpGuiThread.assertHere();
    const auto folder = singleFolder();
    if (index == -1 && folder && KPDocPasteboard::hasDocuments(pasteboard)) {
        XPFileTransfers::moveCopyFilesProgressUI(KPDocPasteboard::paths(pasteboard), *folder,
                                                 action == Qt::CopyAction, true,
                                                 [](const XPFileReport &) {});
        return true;
    }
    if (validateDropOfType(action, index, dragged.get(), pasteboard) == Qt::IgnoreAction)
        return KPBaseSearchItem::acceptDrop(pasteboard, action, index, dragged);
    KPDocServices::current().importDropped(pasteboard, *folderForImports(), false);
    return true;
}

bool KPLocationItem::writeItemToPasteboard(QMimeData &pasteboard) const
{
    const auto bytes = XPPropertyList::writeBinary(archive());
    if (!bytes)
        return false;
    pasteboard.setData(KPDocPasteboard::locationType, *bytes);
    return true;
}

KPLocationItem::Location KPLocationItem::fromPasteboard(const QMimeData &pasteboard)
{
    const auto value = XPPropertyList::read(pasteboard.data(KPDocPasteboard::locationType));
    if (!value || !value->isDictionary())
        return nullptr;
    return std::dynamic_pointer_cast<KPLocationItem>(unarchived(value->dictionary()));
}

void KPLocationItem::encode(Archive &archive) const
{
    KPBaseSearchItem::encode(archive);
    archive.insert(KPItemArchive::foldersKey, KPItemArchive::savedPaths(m_folders));
    if (!m_displayName.isEmpty() && m_displayName.isValidUtf16())
        archive.insert(KPItemArchive::displayNameKey, m_displayName);
}
