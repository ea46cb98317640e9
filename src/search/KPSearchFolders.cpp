// KPSearchFolders: the registry and its places.
#include "KPSearchFolders.h"

#include "IndexSettings.h"
#include "KPFiledFolders.h"
#include "KPFolderBookmarks.h"
#include "KPOptimizedFolders.h"
#include "KPSearchFolderSetting.h"
#include "KPSearchVolumes.h"
#include "MDQuery.h"
#include "MetadataIndex.h"
#include "XPFileInfo.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <algorithm>

const QString KPSearchFolders::everywhere = QStringLiteral("KPQueryScopeEverywhere");
const QString KPSearchFolders::preferredLocations =
    QStringLiteral("KPQueryScopePreferredLocations");
const QString KPSearchFolders::preferredShort = QStringLiteral("KPPrefLoc");
const QString KPSearchFolders::filedDocuments = QStringLiteral("KPQueryScopeFiledDocuments");
const QString KPSearchFolders::filedToday = filedDocuments + QStringLiteral("FiledToday");
const QString KPSearchFolders::filedThisMonth = filedDocuments + QStringLiteral("FiledThisMonth");
const QString KPSearchFolders::filedPast7Days = filedDocuments + QStringLiteral("FiledPast7Days");

KPSearchFolders &KPSearchFolders::instance()
{
    // For the process: other threads may ask until its very end.
    static auto &folders = *new KPSearchFolders;
    return folders;
}

KPSearchFolders::KPSearchFolders() : m_bookmarks(std::make_unique<KPFolderBookmarks>())
{
    rebuildSearchFoldersList();
    updateIndexAvailability();
}

KPSearchFolders::~KPSearchFolders() = default;

// --- Places

bool KPSearchFolders::isPreferredLocation(const QString &entry)
{
    return entry == preferredLocations || entry == preferredShort;
}

bool KPSearchFolders::isPlace(const QString &entry)
{
    return !entry.startsWith(u'/') &&
           (isPreferredLocation(entry) || entry.startsWith(filedDocuments) ||
            entry == MDQuery::scopeNetwork);
}

QStringList KPSearchFolders::filedDocumentsFolders(const QString &place) const
{
    if (place == filedDocuments)
        return {XPFiledDocuments::filedDocumentsRootIfPresent()};
    const QDateTime now = QDateTime::currentDateTime();
    if (place == filedToday)
        return {KPFiledFolders::day(now)};
    if (place == filedThisMonth)
        return {KPFiledFolders::month(now)};
    return place == filedPast7Days ? KPFiledFolders::past7Days(now) : QStringList();
}

QStringList KPSearchFolders::placeFolders(const QString &place) const
{
    if (isPreferredLocation(place))
        return trackingFolders();
    return place == MDQuery::scopeNetwork ? mountedNetworkVolumes() : filedDocumentsFolders(place);
}

QStringList KPSearchFolders::actualPaths(const QStringList &entries) const
{
    QStringList paths;
    for (const QString &entry : entries) {
        if (entry == everywhere || entry == MDQuery::scopeComputer)
            paths.append(QStringLiteral("/"));
        else if (entry == MDQuery::scopeHome)
            paths.append(XPFolders::home());
        else if (isPreferredLocation(entry))
            paths.append(userSearchFolders());
        else if (isPlace(entry))
            paths.append(placeFolders(entry));
        else if (const QString path = XPFolders::expandTilde(entry); path.startsWith(u'/'))
            paths.append(path);
    }
    return paths;
}

QString KPSearchFolders::actualPath(const QString &entry) const
{
    return actualPaths({entry}).value(0);
}

QString KPSearchFolders::homeFolder()
{
    const QString home = UserDefaults::standard().stringValue(QStringLiteral("KPHomeFolder"));
    return home.isEmpty() ? XPFolders::home() : XPPath::absolute(XPFolders::expandTilde(home));
}

// --- The user's search folders

QStringList KPSearchFolders::userSearchFolders() const
{
    const XPLocker locker(m_mutex);
    return m_searchFolders;
}

QStringList KPSearchFolders::trackingFolders() const
{
    const XPLocker locker(m_mutex);
    return m_trackingFolders;
}

bool KPSearchFolders::pathIsInTrackingFolders(const QString &path) const
{
    return pathInFolderArray({preferredLocations}, path);
}

std::optional<QString> KPSearchFolders::trackingFolderThatIsParentOf(const QString &path) const
{
    for (const QString &folder : trackingFolders()) {
        if (pathUnderSomePathInFolderArray(path, {folder}))
            return folder;
    }
    return {};
}

void KPSearchFolders::rebuildSearchFoldersList()
{
    QStringList folders = m_bookmarks->bookmarkedFolderArray(KPSearchFolderSetting::folders());
    if (folders.isEmpty())
        folders = QStringList{QStringLiteral("/")};
    const KPOptimizedFolders tracking(folders, KPOptimizedFolders::Reach::Below);
    QStringList outer = folders;
    outer.removeIf([&](const QString &folder) { return tracking.isInsideAnother(folder); });
    outer.removeDuplicates();
    XPFiledDocuments::rebuildFiledDocsPath();
    const XPLocker locker(m_mutex);
    if (folders == m_searchFolders)
        return;
    m_searchFolders = folders;
    m_trackingFolders = outer;
}

// --- Folders that others keep

void KPSearchFolders::rememberFolders(const QStringList &entries) const
{
    QStringList paths;
    for (const QString &entry : entries) {
        if (const QString path = XPFolders::expandTilde(entry); path.startsWith(u'/'))
            paths.append(path);
    }
    (void)m_bookmarks->bookmarkedFolderArray(paths);
}

QStringList KPSearchFolders::foldersNow(const QStringList &entries) const
{
    QStringList folders;
    for (const QString &entry : entries) {
        const QString path = XPFolders::expandTilde(entry);
        if (!path.startsWith(u'/') || XPFileInfo::read(path)) {
            folders.append(entry);
            continue;
        }
        const QString now = m_bookmarks->bookmarkedFolderArray({path}).value(0, path);
        folders.append(now == path ? entry : now);
    }
    return folders;
}

// --- Volumes

QStringList KPSearchFolders::mountedVolumes() const
{
    return KPSearchVolumes::mounted();
}

QStringList KPSearchFolders::mountedLocalVolumes() const
{
    return KPSearchVolumes::mountedLocal();
}

QStringList KPSearchFolders::mountedLocalSpotlightableVolumes() const
{
    QStringList volumes = KPSearchVolumes::mountedLocal();
    const QStringList failing = spotlightNotAvaialableVolumeList();
    volumes.removeIf([&](const QString &volume) { return failing.contains(volume); });
    return volumes;
}

QStringList KPSearchFolders::mountedNetworkVolumes() const
{
    return KPSearchVolumes::mountedNetwork();
}

QString KPSearchFolders::volumePathFromPath(const QString &path)
{
    return KPSearchVolumes::pathOf(path);
}

bool KPSearchFolders::pathIsLikelyOnUnReachableVolume(const QString &path)
{
    const QString status = instance().indexAvailability(volumePathFromPath(path));
    return status == KPSearchVolumes::silent || KPSearchVolumes::isLikelyUnreachable(path);
}

QStringList KPSearchFolders::spotlightNotAvaialableVolumeList() const
{
    const XPLocker locker(m_mutex);
    return m_failingVolumes;
}

QString KPSearchFolders::indexAvailability(const QString &volume) const
{
    const XPLocker locker(m_mutex);
    return m_statusOfVolume.value(volume);
}

void KPSearchFolders::setIndexAvailability(const QHash<QString, QString> &statusOfVolume)
{
    QStringList failing = statusOfVolume.keys(KPSearchVolumes::fails);
    failing.sort();
    const XPLocker locker(m_mutex);
    m_statusOfVolume = statusOfVolume;
    m_failingVolumes = failing;
}

void KPSearchFolders::updateIndexAvailability(const QList<IndexStatus::Root> &roots)
{
    setIndexAvailability(KPSearchVolumes::indexAvailability(roots));
}

void KPSearchFolders::updateIndexAvailability()
{
    QList<IndexStatus::Root> roots;
    for (const QString &root : IndexSettings::allRoots())
        roots.append({root, IndexStatus::Root::State::Live});
    updateIndexAvailability(roots);
}
