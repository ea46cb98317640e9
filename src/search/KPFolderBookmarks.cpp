#include "KPFolderBookmarks.h"

#include "XPAliasRecord.h"
#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <dirent.h>
#include <memory>

namespace {
const QString pathKey = QStringLiteral("path");
const QString lastSeenKey = QStringLiteral("lastSeen");
const QString inodeKey = QStringLiteral("inode");
const QString deviceKey = QStringLiteral("device");
const QString birthKey = QStringLiteral("birth");
} // namespace

static void logUnreadable(const QString &what)
{
    qCWarning(xpLog, "exception in reading a path alias: %ls",
              qUtf16Printable(XPPath::printable(what)));
}

KPFolderBookmarks::KPFolderBookmarks() : KPFolderBookmarks(XPFolders::ourApplicationSupport())
{
}

KPFolderBookmarks::KPFolderBookmarks(const QString &folder)
    : m_file(folder + QStringLiteral("/folderBookmarks.plist")),
      m_olderFile(folder + QStringLiteral("/folderAliases.plist"))
{
}

void KPFolderBookmarks::setFinder(Finder finder)
{
    const XPLocker locker(m_mutex);
    m_finder = std::move(finder);
}

// --- Finding a folder

KPFolderBookmarks::Bookmark KPFolderBookmarks::bookmarkOf(const QString &path,
                                                          const XPFileInfo &info)
{
    return {path, info.inode, info.device, info.birth};
}

// The number of a device may be another after the next start; a time of birth stays, and tells a
// folder from a later one with its inode.
bool KPFolderBookmarks::isOf(const Bookmark &bookmark, const XPFileInfo &info)
{
    if (!info.isDirectory() || bookmark.inode == 0 || info.inode != bookmark.inode)
        return false;
    return bookmark.birth != 0 && info.birth != 0 ? bookmark.birth == info.birth
                                                  : bookmark.device == info.device;
}

std::optional<QString> KPFolderBookmarks::foundAmong(const QStringList &paths,
                                                     const Bookmark &bookmark)
{
    for (const QString &path : paths) {
        const auto info = XPFileInfo::read(path);
        if (info && isOf(bookmark, *info))
            return path;
    }
    return {};
}

std::optional<QString> KPFolderBookmarks::foundBeside(const Bookmark &bookmark)
{
    const QString parent = XPPath::folder(bookmark.lastSeen);
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(::opendir(XPPath::encode(parent).constData()),
                                                      [](DIR *open) { return ::closedir(open); });
    if (!folder)
        return {};
    QStringList candidates;
    const QString start = parent == u"/" ? parent : parent + u'/';
    // NOLINTNEXTLINE(concurrency-mt-unsafe): this stream is no other thread's
    while (const dirent *entry = ::readdir(folder.get())) {
        if (entry->d_ino == bookmark.inode)
            candidates.append(start + XPPath::decode(QByteArrayView(entry->d_name)));
    }
    return foundAmong(candidates, bookmark);
}

std::optional<QString> KPFolderBookmarks::find(const Bookmark &bookmark) const
{
    if (bookmark.inode == 0) { // of an older file: where it says, or nowhere
        const auto real = XPFolders::realFolder(bookmark.lastSeen);
        return real ? std::optional(*real) : std::nullopt;
    }
    if (auto path = foundAmong({bookmark.lastSeen}, bookmark))
        return path;
    if (auto path = foundBeside(bookmark))
        return path;
    Finder finder;
    {
        const XPLocker locker(m_mutex);
        finder = m_finder;
    }
    return finder ? foundAmong(finder(XPPath::fileName(bookmark.lastSeen)), bookmark)
                  : std::nullopt;
}

std::optional<QString> KPFolderBookmarks::resolvePathWithBookmark(const QString &path)
{
    load();
    Bookmark bookmark;
    {
        const XPLocker locker(m_mutex);
        const auto known = m_bookmarks.constFind(path);
        if (known == m_bookmarks.cend())
            return {};
        bookmark = *known;
    }
    auto found = find(bookmark);
    if (!found)
        return {};
    if (const auto info = XPFileInfo::read(*found))
        note(path, bookmarkOf(*found, *info));
    const XPLocker locker(m_mutex);
    m_resolved.insert(path, *found);
    return found;
}

std::optional<QString> KPFolderBookmarks::previouslyResolvedBookmark(const QString &path) const
{
    const XPLocker locker(m_mutex);
    const auto found = m_resolved.constFind(path);
    return found == m_resolved.cend() ? std::nullopt : std::optional(*found);
}

QStringList KPFolderBookmarks::bookmarkedFolderArray(const QStringList &paths)
{
    load();
    QStringList folders;
    for (const QString &path : paths) {
        QString folder = path;
        if (const auto real = XPFolders::realFolder(path)) {
            if (const auto info = XPFileInfo::read(*real); info && path != u"/")
                note(path, bookmarkOf(*real, *info));
        } else if (real.error().kind == XPError::Kind::NotFound) {
            folder = resolvePathWithBookmark(path).value_or(path);
        }
        if (!folders.contains(folder))
            folders.append(folder);
    }
    save();
    return folders;
}

void KPFolderBookmarks::note(const QString &path, const Bookmark &bookmark)
{
    const XPLocker locker(m_mutex);
    Bookmark &known = m_bookmarks[path];
    if (known == bookmark)
        return;
    known = bookmark;
    m_hasChanged = true;
}

// --- The files

static PropertyValue savedPath(const QString &path)
{
    return path.isValidUtf16() ? PropertyValue(path) : PropertyValue(XPPath::encode(path));
}

static QString parsedPath(const PropertyValue &value)
{
    return value.isString() ? value.string() : XPPath::decode(value.data());
}

PropertyValue KPFolderBookmarks::saved(const QHash<QString, Bookmark> &bookmarks)
{
    PropertyValue::Array entries;
    QStringList paths = bookmarks.keys();
    paths.sort();
    for (const QString &path : paths) {
        const Bookmark bookmark = bookmarks.value(path);
        entries.append(PropertyValue::Dictionary{
            {pathKey, savedPath(path)},
            {lastSeenKey, savedPath(bookmark.lastSeen)},
            {inodeKey, PropertyValue::integer(static_cast<qint64>(bookmark.inode))},
            {deviceKey, PropertyValue::integer(static_cast<qint64>(bookmark.device))},
            {birthKey, PropertyValue::integer(bookmark.birth)}});
    }
    return entries;
}

QHash<QString, KPFolderBookmarks::Bookmark> KPFolderBookmarks::parsed(const PropertyValue &value)
{
    QHash<QString, Bookmark> bookmarks;
    for (const PropertyValue &entry : value.array()) {
        const PropertyValue::Dictionary &fields = entry.dictionary();
        const QString path = parsedPath(fields.value(pathKey));
        const Bookmark bookmark = {parsedPath(fields.value(lastSeenKey)),
                                   static_cast<quint64>(fields.value(inodeKey).integerValue()),
                                   static_cast<quint64>(fields.value(deviceKey).integerValue()),
                                   fields.value(birthKey).integerValue()};
        if (path.startsWith(u'/') && bookmark.lastSeen.startsWith(u'/'))
            bookmarks.insert(path, bookmark);
        else
            logUnreadable(path);
    }
    return bookmarks;
}

// Nothing: there is no such file. One that is damaged is set aside and counts as none.
static XPResult<PropertyValue> readList(const QString &file)
{
    const auto bytes = XPAtomicFile::read(file);
    if (!bytes)
        return bytes.error().kind == XPError::Kind::NotFound
                   ? XPResult<PropertyValue>(PropertyValue())
                   : bytes.error();
    auto list = XPPropertyList::read(*bytes);
    if (list)
        return list;
    logUnreadable(list.error().message);
    if (const auto aside = XPAtomicFile::setAside(file); !aside)
        return aside.error();
    return PropertyValue();
}

void KPFolderBookmarks::load()
{
    {
        const XPLocker locker(m_mutex);
        if (m_isLoaded)
            return;
    }
    const auto list = readList(m_file);
    if (!list)
        logUnreadable(list.error().message);
    {
        const XPLocker locker(m_mutex);
        if (m_isLoaded)
            return;
        m_isLoaded = true;
        m_mayWrite = list.hasValue();
        if (list)
            m_bookmarks = parsed(*list);
    }
    convertOldAliasFormat();
}

void KPFolderBookmarks::convertOldAliasFormat()
{
    const auto bytes = XPAtomicFile::read(m_olderFile);
    if (!bytes) {
        if (bytes.error().kind != XPError::Kind::NotFound)
            logUnreadable(bytes.error().message);
        return;
    }
    const auto list = XPPropertyList::read(*bytes);
    if (!list) {
        logUnreadable(list.error().message);
        return;
    }
    const PropertyValue::Dictionary &aliases = list->dictionary();
    for (auto alias = aliases.cbegin(); alias != aliases.cend(); ++alias) {
        const QString path = XPPath::absolute(XPFolders::expandTilde(alias.key()));
        const auto target = XPAliasRecord::path(alias->data());
        if (!target) {
            logUnreadable(alias.key() + QStringLiteral(": ") + target.error().message);
            continue;
        }
        const XPLocker locker(m_mutex);
        if (!m_bookmarks.contains(path)) {
            m_bookmarks.insert(path, Bookmark{*target});
            m_hasChanged = true;
        }
    }
}

void KPFolderBookmarks::save()
{
    QHash<QString, Bookmark> bookmarks;
    {
        const XPLocker locker(m_mutex);
        if (!m_hasChanged || !m_mayWrite)
            return;
        m_hasChanged = false;
        bookmarks = m_bookmarks;
    }
    const auto bytes = XPPropertyList::writeBinary(saved(bookmarks));
    const auto error = bytes ? XPAtomicFile::write(m_file, *bytes) : bytes.error();
    if (!error)
        return;
    qCWarning(xpLog, "folder bookmarks: %ls", qUtf16Printable(error->message));
    const XPLocker locker(m_mutex);
    m_hasChanged = true;
}
