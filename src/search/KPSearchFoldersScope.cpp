// KPSearchFolders: what a list of folders means for a query and for a path.
#include "KPSearchFolders.h"

#include "KPOptimizedFolders.h"
#include "KPSearchVolumes.h"
#include "MDQuery.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"

static const QString constantPrefix = QStringLiteral("kMDQ");

// --- The scope of a query

// The folder that a path stands for; nothing: it is not there.
static std::optional<QString> existingFolder(const QString &path)
{
    // Of a volume that does not answer nobody asks: its folders stay, as the index knows them.
    if (KPSearchFolders::pathIsLikelyOnUnReachableVolume(path) &&
        KPSearchFolders::instance().indexAvailability(KPSearchFolders::volumePathFromPath(path)) ==
            KPSearchVolumes::silent)
        return XPPath::absolute(path);
    const auto real = XPFolders::realFolder(path);
    if (real)
        return *real;
    if (!XPFileInfo::read(path)) {
        // Unreadable is not gone.
        return real.error().kind == XPError::Kind::NotPermitted ? std::optional(path)
                                                                : std::nullopt;
    }
    qCInfo(xpLog, "search scope: %ls is no folder, its folder is searched",
           qUtf16Printable(XPPath::printable(path)));
    const auto parent = XPFolders::realFolder(XPPath::folder(path));
    return parent ? std::optional(*parent) : std::nullopt;
}

QStringList KPSearchFolders::reduceScopeActualPaths(const QStringList &paths) const
{
    QStringList kept;
    QStringList folders;
    for (const QString &entry : paths) {
        if (entry.startsWith(constantPrefix)) {
            kept.append(entry);
            continue;
        }
        const QString path = XPFolders::expandTilde(entry);
        if (!path.startsWith(u'/'))
            continue;
        if (const auto folder = existingFolder(path)) {
            kept.append(*folder);
            folders.append(*folder);
        }
    }
    kept.removeDuplicates();
    const KPOptimizedFolders all(folders, KPOptimizedFolders::Reach::Below);
    kept.removeIf([&](const QString &entry) {
        return !entry.startsWith(constantPrefix) && all.isInsideAnother(entry);
    });
    return kept;
}

std::optional<QStringList> KPSearchFolders::reduceScopeForMDQuery(const QStringList &folders) const
{
    QStringList list = folders;
    if (folders.size() == 1) {
        const QString &only = folders.first();
        if (only == everywhere)
            return QStringList{MDQuery::scopeComputer, MDQuery::scopeNetwork};
        if (isPreferredLocation(only))
            list = userSearchFolders();
        else if (only.startsWith(filedDocuments))
            list = filedDocumentsFolders(only);
    }
    QStringList reduced = reduceScopeActualPaths(list);
    return reduced.isEmpty() ? std::nullopt : std::optional(reduced);
}

bool KPSearchFolders::allAreGone(const QStringList &folders) const
{
    return !folders.isEmpty() && !reduceScopeForMDQuery(folders);
}

// --- Containment

KPSearchFolders::Real KPSearchFolders::realFolders(const QStringList &entries)
{
    Real real;
    if (entries.isEmpty())
        return real;
    if (entries.first() == everywhere) {
        real.everything = true;
        return real;
    }
    const QStringList list =
        isPlace(entries.first()) ? instance().placeFolders(entries.first()) : entries;
    for (const QString &entry : list) {
        if (entry == MDQuery::scopeHome)
            real.folders.append(XPFolders::home());
        else if (entry == MDQuery::scopeComputer || entry == u"/")
            real.wholeDisk = true;
        else if (const QString path = XPFolders::expandTilde(entry); path.startsWith(u'/'))
            real.folders.append(XPPath::absolute(path));
    }
    return real;
}

bool KPSearchFolders::pathInFolderArray(const QStringList &folders, const QString &path) const
{
    if (folders.isEmpty())
        return false;
    const QString &first = folders.first();
    if (first == everywhere)
        return true;
    return pathUnderSomePathInFolderArray(path, isPlace(first) ? placeFolders(first) : folders);
}

namespace {
// The list that this thread asked for last, made ready for being asked again: whoever asks asks
// for many paths. As the list is held here too, another one with the same storage is the same.
struct LastList
{
    QStringList list;
    KPOptimizedFolders folders;
};
} // namespace

bool KPSearchFolders::pathUnderSomePathInFolderArray(const QString &path,
                                                     const QStringList &folders)
{
    if (folders.isEmpty())
        return false;
    thread_local LastList last;
    if (last.list.constData() != folders.constData() || last.list.size() != folders.size()) {
        last.list = folders;
        last.folders = KPOptimizedFolders(folders, KPOptimizedFolders::Reach::Below);
    }
    return last.folders.holdsOrIs(path);
}

bool KPSearchFolders::path(const QString &path, const QString &hasParent)
{
    if (hasParent == u"/")
        return path.size() > 1 && path.startsWith(u'/');
    return path.size() > hasParent.size() && path.startsWith(hasParent) &&
           (hasParent.endsWith(u'/') || path.at(hasParent.size()) == u'/');
}
