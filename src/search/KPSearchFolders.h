#pragma once

#include "IndexStatus.h"
#include "UserDefaults.h"
#include "XPError.h"
#include "XPMutex.h"

#include <QHash>
#include <QStringList>
#include <functional>
#include <memory>

class KPFolderBookmarks;
class MetadataIndex;

// Where the library looks for documents: the user's search folders, the places that a search
// state may name instead of folders, the volumes on which the metadata index is of no use, and
// what a list of all these means for a query and for a path.
//
// An entry of a list is a path ("~" too), the name of a place (below) or one of MDQuery's scope
// constants. A place counts where it is the first entry: it then stands for the whole list. An
// entry that is none of these stands for nothing. "/" holds every path that is on no other volume.
// Asking never makes a folder.
// Threads: any, save what says "main". Calls that look at the disk say so; the others read the
// settings, the mount table and what was told of the index.
class KPSearchFolders
{
public:
    static KPSearchFolders &instance();

    // --- Places

    static const QString everywhere;         // "KPQueryScopeEverywhere": network volumes too
    static const QString preferredLocations; // "KPQueryScopePreferredLocations"
    static const QString preferredShort;     // "KPPrefLoc": the same
    // The managed folder: its root, and what was filed lately.
    static const QString filedDocuments; // "KPQueryScopeFiledDocuments", the others begin so
    static const QString filedToday;
    static const QString filedThisMonth;
    static const QString filedPast7Days;

    static bool isPreferredLocation(const QString &entry);
    // One that stands for a list where it is the first entry, everywhere aside.
    static bool isPlace(const QString &entry);
    // The folders of one of the places of the managed folder; of the past 7 days those that exist
    // (looks at the disk). None for any other entry.
    QStringList filedDocumentsFolders(const QString &place) const;
    // Real paths for places, constants and "~"; what already is a path stays. The first of the
    // place's paths; empty for an entry that stands for nothing.
    QString actualPath(const QString &entry) const;
    QStringList actualPaths(const QStringList &entries) const;
    // The setting "KPHomeFolder": where the window begins.
    static QString homeFolder();

    // --- The user's search folders: the setting "KPSearchFolders"

    // Absolute paths, as the bookmarks know them now; "/" where there are none.
    QStringList userSearchFolders() const XP_EXCLUDES(m_mutex);
    // The same without those inside another: what a path is tested against.
    QStringList trackingFolders() const XP_EXCLUDES(m_mutex);
    bool pathIsInTrackingFolders(const QString &path) const;
    std::optional<QString> trackingFolderThatIsParentOf(const QString &path) const;
    // Reads the setting again, and finds folders that were renamed. Looks at the disk.
    void rebuildSearchFoldersList() XP_EXCLUDES(m_mutex);
    // "/Network" and what is below are too much to search.
    static bool pathOKToAddToSearchFolders(const QString &path);
    // A folder of which the index holds nothing becomes one of its roots. Looks at the disk. Main.
    std::optional<XPError> addSearchFolder(const QString &path) XP_REQUIRES(xpGuiThread);
    void removeSearchFolder(const QString &path) XP_REQUIRES(xpGuiThread);
    // The same for a folder that a person chose: asks before a network volume is indexed, and says
    // why a folder cannot be added. `done` is told whether it was.
    void addSearchFolderAction(const QString &path, const std::function<void(bool)> &done)
        XP_REQUIRES(xpGuiThread);

    // --- Folders that others keep, in saved searches and lists of recent places

    // Remembers what they are, so that foldersNow() finds them. Looks at the disk.
    void rememberFolders(const QStringList &entries) const;
    // The same list, with the present path of a folder that was remembered and is no longer where
    // it was. Looks at the disk.
    QStringList foldersNow(const QStringList &entries) const;

    // --- Lists of folders

    // The scope of a query for a state's folders; nothing: the query is not restricted, which is
    // also the answer when no folder of the list is left (allAreGone()). Looks at the disk.
    std::optional<QStringList> reduceScopeForMDQuery(const QStringList &folders) const;
    // Folders that exist, a file's folder in its place, none inside another, in the given order;
    // constants of MDQuery stay. A link counts as the folder behind it. Looks at the disk.
    QStringList reduceScopeActualPaths(const QStringList &paths) const;
    // The list names folders and none of them is left: nothing is to be found. Looks at the disk.
    bool allAreGone(const QStringList &folders) const;

    // Whether a folder of the list is the path or has it below.
    bool pathInFolderArray(const QStringList &folders, const QString &path) const;
    // The same for paths alone.
    static bool pathUnderSomePathInFolderArray(const QString &path, const QStringList &folders);
    static bool path(const QString &path, const QString &hasParent); // strictly below

    struct Real
    {
        QStringList folders;     // absolute, as given
        bool wholeDisk = false;  // all that is on no other volume
        bool everything = false; // all volumes
    };
    static Real realFolders(const QStringList &entries);

    // --- Volumes (KPSearchVolumes)

    QStringList mountedVolumes() const;
    QStringList mountedLocalVolumes() const;
    QStringList mountedLocalSpotlightableVolumes() const;
    QStringList mountedNetworkVolumes() const;
    static QString volumePathFromPath(const QString &path);
    static bool pathIsLikelyOnUnReachableVolume(const QString &path);

    // Volumes whose status is "fails": other ones than the disk on which no folder is indexed.
    QStringList spotlightNotAvaialableVolumeList() const XP_EXCLUDES(m_mutex); // (spelled so)
    QString indexAvailability(const QString &volume) const XP_EXCLUDES(m_mutex);
    void setIndexAvailability(const QHash<QString, QString> &statusOfVolume) XP_EXCLUDES(m_mutex);
    // From the mounted volumes and the roots of the index, as they are or as the settings name
    // them. Whoever learns of the index's status says so here.
    void updateIndexAvailability(const QList<IndexStatus::Root> &roots);
    void updateIndexAvailability();

    // A volume came or went: posts "KPNotificationFileSystemMayHaveChanged".
    void didMount() XP_REQUIRES(xpGuiThread);
    static const QString fileSystemMayHaveChanged;
    // Shows the settings of the index: what the application told it to.
    void openSpotlightPreferencesAction() XP_REQUIRES(xpGuiThread);
    void setSpotlightPreferences(std::function<void()> open) XP_REQUIRES(xpGuiThread);

    // --- The process

    // The index that folders are added to and looked for in; null before it ends.
    void setIndex(MetadataIndex *index) XP_REQUIRES(xpGuiThread);
    // From now on follows the settings and the mount table. Needs the event loop.
    void startObserving() XP_REQUIRES(xpGuiThread);
    void stopObserving() XP_REQUIRES(xpGuiThread);

    KPSearchFolders(const KPSearchFolders &) = delete;
    KPSearchFolders &operator=(const KPSearchFolders &) = delete;

private:
    KPSearchFolders();
    ~KPSearchFolders();
    QStringList placeFolders(const QString &place) const;
    struct Observers;

    const std::unique_ptr<KPFolderBookmarks> m_bookmarks;
    mutable XPMutex m_mutex;
    QStringList m_searchFolders XP_GUARDED_BY(m_mutex);
    QStringList m_trackingFolders XP_GUARDED_BY(m_mutex);
    QHash<QString, QString> m_statusOfVolume XP_GUARDED_BY(m_mutex);
    QStringList m_failingVolumes XP_GUARDED_BY(m_mutex);
    MetadataIndex *m_index XP_GUARDED_BY(xpGuiThread) = nullptr;
    std::function<void()> m_openPreferences XP_GUARDED_BY(xpGuiThread);
    std::shared_ptr<Observers> m_observers XP_GUARDED_BY(xpGuiThread);
};
