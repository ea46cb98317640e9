#include "IndexKeeper.h"

#include "KPFileType.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QDir>
#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace std::chrono_literals;

static constexpr size_t largestBatch = 2000; // changes applied under one lock
static constexpr size_t mostWaiting = 256;   // listings; then the crawl waits for the writer
static constexpr qint64 longestJournal = 2000;
static constexpr auto restBeforeSaving = 5s;
static constexpr auto unwatchedInterval = 30s;

static QByteArray joined(const QByteArray &folder, const QByteArray &name)
{
    return folder == "/" ? folder + name : folder + '/' + name;
}

// --- Start and end

IndexKeeper::IndexKeeper(const IndexRules &rules, int lock) : m_rules(rules), m_lock(lock)
{
}

XPResult<std::unique_ptr<IndexKeeper>>
IndexKeeper::start(const QString &path, const QStringList &roots, const IndexRules &rules)
{
    QDir().mkpath(XPPath::folder(path));
    const QByteArray lockPath = XPPath::encode(path + QStringLiteral(".lock"));
    const int lock = ::open(lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock < 0)
        return XPError::fromErrno(errno, path);
    if (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        ::close(lock);
        return XPError::make(XPError::Kind::NotPermitted,
                             QStringLiteral("another process keeps the index"), path);
    }
    std::unique_ptr<IndexKeeper> keeper(new IndexKeeper(rules, lock));
    if (auto error = keeper->openStore(path))
        return *error;
    keeper->openTextStore(path + QStringLiteral(".text"));
    keeper->begin(roots);
    return keeper;
}

std::optional<XPError> IndexKeeper::openStore(const QString &path)
{
    auto store = IndexStore::open(path, IndexStore::Mode::Write);
    std::optional<XPError> error;
    if (store)
        error = (*store)->load(m_catalog);
    else
        error = store.error();
    if (error && error->kind == XPError::Kind::Malformed) {
        store = XPError(*error); // closes the damaged file before it is moved
        IndexStore::setAside(path);
        m_catalog.clear();
        store = IndexStore::open(path, IndexStore::Mode::Write);
        error = store ? std::nullopt : std::optional(store.error());
    }
    if (error)
        return error;
    m_store = *std::move(store);
    m_lastItem = m_catalog.lastItem();
    return {};
}

void IndexKeeper::openTextStore(const QString &path)
{
    auto text = IndexTextStore::open(path, true);
    if (!text && text.error().kind == XPError::Kind::Malformed) {
        IndexStore::setAside(path);
        text = IndexTextStore::open(path, true);
    }
    if (text)
        m_text = *std::move(text);
    else
        problem(QStringLiteral("text"), text.error().message);
}

void IndexKeeper::begin(const QStringList &roots)
{
    m_watcher = std::make_unique<IndexWatcher>([this](std::vector<IndexWatcher::Event> events) {
        post([this, events = std::move(events)] { applyEvents(events); }, true);
    });
    if (!m_watcher->isUsable())
        problem(QStringLiteral("watch"),
                QStringLiteral("changes are found by looking again only: no watches to be had"));
    IndexCrawler::Callbacks callbacks;
    callbacks.deliver = [this](IndexListing listing) {
        {
            XPLocker lock(m_mutex);
            while (m_bulkJobs.size() >= mostWaiting && !m_stopping)
                m_room.wait(lock);
        }
        post([this, listing = std::move(listing)] { applyListing(listing); }, false);
    };
    callbacks.idle = [this] { post([this] { crawlDone(); }, false); };
    callbacks.unwatched = [this](const QByteArray &folder) {
        post([this, folder] { m_unwatched.insert(folder); }, false);
    };
    callbacks.knownIn = [this](const QByteArray &folder) -> IndexFolderReader::Known {
        IndexItem item = 0;
        {
            const IndexCatalog::Reading reading(m_catalog);
            item = m_catalog.itemAtPath(folder);
        }
        if (item == 0)
            return {};
        return [this, item](const QByteArray &name, const XPFileInfo &info) {
            const IndexCatalog::Reading reading(m_catalog);
            const IndexSlot slot = m_catalog.slotOf(m_catalog.child(item, name));
            return slot != IndexCatalog::noSlot && m_catalog.hasFacts(slot, info);
        };
    };
    if (m_text) {
        IndexContentQueue::Callbacks contents;
        contents.lookUp = [this](IndexItem item) { return contentFile(item); };
        contents.done = [this](IndexBatch batch) {
            post([this, batch = std::move(batch)] { commit(batch); }, false);
        };
        contents.problem = [this](const QString &text) { problem(QStringLiteral("text"), text); };
        contents.startedOver = [this] { post([this] { queueAllContents(); }, false); };
        m_contents = std::make_unique<IndexContentQueue>(*m_text, std::move(contents));
    }
    m_thread = std::thread([this] { loop(); });
    m_crawler = std::make_unique<IndexCrawler>(m_rules, m_watcher.get(), std::move(callbacks));
    setRoots(roots);
}

IndexKeeper::~IndexKeeper()
{
    {
        const XPLocker lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    m_room.notify_all();
    m_crawler.reset();
    m_watcher.reset();
    m_contents.reset();
    if (m_thread.joinable())
        m_thread.join();
    m_store.reset();
    ::close(m_lock);
}

// --- The writer thread

void IndexKeeper::post(Job job, bool urgent)
{
    {
        const XPLocker lock(m_mutex);
        (urgent ? m_urgent : m_bulkJobs).push_back(std::move(job));
    }
    m_wake.notify_one();
}

bool IndexKeeper::nextJob(Job *job)
{
    XPLocker lock(m_mutex);
    for (;;) {
        if (m_stopping)
            return false;
        std::deque<Job> &queue = m_urgent.empty() ? m_bulkJobs : m_urgent;
        if (!queue.empty()) {
            *job = std::move(queue.front());
            queue.pop_front();
            m_room.notify_all();
            return true;
        }
        // Idle means no wake-ups: a time limit only while there is something to do later.
        if (m_store->journalSize() > 0 && !m_bulk) {
            if (m_wake.wait_for(lock, restBeforeSaving) == std::cv_status::timeout) {
                *job = [this] { checkpoint(); };
                return true;
            }
        } else if (!m_unwatched.isEmpty()) {
            if (m_wake.wait_for(lock, unwatchedInterval) == std::cv_status::timeout) {
                *job = [this] { recheckUnwatched(); };
                return true;
            }
        } else {
            m_wake.wait(lock);
        }
    }
}

void IndexKeeper::loop()
{
    m_reader = std::make_unique<IndexFolderReader>(m_rules);
    m_catalog.prepareForWriting();
    queueAllContents();
    Job job;
    while (nextJob(&job))
        job();
    // What was found of a first crawl is worth keeping: the next start goes on from there.
    if (m_bulk || m_store->journalSize() > 0)
        checkpoint();
}

void IndexKeeper::commit(const IndexBatch &batch)
{
    for (size_t start = 0; start < batch.size(); start += largestBatch) {
        const auto first = batch.begin() + static_cast<std::ptrdiff_t>(start);
        const auto last = batch.begin() +
                          static_cast<std::ptrdiff_t>(std::min(batch.size(), start + largestBatch));
        const IndexBatch part(first, last);
        const std::vector<IndexItem> touched = m_catalog.apply(part);
        if (!m_bulk) {
            if (auto error = m_store->append(part))
                problem(QStringLiteral("save"), error->message);
        }
        queueContents(part);
        const XPLocker lock(m_listenerMutex);
        for (const auto &[number, listener] : m_listeners)
            listener(touched);
    }
    {
        const XPLocker lock(m_mutex);
        m_status.items = m_catalog.count();
    }
    if (m_bulk && m_catalog.chunkCount() >= m_bulkChunks + 4)
        checkpoint();
    else if (!m_bulk && m_store->journalSize() > longestJournal)
        checkpoint();
}

void IndexKeeper::queueContents(const IndexBatch &applied)
{
    if (!m_contents)
        return;
    std::vector<IndexContentQueue::Waiting> backlog;
    for (const IndexChange &change : applied) {
        const IndexItem item = change.record.item;
        if (change.kind == IndexChange::Kind::Remove) {
            m_contents->forget(item);
        } else if (change.kind == IndexChange::Kind::Put ||
                   change.kind == IndexChange::Kind::Move) {
            const IndexSlot slot = m_catalog.slotOf(item);
            if (!wantsContent(slot))
                m_contents->forget(item);
            else if (m_bulk)
                backlog.push_back({change.record.info.modified, item});
            else
                m_contents->add(item);
        }
    }
    if (!backlog.empty())
        m_contents->addBacklog(std::move(backlog));
}

// What an earlier run left to import.
void IndexKeeper::queueAllContents()
{
    if (!m_contents)
        return;
    std::vector<IndexContentQueue::Waiting> backlog;
    for (const IndexSlot slot : m_catalog.alive().rows()) {
        const IndexChunk &chunk = m_catalog.chunkOf(slot);
        const quint32 row = IndexCatalog::rowOf(slot);
        if (wantsContent(slot) && !isContentStored(slot))
            backlog.push_back({chunk.modified[row], chunk.items[row]});
    }
    m_contents->addBacklog(std::move(backlog));
}

bool IndexKeeper::wantsContent(IndexSlot slot) const
{
    const IndexChunk &chunk = m_catalog.chunkOf(slot);
    return S_ISREG(chunk.modes[IndexCatalog::rowOf(slot)]) &&
           m_contents->accepts(m_catalog.type(slot));
}

bool IndexKeeper::isContentStored(IndexSlot slot) const
{
    const IndexChunk &chunk = m_catalog.chunkOf(slot);
    const quint32 row = IndexCatalog::rowOf(slot);
    return m_catalog.isImported(slot, chunk.modified[row], chunk.sizes[row]) &&
           m_text->isStored(chunk.items[row], chunk.modified[row], chunk.sizes[row]);
}

std::optional<IndexContentQueue::File> IndexKeeper::contentFile(IndexItem item) const
{
    const IndexCatalog::Reading reading(m_catalog);
    const IndexSlot slot = m_catalog.slotOf(item);
    if (slot == IndexCatalog::noSlot)
        return {};
    const IndexChunk &chunk = m_catalog.chunkOf(slot);
    const quint32 row = IndexCatalog::rowOf(slot);
    if (!S_ISREG(chunk.modes[row]))
        return {};
    return IndexContentQueue::File{
        m_catalog.path(slot), m_catalog.type(slot), chunk.modified[row], chunk.sizes[row],
        m_catalog.isImported(slot, chunk.modified[row], chunk.sizes[row])};
}

void IndexKeeper::checkpoint()
{
    m_bulkChunks = m_catalog.chunkCount();
    if (auto error = m_store->checkpoint(m_catalog, m_bulk))
        problem(QStringLiteral("save"), error->message);
    else
        problem(QStringLiteral("save"), {});
}

// --- Roots

void IndexKeeper::setRoots(const QStringList &roots)
{
    post([this, roots] { applyRoots(roots); }, true);
}

void IndexKeeper::applyRoots(const QStringList &roots)
{
    QSet<QByteArray> wanted;
    for (const QString &root : roots)
        wanted.insert(XPPath::encode(XPPath::absolute(root)));
    IndexBatch gone;
    for (const IndexItem root : std::vector<IndexItem>(m_catalog.roots())) {
        const QByteArray path = m_catalog.path(m_catalog.slotOf(root));
        if (!wanted.contains(path)) {
            m_watcher->forgetBelow(path);
            removeTree(root, gone);
        }
    }
    commit(gone);
    m_bulk = m_catalog.count() == 0;
    m_bulkChunks = m_catalog.chunkCount();
    m_childrenBefore = m_catalog.folderMembers();
    {
        const XPLocker lock(m_mutex);
        m_status.phase = m_bulk ? Status::Phase::Crawling : Status::Phase::Verifying;
        m_status.foldersRead = 0;
    }
    for (const QByteArray &path : wanted)
        addRoot(path);
}

void IndexKeeper::addRoot(const QByteArray &path)
{
    const QString text = XPPath::decode(path);
    const auto info = XPFileInfo::read(text);
    if (!info || !info->isDirectory()) {
        problem(text, QStringLiteral("%1 is not there").arg(XPPath::printable(text)));
        return;
    }
    problem(text, {});
    IndexChange change;
    change.record.item = m_catalog.itemAtPath(path);
    const IndexSlot slot = m_catalog.slotOf(change.record.item);
    if (slot == IndexCatalog::noSlot || m_catalog.record(slot).parent != 0) {
        change.record.item = ++m_lastItem;
        change.record.name = path;
        change.record.info = *info;
        change.record.type = KPFileType::folderUTI;
        commit({change});
    }
    m_crawler->submit(path, true);
}

// --- What a crawl finds

IndexItem IndexKeeper::itemAt(const QByteArray &folder) const
{
    return m_catalog.itemAtPath(folder);
}

void IndexKeeper::applyListing(const IndexListing &listing)
{
    const IndexItem folder = itemAt(listing.folder);
    if (folder == 0)
        return;
    bool overtaken = m_watcher->lastEventIn(listing.folder) > listing.stamp && !listing.error;
    IndexBatch batch;
    for (const IndexEntry &entry : listing.entries) {
        // Taken for known against a row that was replaced meanwhile.
        const IndexSlot slot = m_catalog.slotOf(m_catalog.child(folder, entry.name));
        if (!entry.attributesRead &&
            (slot == IndexCatalog::noSlot || !m_catalog.hasFacts(slot, entry.info))) {
            overtaken = true;
            continue;
        }
        // A folder that a second look finds was not handed on by the first.
        if (entry.descend && !listing.deep && slot == IndexCatalog::noSlot)
            m_crawler->submit(joined(listing.folder, entry.name), true);
        applyEntry(folder, entry, batch);
    }
    if (listing.info)
        applyFolderFacts(listing.folder, *listing.info, batch);
    if (!listing.error || listing.error->kind == XPError::Kind::NotFound)
        removeMissing(folder, listing, batch);
    if (listing.error && listing.error->kind != XPError::Kind::NotFound)
        problem(XPPath::decode(listing.folder), XPPath::printable(XPPath::decode(listing.folder)) +
                                                    QStringLiteral(": ") + listing.error->message);
    commit(batch);
    // Only now, so that the second look compares with what this one left. Folders below were
    // handed on by the first; only this one is read again.
    if (overtaken)
        m_crawler->submit(listing.folder, false);
    const XPLocker lock(m_mutex);
    ++m_status.foldersRead;
}

void IndexKeeper::applyEntry(IndexItem folder, const IndexEntry &entry, IndexBatch &batch)
{
    const IndexItem known = m_catalog.child(folder, entry.name);
    const IndexSlot slot = m_catalog.slotOf(known);
    IndexChange change;
    if (slot != IndexCatalog::noSlot) {
        const quint32 before = m_catalog.chunkOf(slot).modes[IndexCatalog::rowOf(slot)];
        if ((before & S_IFMT) != (entry.info.mode & S_IFMT)) {
            removeTree(known, batch);
        } else {
            if (!entry.attributesRead)
                return; // known as it is
            change.record.item = known;
            const IndexRecord record = m_catalog.record(slot);
            if (m_catalog.hasFacts(slot, entry.info) && record.attributes == entry.attributes &&
                record.type == entry.type)
                return;
        }
    }
    if (change.record.item == 0)
        change.record.item = ++m_lastItem;
    change.record.parent = folder;
    change.record.name = entry.name;
    change.record.info = entry.info;
    change.record.type = entry.type;
    change.record.attributes = entry.attributes;
    batch.push_back(std::move(change));
}

void IndexKeeper::removeMissing(IndexItem folder, const IndexListing &listing, IndexBatch &batch)
{
    if (m_catalog.childCount(folder) == 0)
        return; // the first listing of a new folder
    QSet<QByteArray> present;
    for (const IndexEntry &entry : listing.entries)
        present.insert(entry.name);
    std::vector<IndexItem> members;
    if (listing.deep && !m_childrenBefore.empty()) {
        auto pair = std::lower_bound(m_childrenBefore.begin(), m_childrenBefore.end(),
                                     quint64{folder} << 32);
        for (; pair != m_childrenBefore.end() && (*pair >> 32) == folder; ++pair)
            members.push_back(static_cast<IndexItem>(*pair));
    } else {
        members = m_catalog.children(folder);
    }
    for (const IndexItem member : members) {
        const IndexSlot slot = m_catalog.slotOf(member);
        if (slot == IndexCatalog::noSlot)
            continue;
        const IndexChunk &chunk = m_catalog.chunkOf(slot);
        const quint32 row = IndexCatalog::rowOf(slot);
        if (chunk.parents[row] == folder && !present.contains(chunk.name(row)))
            removeTree(member, batch);
    }
}

void IndexKeeper::removeTree(IndexItem item, IndexBatch &batch)
{
    IndexChange change;
    change.kind = IndexChange::Kind::Remove;
    const RowSet rows = m_catalog.below(m_catalog.slotOf(item));
    for (const quint32 slot : *rows) {
        change.record.item = m_catalog.itemAt(slot);
        batch.push_back(change);
    }
}

void IndexKeeper::crawlDone()
{
    if (!m_crawler->isIdle())
        return; // more was asked for meanwhile
    if (m_bulk) {
        checkpoint();
        m_bulk = false;
    }
    m_childrenBefore.clear();
    m_childrenBefore.shrink_to_fit();
    problem(QStringLiteral("overflow"), {});
    if (!m_unwatched.isEmpty())
        problem(QStringLiteral("watches"),
                QStringLiteral("%1 folders are looked at every %2 seconds only: no watches left "
                               "(sysctl fs.inotify.max_user_watches)")
                    .arg(m_unwatched.size())
                    .arg(unwatchedInterval.count()));
    const XPLocker lock(m_mutex);
    m_status.phase = Status::Phase::Live;
}

void IndexKeeper::recheckUnwatched()
{
    for (const QByteArray &folder : std::exchange(m_unwatched, {})) {
        if (itemAt(folder))
            m_crawler->submit(folder, true);
    }
}

// --- What the watcher tells

void IndexKeeper::applyEvents(const std::vector<IndexWatcher::Event> &events)
{
    using Kind = IndexWatcher::Event::Kind;
    // A file written in many steps is looked at once, after the last.
    std::vector<bool> superseded(events.size(), false);
    QSet<QPair<QByteArray, QByteArray>> later;
    for (size_t i = events.size(); i-- > 0;) {
        const IndexWatcher::Event &event = events[i];
        if (event.kind != Kind::Changed) {
            later.clear();
            continue;
        }
        const QPair<QByteArray, QByteArray> key(event.folder, event.name);
        superseded[i] = later.contains(key);
        later.insert(key);
    }
    IndexBatch batch;
    QSet<QByteArray> folders; // whose own times changed with what they hold; nobody tells of that
    // Each change is applied before the next is judged, unless both only concern facts.
    const auto flush = [&] {
        if (!batch.empty())
            commit(batch);
        batch.clear();
    };
    for (size_t i = 0; i < events.size(); ++i) {
        const IndexWatcher::Event &event = events[i];
        if (superseded[i])
            continue;
        folders.insert(event.folder);
        if (event.kind == Kind::Moved)
            folders.insert(event.toFolder);
        switch (event.kind) {
        case Kind::Changed:
            applyChanged(event.folder, event.name, batch);
            if (batch.size() >= largestBatch)
                flush();
            break;
        case Kind::Gone: {
            flush();
            if (event.isFolder)
                m_watcher->forgetBelow(joined(event.folder, event.name));
            const IndexItem item = m_catalog.child(itemAt(event.folder), event.name);
            if (item)
                removeTree(item, batch);
            break;
        }
        case Kind::Moved:
            flush();
            applyMoved(event, batch);
            flush();
            break;
        case Kind::FolderGone:
            flush();
            if (const IndexItem item = itemAt(event.folder)) {
                if (!XPFileInfo::read(XPPath::decode(event.folder)))
                    removeTree(item, batch);
            }
            break;
        case Kind::Overflow:
            flush();
            problem(QStringLiteral("overflow"),
                    QStringLiteral("more changed at once than the system tells of; looking again"));
            m_childrenBefore = m_catalog.folderMembers();
            for (const IndexItem root : m_catalog.roots())
                m_crawler->submit(m_catalog.path(m_catalog.slotOf(root)), true);
            break;
        }
    }
    flush();
    for (const QByteArray &folder : folders) {
        if (const auto info = XPFileInfo::read(XPPath::decode(folder)))
            applyFolderFacts(folder, *info, batch);
    }
    flush();
}

void IndexKeeper::applyFolderFacts(const QByteArray &folder, const XPFileInfo &info,
                                   IndexBatch &batch)
{
    const IndexSlot slot = m_catalog.slotOf(itemAt(folder));
    if (slot == IndexCatalog::noSlot || !info.isDirectory() || m_catalog.hasFacts(slot, info))
        return;
    IndexChange change;
    change.record = m_catalog.record(slot);
    change.record.info = info;
    batch.push_back(std::move(change));
}

void IndexKeeper::applyChanged(const QByteArray &folder, const QByteArray &name, IndexBatch &batch)
{
    const IndexItem parent = itemAt(folder);
    if (parent == 0)
        return;
    const auto entry = m_reader->readEntry(folder, name);
    if (!entry)
        return; // gone again: an event of its own says so
    KPFileType::forgetPath(XPPath::decode(joined(folder, name)));
    const bool isNew = m_catalog.child(parent, name) == 0;
    applyEntry(parent, *entry, batch);
    if (entry->descend && isNew) {
        commit(std::exchange(batch, {}));
        m_crawler->submit(joined(folder, name), true);
    }
}

void IndexKeeper::applyMoved(const IndexWatcher::Event &event, IndexBatch &batch)
{
    const IndexItem item = m_catalog.child(itemAt(event.folder), event.name);
    const IndexItem target = itemAt(event.toFolder);
    const auto entry = m_reader->readEntry(event.toFolder, event.toName);
    if (item == 0) {
        applyChanged(event.toFolder, event.toName, batch);
        return;
    }
    if (target == 0 || (!entry && m_rules.excludes(event.toFolder, event.toName))) {
        removeTree(item, batch);
        return;
    }
    const IndexItem overwritten = m_catalog.child(target, event.toName);
    if (overwritten && overwritten != item) {
        if (entry && !event.isFolder) {
            // Saved by writing a new file and renaming it over the old one: the old item goes on.
            removeTree(item, batch);
            applyEntry(target, *entry, batch);
            return;
        }
        removeTree(overwritten, batch);
    }
    IndexChange change;
    change.kind = IndexChange::Kind::Move;
    change.record = m_catalog.record(m_catalog.slotOf(item));
    change.record.parent = target;
    change.record.name = event.toName;
    if (entry) {
        change.record.info = entry->info;
        change.record.type = entry->type;
    }
    batch.push_back(std::move(change));
    // What happened inside on the way is looked for under the new path.
    if (event.isFolder)
        m_crawler->submit(joined(event.toFolder, event.toName), true);
}

// --- Others

int IndexKeeper::addListener(Listener listener)
{
    const XPLocker lock(m_listenerMutex);
    m_listeners.emplace(++m_lastListener, std::move(listener));
    return m_lastListener;
}

void IndexKeeper::removeListener(int number)
{
    const XPLocker lock(m_listenerMutex);
    m_listeners.erase(number);
}

void IndexKeeper::reimport(const QByteArray &path)
{
    post(
        [this, path] {
            IndexBatch batch;
            const qsizetype slash = path.lastIndexOf('/');
            applyChanged(slash > 0 ? path.left(slash) : QByteArray("/"), path.mid(slash + 1),
                         batch);
            commit(batch);
        },
        true);
}

void IndexKeeper::problem(const QString &key, const QString &text)
{
    const XPLocker lock(m_mutex);
    if (text.isEmpty()) {
        m_problems.erase(key);
        return;
    }
    if (m_problems[key] != text)
        qCInfo(xpLog).noquote() << "Index:" << text;
    m_problems[key] = text;
}

IndexKeeper::Status IndexKeeper::status() const
{
    const XPLocker lock(m_mutex);
    Status status = m_status;
    status.contentsWaiting = m_contents ? m_contents->waiting() + m_contents->postponed() : 0;
    for (const auto &[key, text] : m_problems)
        status.problems.append(text);
    return status;
}

bool IndexKeeper::isQuiet() const
{
    // In this order: what one of them hands on is then seen in the next.
    const bool quiet = m_watcher->isDrained() && m_crawler->isIdle();
    const XPLocker lock(m_mutex);
    return quiet && m_urgent.empty() && m_bulkJobs.empty();
}

bool IndexKeeper::sync(bool contents, const std::function<bool()> &stop)
{
    // Asked on the writer's thread, where no job is half done.
    struct Answer
    {
        XPMutex mutex;
        std::condition_variable_any wake;
        bool done XP_GUARDED_BY(mutex) = false;
        bool quiet XP_GUARDED_BY(mutex) = false;
    };
    for (;;) {
        const auto answer = std::make_shared<Answer>();
        post(
            [this, answer, contents] {
                const bool imported = !contents || !m_contents || m_contents->waiting() == 0;
                const bool quiet = imported && isQuiet();
                const XPLocker lock(answer->mutex);
                answer->quiet = quiet;
                answer->done = true;
                answer->wake.notify_all();
            },
            false);
        XPLocker lock(answer->mutex);
        while (!answer->done) {
            if (answer->wake.wait_for(lock, 50ms) == std::cv_status::timeout && stop && stop())
                return false;
        }
        if (answer->quiet)
            return true;
        answer->wake.wait_for(lock, 5ms);
        if (stop && stop())
            return false;
    }
}
