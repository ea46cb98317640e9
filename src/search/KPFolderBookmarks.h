#pragma once

#include "PropertyValue.h"
#include "XPFileInfo.h"
#include "XPMutex.h"

#include <QHash>
#include <QStringList>
#include <functional>

// What keeps a reference to a folder valid when the folder is renamed or moved: for each path
// under which somebody knows it, the inode, device and birth time of the folder and where it was
// seen last. A folder that is at its path is that folder, whatever it was before; one that is not
// is looked for beside where it was, and among all folders of its name.
//
// Kept in "folderBookmarks.plist" in the program's support folder, an array of dictionaries. The
// older "folderAliases.plist", which another program of this convention wrote, is read for what
// the newer file does not know, and left as it is.
// Threads: any; blocking file calls. A file that cannot be read is never written over.
class KPFolderBookmarks
{
public:
    // The paths of folders of a name, of wherever they are known.
    using Finder = std::function<QStringList(const QString &name)>;

    KPFolderBookmarks();
    explicit KPFolderBookmarks(const QString &folder); // that the two files are in

    void setFinder(Finder finder) XP_EXCLUDES(m_mutex);

    // The folders where they are now. One that is nowhere to be found keeps its path: its volume
    // may come back.
    QStringList bookmarkedFolderArray(const QStringList &paths) XP_EXCLUDES(m_mutex);
    // Where the folder that was at `path` is now; nothing: it is not known or not found.
    std::optional<QString> resolvePathWithBookmark(const QString &path) XP_EXCLUDES(m_mutex);
    // As found out last in this process. No file call.
    std::optional<QString> previouslyResolvedBookmark(const QString &path) const
        XP_EXCLUDES(m_mutex);
    // Reads the older file; what it adds is saved with the next change.
    void convertOldAliasFormat() XP_EXCLUDES(m_mutex);

private:
    struct Bookmark
    {
        QString lastSeen;
        quint64 inode = 0; // 0: unknown, of an older file
        quint64 device = 0;
        qint64 birth = 0; // nanoseconds since 1970; 0: unknown
        bool operator==(const Bookmark &) const = default;
    };

    static Bookmark bookmarkOf(const QString &path, const XPFileInfo &info);
    static bool isOf(const Bookmark &bookmark, const XPFileInfo &info);
    static std::optional<QString> foundBeside(const Bookmark &bookmark);
    static std::optional<QString> foundAmong(const QStringList &paths, const Bookmark &bookmark);
    std::optional<QString> find(const Bookmark &bookmark) const XP_EXCLUDES(m_mutex);
    static PropertyValue saved(const QHash<QString, Bookmark> &bookmarks);
    static QHash<QString, Bookmark> parsed(const PropertyValue &value);
    void load() XP_EXCLUDES(m_mutex);
    void note(const QString &path, const Bookmark &bookmark) XP_EXCLUDES(m_mutex);
    void save() XP_EXCLUDES(m_mutex);

    const QString m_file;
    const QString m_olderFile;
    mutable XPMutex m_mutex;
    QHash<QString, Bookmark> m_bookmarks XP_GUARDED_BY(m_mutex);
    QHash<QString, QString> m_resolved XP_GUARDED_BY(m_mutex);
    Finder m_finder XP_GUARDED_BY(m_mutex);
    bool m_isLoaded XP_GUARDED_BY(m_mutex) = false;
    bool m_hasChanged XP_GUARDED_BY(m_mutex) = false;
    bool m_mayWrite XP_GUARDED_BY(m_mutex) = true;
};
