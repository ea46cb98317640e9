#include "KPBookmarks.h"

#include "XPAtomicFile.h"
#include "XPFileLock.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <algorithm>

using MaybeError = std::optional<XPError>;

KPBookmarks::KPBookmarks(const QString &file, QObject *parent) : QObject(parent), m_file(file)
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &KPBookmarks::reload);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &KPBookmarks::reload);
    m_root.isFolder = true;
    reload();
}

KPBookmarks::~KPBookmarks() = default;

QString KPBookmarks::filePath()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/bookmarks.plist");
}

// --- The file

XPResult<KPBookmark> KPBookmarks::readFile()
{
    const auto bytes = XPAtomicFile::read(m_file);
    if (!bytes && bytes.error().kind != XPError::Kind::NotFound)
        return bytes.error();
    if (!bytes)
        return KPBookmark{{}, {}, true, {}, {}};
    const auto contents = KPBookmarkFile::parse(*bytes);
    if (contents && contents->isNewer)
        m_problem = XPError::make(XPError::Kind::Unsupported, qtTrId("KPBookmarksNewer"), m_file);
    if (contents)
        return contents->root;
    const auto aside = XPAtomicFile::setAside(m_file);
    if (!aside)
        return aside.error();
    qCWarning(xpLog).noquote() << "The saved searches could not be read and start anew; the old "
                                  "file is"
                               << XPPath::printable(*aside);
    return KPBookmark{{}, {}, true, {}, {}};
}

void KPBookmarks::reload()
{
    m_problem.reset();
    watch(); // first, so that nothing that happens from here on is missed
    const auto root = readFile();
    if (root)
        take(*root);
    else
        m_problem = root.error();
    watch();
}

// A file that was replaced is another one, which is not watched yet. Where there is none, its
// folder tells when one comes.
void KPBookmarks::watch()
{
    if (!m_file.isValidUtf16())
        return;
    if (m_watcher.files().isEmpty())
        m_watcher.addPath(m_file);
    const bool isThere = !m_watcher.files().isEmpty();
    const QStringList folders = m_watcher.directories();
    if (isThere && !folders.isEmpty())
        m_watcher.removePaths(folders);
    else if (!isThere && folders.isEmpty())
        m_watcher.addPath(XPPath::folder(m_file));
}

void KPBookmarks::take(const KPBookmark &root)
{
    if (root == m_root)
        return;
    m_root = root;
    Q_EMIT changed();
}

MaybeError KPBookmarks::change(const Edit &edit)
{
    const auto lock = XPFileLock::take(m_file + QStringLiteral(".lock"));
    if (!lock)
        return lock.error();
    m_problem.reset();
    auto root = readFile();
    if (!root)
        m_problem = root.error();
    if (m_problem)
        return m_problem;
    KPBookmark edited = *root;
    if (MaybeError error = edit(edited))
        return error;
    const auto bytes = KPBookmarkFile::bytes(edited);
    if (!bytes)
        return bytes.error();
    if (MaybeError error = XPAtomicFile::write(m_file, *bytes))
        return error;
    take(edited);
    watch();
    return {};
}

// --- Where things are

const KPBookmark *KPBookmarks::find(const QString &identifier) const
{
    return m_root.find(identifier);
}

// NOLINTNEXTLINE(misc-no-recursion): the depth of a property list is limited
static void collect(const KPBookmark &folder, const QString &prefix, QList<KPBookmarks::Named> *all)
{
    for (const KPBookmark &child : folder.children) {
        const QString name = prefix + child.title;
        all->append({name, &child});
        collect(child, name + u'/', all);
    }
}

QList<KPBookmarks::Named> KPBookmarks::all() const
{
    QList<Named> all;
    collect(m_root, {}, &all);
    return all;
}

// NOLINTNEXTLINE(misc-no-recursion): the depth of a property list is limited
static std::optional<KPBookmarks::Place> placeIn(const KPBookmark &above, const QString &identifier)
{
    for (qsizetype index = 0; index < above.children.size(); ++index) {
        if (above.children[index].identifier == identifier)
            return KPBookmarks::Place{above.identifier, index};
        if (auto place = placeIn(above.children[index], identifier))
            return place;
    }
    return {};
}

std::optional<KPBookmarks::Place> KPBookmarks::placeOf(const QString &identifier) const
{
    return identifier.isEmpty() ? std::nullopt : placeIn(m_root, identifier);
}

static XPError isGone()
{
    return XPError::make(XPError::Kind::NotFound, qtTrId("KPBookmarkGone"));
}

// The list that a place is in; null: there is none.
static QList<KPBookmark> *listOf(KPBookmark &root, const QString &folder)
{
    KPBookmark *found = root.find(folder);
    return found && found->isFolder ? &found->children : nullptr;
}

static MaybeError insertInto(KPBookmark &root, const QList<KPBookmark> &bookmarks,
                             const KPBookmarks::Place &place)
{
    QList<KPBookmark> *list = listOf(root, place.folder);
    if (!list)
        return isGone();
    qsizetype index = place.index < 0 ? list->size() : std::min(place.index, list->size());
    for (const KPBookmark &bookmark : bookmarks)
        list->insert(index++, bookmark);
    return {};
}

static std::optional<KPBookmark> taken(KPBookmark &root, const QString &identifier)
{
    const auto place = identifier.isEmpty() ? std::nullopt : placeIn(root, identifier);
    if (!place)
        return {};
    return root.find(place->folder)->children.takeAt(place->index);
}

// --- Changes

MaybeError KPBookmarks::insert(const QList<KPBookmark> &bookmarks, const Place &place)
{
    return change([&](KPBookmark &root) { return insertInto(root, bookmarks, place); });
}

MaybeError KPBookmarks::rename(const QString &identifier, const QString &title)
{
    return change([&](KPBookmark &root) -> MaybeError {
        KPBookmark *bookmark = root.find(identifier);
        if (!bookmark || bookmark == &root)
            return isGone();
        bookmark->title = title.simplified();
        return {};
    });
}

MaybeError KPBookmarks::setState(const QString &identifier,
                                 const KPSearchState::SavedDictionary &state)
{
    return change([&](KPBookmark &root) -> MaybeError {
        KPBookmark *bookmark = root.find(identifier);
        if (!bookmark || bookmark->isFolder)
            return isGone();
        bookmark->state = state;
        return {};
    });
}

MaybeError KPBookmarks::remove(const QStringList &identifiers)
{
    return change([&](KPBookmark &root) -> MaybeError {
        bool isAny = false;
        for (const QString &identifier : identifiers)
            isAny |= taken(root, identifier).has_value();
        return isAny ? MaybeError() : isGone();
    });
}

MaybeError KPBookmarks::move(const QStringList &identifiers, const Place &place)
{
    return change([&](KPBookmark &root) -> MaybeError {
        QList<KPBookmark> moved;
        Place target = place;
        for (const QString &identifier : identifiers) {
            const auto from = identifier.isEmpty() ? std::nullopt : placeIn(root, identifier);
            if (!from)
                return isGone();
            if (root.find(identifier)->find(target.folder))
                return XPError::make(XPError::Kind::InvalidArgument,
                                     qtTrId("KPBookmarkIntoItself"));
            if (from->folder == target.folder && from->index < target.index)
                --target.index; // what follows moves up
            moved.append(*taken(root, identifier));
        }
        return insertInto(root, moved, target);
    });
}

// --- Other files

// NOLINTNEXTLINE(misc-no-recursion): the depth of a property list is limited
static void forgetIdentifiers(QList<KPBookmark> &bookmarks)
{
    for (KPBookmark &bookmark : bookmarks) {
        bookmark.identifier = KPBookmark::folder({}).identifier;
        forgetIdentifiers(bookmark.children);
    }
}

MaybeError KPBookmarks::importFile(const QString &path)
{
    const auto bytes = XPAtomicFile::read(path);
    if (!bytes)
        return bytes.error();
    const auto contents = KPBookmarkFile::parse(*bytes);
    if (!contents)
        return contents.error();
    QList<KPBookmark> bookmarks = contents->root.children;
    forgetIdentifiers(bookmarks);
    return insert(bookmarks);
}

MaybeError KPBookmarks::exportFile(const QString &path, const QStringList &identifiers) const
{
    KPBookmark root{{}, {}, true, {}, {}};
    if (identifiers.isEmpty())
        root.children = m_root.children;
    for (const QString &identifier : identifiers) {
        if (const KPBookmark *bookmark = find(identifier))
            root.children.append(*bookmark);
    }
    const auto bytes = KPBookmarkFile::bytes(root);
    return bytes ? XPAtomicFile::write(path, *bytes) : bytes.error();
}
