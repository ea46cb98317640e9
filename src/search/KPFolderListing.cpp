#include "KPFolderListing.h"

#include "KPDocCache.h"
#include "KPSearchFolders.h"
#include "UserDefaults.h"
#include "XPPath.h"
#include "XPVolumes.h"

#include <chrono>

using namespace std::chrono_literals;

static constexpr auto eventRest = 20ms;

// Whether the state's tests ask for what stands on the files.
static bool asksForValues(const KPSearchState &state)
{
    return !state.searchTags().isEmpty() || !state.excludeTags().isEmpty() ||
           state.isShowingTaggedDocuments() || state.isShowingUntaggedDocuments() ||
           !state.ratingString().isEmpty() ||
           (!state.searchString().isEmpty() && (state.searchMetaData() || state.searchContents()));
}

KPFolderListing::KPFolderListing(Setup setup)
    : m_setup(std::move(setup)),
      m_needsValues(m_setup.readsValues || asksForValues(*m_setup.state)),
      m_followsLinks(UserDefaults::standard().boolValue(QStringLiteral("KPFollowSymLinksGoDeep")))
{
    m_again.setSingleShot(true);
    m_again.setInterval(eventRest);
    connect(&m_again, &QTimer::timeout, this, &KPFolderListing::lookAgain);
    connect(this, &KPFolderListing::eventsWaiting, this, &KPFolderListing::takeEvents,
            Qt::QueuedConnection);
    if (m_setup.live) {
        m_watcher = std::make_unique<IndexWatcher>(
            [this](std::vector<IndexWatcher::Event> events) {
                {
                    const XPLocker lock(m_mutex);
                    m_events.insert(m_events.end(), events.begin(), events.end());
                }
                Q_EMIT eventsWaiting(QPrivateSignal());
            },
            [] {}, IndexWatcher::Options());
    }
}

KPFolderListing::~KPFolderListing()
{
    if (m_watcher)
        m_watcher->stop();
}

// --- What there is to be listed

bool KPFolderListing::isPackageAtPath(QByteArrayView path)
{
    static const QByteArrayView extensions[] = {".app",      ".nib", ".pages",         ".xcodeproj",
                                                ".workflow", ".key", ".photoslibrary", ".rtfd"};
    const QByteArrayView name = path.sliced(path.lastIndexOf('/') + 1);
    return name == "iPhoto Library" ||
           std::any_of(std::begin(extensions), std::end(extensions), [&](QByteArrayView extension) {
               return name.size() > extension.size() && name.endsWith(extension);
           });
}

bool KPFolderListing::isInvisible(QByteArrayView name, QByteArrayView /*fullPath*/)
{
    return name.startsWith('.');
}

bool KPFolderListing::isSlow(const QByteArray &folder) const
{
    return XPVolumes::isOnSlowVolume(XPPath::decode(folder));
}

bool KPFolderListing::start()
{
    readAll();
    return !m_setup.isAbandoned();
}

void KPFolderListing::readAll()
{
    const KPSearchState &state = *m_setup.state;
    if (state.isFileListSearch()) {
        QHash<QByteArray, QSet<QByteArray>> files;
        for (const QString &file : state.fileListSearch()) {
            const QByteArray path = XPPath::encode(file);
            const qsizetype slash = path.lastIndexOf('/');
            if (slash >= 0 && slash + 1 < path.size())
                files[slash ? path.left(slash) : QByteArray("/")].insert(path.mid(slash + 1));
        }
        for (auto folder = files.cbegin(); folder != files.cend(); ++folder)
            want(folder.key(), folder.value(), true);
    } else {
        const auto real = KPSearchFolders::realFolders(state.constraintFolders());
        QStringList folders = real.folders;
        if (real.wholeDisk || real.everything)
            folders.append(QStringLiteral("/"));
        for (const QString &folder : folders)
            want(XPPath::encode(folder), {}, true);
    }
    readWanted();
}

void KPFolderListing::want(const QByteArray &path, const Names &only, bool isRoot)
{
    if (m_folders.contains(path))
        return;
    Folder &folder = m_folders[path];
    folder.only = only;
    folder.isRoot = isRoot;
    struct stat itself = {};
    if (isRoot && m_followsLinks && !isSlow(path) && ::stat(path.constData(), &itself) == 0)
        m_visited.insert({itself.st_dev, itself.st_ino});
    m_wanted.push_back(path);
}

void KPFolderListing::readWanted()
{
    while (!m_wanted.empty() && !m_setup.isAbandoned() && !m_isMaxxedOut) {
        const QByteArray path = std::move(m_wanted.back());
        m_wanted.pop_back();
        look(path, m_folders.value(path).only);
    }
    m_wanted.clear();
}

void KPFolderListing::look(const QByteArray &path, const Names &only)
{
    const auto folder = m_folders.constFind(path);
    if (folder == m_folders.cend())
        return;
    KPFolderContents::How how;
    how.followLink = folder->isRoot || m_followsLinks;
    how.attributes = m_needsValues;
    how.all = folder->only.has_value() || m_setup.state->showHiddenFiles();
    how.isAbandoned = m_setup.isAbandoned;
    if (isSlow(path)) {
        if (!m_slow) {
            m_slow = std::make_unique<KPSlowFolders>();
            connect(
                m_slow.get(), &KPSlowFolders::folderRead, this,
                [this] {
                    for (const KPFolderContents &contents : m_slow->take())
                        take(contents);
                    readWanted();
                    Q_EMIT updated();
                },
                Qt::QueuedConnection);
        }
        m_slow->read({path, only, how});
        return;
    }
    how.opened = [&](int descriptor) {
        if (m_watcher && !m_watcher->watch(path, descriptor))
            m_lacksWatches = true;
    };
    take(KPFolderContents::read(path, only, how));
}

QStringList KPFolderListing::problems() const
{
    QStringList problems;
    for (auto folder = m_folders.cbegin(); folder != m_folders.cend(); ++folder) {
        if (!folder->problem.isEmpty())
            problems.append(folder->problem);
    }
    problems += m_unreadable.values();
    problems.sort();
    if (isWaiting())
        problems.append(qtTrId("KPSlowVolumeStillRead"));
    if (m_lacksWatches)
        problems.append(qtTrId("KPListingNotFollowed"));
    return problems;
}

// --- What is there

void KPFolderListing::take(const KPFolderContents &contents)
{
    auto folder = m_folders.find(contents.path);
    if (folder == m_folders.end())
        return; // it went meanwhile
    folder->problem.clear();
    if (contents.error) {
        if (contents.error->kind == XPError::Kind::NotFound && !folder->isRoot)
            return dropFolder(contents.path);
        folder->problem = XPPath::printable(contents.error->path) + QStringLiteral(": ") +
                          contents.error->reason();
        if (contents.error->kind == XPError::Kind::NotFound && m_setup.live)
            await(contents.path);
    }
    Taking taking;
    taking.start = contents.path == "/" ? contents.path : contents.path + '/';
    taking.startText = XPPath::decode(taking.start);
    for (const KPFolderContents::Entry &entry : contents.entries) {
        if (m_setup.isAbandoned())
            return;
        takeEntry(*folder, contents, entry, taking);
    }
    for (const QByteArray &below : taking.below)
        want(below, {}, false);
    if (contents.isAbandoned)
        return;
    // What was not met any more, among what was looked for.
    folder = m_folders.find(contents.path);
    std::vector<KPPooledString> gone;
    if (contents.only) {
        for (const QByteArray &name : *contents.only) {
            const KPPooledString path =
                KPPool::pooledString(taking.startText + XPPath::decode(name));
            if (!taking.present.contains(path) && folder->items.contains(path))
                gone.push_back(path);
        }
    } else if (!contents.error || contents.error->kind == XPError::Kind::NotFound) {
        for (auto item = folder->items.cbegin(); item != folder->items.cend(); ++item) {
            if (!taking.present.contains(item.key()))
                gone.push_back(item.key());
        }
    }
    for (const KPPooledString path : gone)
        dropItem(m_folders[contents.path], path);
    for (const QByteArray &path : std::exchange(m_goneFolders, {}))
        dropFolder(path);
}

bool KPFolderListing::looksLikeOkFile(const QByteArray &path, const XPFileInfo &info,
                                      bool isPackage, bool isFolder) const
{
    const KPSearchState &state = *m_setup.state;
    if (info.isRegular())
        return true;
    if (state.isFileListSearch() || state.isFilesAndFolders())
        return info.isDirectory() || info.isLink();
    if (isFolder || !info.isLink())
        return isPackage && !isFolder;
    struct stat target = {};
    return m_followsLinks && ::stat(path.constData(), &target) == 0 && S_ISREG(target.st_mode);
}

// Whether it is a folder that is listed too.
bool KPFolderListing::goesInto(const QByteArray &path, const XPFileInfo &info, bool isPackage)
{
    const KPSearchState &state = *m_setup.state;
    if (!state.isDeep() || state.isFileListSearch() || (isPackage && !state.isShowBundleContents()))
        return false;
    if (info.isDirectory() && !m_followsLinks)
        return true;
    struct stat target = {};
    if (!info.isDirectory() && (!info.isLink() || !m_followsLinks ||
                                ::stat(path.constData(), &target) != 0 || !S_ISDIR(target.st_mode)))
        return false;
    if (m_folders.contains(path))
        return true;
    if (info.isDirectory() && ::stat(path.constData(), &target) != 0)
        return true; // its problem is told when it is read
    // A folder that a link leads to as well is listed where it was met first.
    const std::pair<quint64, quint64> identity{target.st_dev, target.st_ino};
    if (m_visited.contains(identity))
        return false;
    m_visited.insert(identity);
    return true;
}

void KPFolderListing::takeEntry(Folder &folder, const KPFolderContents &contents,
                                const KPFolderContents::Entry &entry, Taking &taking)
{
    ++m_scanned;
    if (m_setup.looked)
        m_setup.looked();
    const QByteArrayView name = contents.name(entry);
    QByteArray path = taking.start;
    path.append(name);
    if (!folder.only && !m_setup.state->showHiddenFiles() && isInvisible(name, path))
        return;
    const bool isPackage = entry.info.isDirectory() && isPackageAtPath(path);
    const bool isFolder = goesInto(path, entry.info, isPackage);
    const bool isOk = looksLikeOkFile(path, entry.info, isPackage, isFolder);
    if (!isOk && !isFolder)
        return;
    const KPPooledString pooled = KPPool::pooledString(taking.startText + XPPath::decode(name));
    taking.present.insert(pooled);
    Item &item = folder.items[pooled];
    if (item.isFolder && !isFolder)
        m_goneFolders.push_back(path);
    item.isFolder = isFolder;
    if (isFolder)
        taking.below.push_back(path);
    KPDoc *doc = isOk ? KPDocCache::docAtPath(pooled, &entry.info) : nullptr;
    if (doc != nullptr && (doc != item.doc || item.changed != entry.info.changed))
        takeDocument(item, doc, path, entry);
}

void KPFolderListing::takeDocument(Item &item, KPDoc *doc, const QByteArray &path,
                                   const KPFolderContents::Entry &entry)
{
    KPDoc *before = std::exchange(item.doc, doc);
    const bool wasShown = item.isShown;
    item.changed = entry.info.changed;
    KPResultCounts::Values counted;
    counted.facts = KPResultCounts::Values::factsOf(entry.info);
    item.isShown = judge(doc, path, entry.hasAttributes, &counted);
    if (item.isShown && !(wasShown && before == doc)) {
        ++m_shown;
        m_setup.found(doc, counted);
    } else if (item.isShown) {
        m_setup.changed(doc, counted);
    }
    if (wasShown && (!item.isShown || before != doc)) {
        --m_shown;
        m_setup.gone(before);
    }
    m_isMaxxedOut = m_setup.maximum > 0 && m_shown >= m_setup.maximum;
}

// Whether the document passes; what cannot be read is unknown, not absent.
bool KPFolderListing::judge(KPDoc *doc, const QByteArray &path, bool hasAttributes,
                            KPResultCounts::Values *counted)
{
    const KPSearchState &state = *m_setup.state;
    const KPPooledString pooled = doc->pooledPath();
    m_unreadable.remove(pooled);
    if (m_needsValues) {
        KPDocValues values;
        if (hasAttributes) {
            values = KPDocValues::ofFile(XPPath::decode(path));
        }
        const size_t facts = counted->facts;
        *counted = values.fill(pooled, KPDocMetaData::Known::Replaced);
        counted->facts = facts;
        const bool asksTags = !state.searchTags().isEmpty() || !state.excludeTags().isEmpty() ||
                              state.isShowingUntaggedDocuments();
        if (asksTags && values.hasUnreadableTags()) {
            m_unreadable.insert(pooled, XPPath::printable(doc->filePath()) + QStringLiteral(": ") +
                                            values.problem());
            return false;
        }
        if (!state.ratingString().isEmpty() && !values.problem().isEmpty() &&
            !values.hasUnreadableTags()) {
            m_unreadable.insert(pooled, XPPath::printable(doc->filePath()) + QStringLiteral(": ") +
                                            values.problem());
            return false;
        }
    }
    // The type of some files stands in their first bytes alone.
    if (m_setup.readsValues)
        counted->type = doc->utiTagName();
    return state.docPasses(*doc);
}

void KPFolderListing::dropItem(Folder &folder, KPPooledString path)
{
    const Item item = folder.items.take(path);
    m_unreadable.remove(path);
    if (item.isShown) {
        --m_shown;
        m_setup.gone(item.doc);
    }
    if (item.isFolder)
        m_goneFolders.push_back(XPPath::encode(path.toString()));
}

void KPFolderListing::dropFolder(const QByteArray &path)
{
    std::vector<QByteArray> rest{path};
    while (!rest.empty()) {
        const QByteArray next = std::move(rest.back());
        rest.pop_back();
        const auto folder = m_folders.find(next);
        if (folder == m_folders.end())
            continue;
        Folder gone = std::move(*folder);
        m_folders.erase(folder);
        for (const KPPooledString item : gone.items.keys())
            dropItem(gone, item);
        for (QByteArray &below : std::exchange(m_goneFolders, {}))
            rest.push_back(std::move(below));
    }
}

// --- What changes

void KPFolderListing::takeEvents()
{
    std::vector<IndexWatcher::Event> events;
    {
        const XPLocker lock(m_mutex);
        events.swap(m_events);
    }
    const auto mark = [this](const QByteArray &folder, const QByteArray &name) {
        Names &names = m_dirty.contains(folder)
                           ? m_dirty[folder]
                           : m_dirty.insert(folder, QSet<QByteArray>()).value();
        if (names)
            names->insert(name);
    };
    for (const IndexWatcher::Event &event : events) {
        switch (event.kind) {
        case IndexWatcher::Event::Kind::Moved:
            mark(event.toFolder, event.toName);
            [[fallthrough]];
        case IndexWatcher::Event::Kind::Changed:
        case IndexWatcher::Event::Kind::Gone:
            mark(event.folder, event.name);
            break;
        case IndexWatcher::Event::Kind::FolderGone:
            m_dirty[event.folder] = std::nullopt;
            break;
        case IndexWatcher::Event::Kind::Overflow:
            for (auto folder = m_folders.cbegin(); folder != m_folders.cend(); ++folder)
                m_dirty[folder.key()] = std::nullopt;
            break;
        case IndexWatcher::Event::Kind::Mounts:
            break;
        }
    }
    if (!m_dirty.isEmpty() && !m_again.isActive())
        m_again.start();
}

// The folder comes when something of that name comes into the nearest one that is there. Of that
// one's own end the system tells only once no program stands in it any more: the one above is
// watched too, and tells at once.
void KPFolderListing::await(const QByteArray &root)
{
    if (!m_watcher || isSlow(root))
        return;
    int watched = 0;
    for (QByteArray above = root; above.size() > 1 && watched < 2;) {
        above.truncate(std::max<qsizetype>(above.lastIndexOf('/'), 1));
        const XPFileDescriptor folder = KPFolderContents::open(above, true);
        if (!folder.isOpen())
            continue;
        m_awaited[above].insert(root);
        if (!m_watcher->watch(above, folder.get()))
            m_lacksWatches = true;
        if (++watched > 1)
            continue;
        // It, or a folder on the way, may have come before the watch did; or this one has gone.
        const qsizetype end = root.indexOf('/', above.size() > 1 ? above.size() + 1 : 1);
        struct stat facts = {};
        if (::stat(root.left(end).constData(), &facts) == 0 ||
            (::fstat(folder.get(), &facts) == 0 && facts.st_nlink == 0)) {
            m_dirty[above] = QSet<QByteArray>();
            m_again.start();
        }
    }
}

void KPFolderListing::lookAgain()
{
    const auto dirty = std::exchange(m_dirty, {});
    std::vector<QByteArray> awaited;
    for (auto each = dirty.cbegin(); each != dirty.cend(); ++each) {
        for (const QByteArray &root : m_awaited.take(each.key()))
            awaited.push_back(root);
    }
    for (const QByteArray &root : awaited) {
        if (m_folders.contains(root))
            look(root, m_folders.value(root).only);
    }
    for (auto each = dirty.cbegin(); each != dirty.cend() && !m_setup.isAbandoned(); ++each) {
        const auto folder = m_folders.constFind(each.key());
        if (folder == m_folders.cend())
            continue;
        Names names = each.value() ? each.value() : folder->only;
        if (names && folder->only)
            names = QSet<QByteArray>(*names).intersect(*folder->only);
        if (!names || !names->isEmpty())
            look(each.key(), names);
    }
    readWanted();
    Q_EMIT updated();
}
