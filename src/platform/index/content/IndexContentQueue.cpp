#include "IndexContentQueue.h"

#include "XPLog.h"

#include <algorithm>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace std::chrono_literals;

// What is stored in one transaction: a lone file is found at once, a backlog is not slowed by
// commits, and a change that comes in between waits for little.
static constexpr size_t filesATime = 256;
static constexpr qsizetype bytesATime = 2 << 20;
// A file that changes all the time rests this long between imports, or this many times as long as
// the import took; which is long on a busy machine, so that there is a limit.
static constexpr auto shortestRest = 200ms;
static constexpr auto longestRest = 5s;
static constexpr int restFactor = 20;
// A second change within one tick of the disk's clock does not show in a file's time: files are
// read when that is over. The slowest kernels tick a hundred times a second.
static constexpr auto tick = 20ms;
// After a failure to store, doubled with each.
static constexpr auto shortestPause = 5s;
static constexpr auto longestPause = 2min;

static bool isOlder(const IndexContentQueue::Waiting &a, const IndexContentQueue::Waiting &b)
{
    return a.modified != b.modified ? a.modified < b.modified : a.item < b.item;
}

static bool isInTick(qint64 modified, std::chrono::system_clock::time_point now)
{
    const auto age = now.time_since_epoch() - std::chrono::nanoseconds(modified);
    return age < tick && age > -tick; // a time far in the future does not come to be over
}

IndexContentQueue::IndexContentQueue(IndexTextStore &store, Callbacks callbacks,
                                     Importers importers, bool idle)
    : m_store(store), m_callbacks(std::move(callbacks)), m_importers(std::move(importers)),
      m_isIdle(idle)
{
    m_store.setDamaged([this](quint64 inode) { storeIsDamaged(inode); });
    m_idleThread = std::thread([this] { idleLoop(); });
    m_feedThread = std::thread([this] { feed(); });
}

IndexContentQueue::~IndexContentQueue()
{
    m_store.setDamaged({});
    {
        const XPLocker lock(m_mutex);
        m_stopping = true;
    }
    m_stop.request_stop();
    m_wake.notify_all();
    m_feedThread.join();
    m_workReady.release();
    m_idleThread.join();
}

// --- Asking and adding

IndexImporter *IndexContentQueue::importerFor(const QString &type) const
{
    const XPLocker lock(m_typeMutex);
    const auto known = m_importerOfType.constFind(type);
    if (known != m_importerOfType.cend())
        return *known;
    const auto found = std::find_if(m_importers.begin(), m_importers.end(),
                                    [&](const auto &one) { return one->accepts(type); });
    IndexImporter *importer = found == m_importers.end() ? nullptr : found->get();
    m_importerOfType.insert(type, importer);
    return importer;
}

bool IndexContentQueue::accepts(const QString &type) const
{
    return importerFor(type) != nullptr;
}

void IndexContentQueue::add(IndexItem item)
{
    {
        const XPLocker lock(m_mutex);
        m_changed.push_back(item);
        m_hurry = true;
    }
    m_wake.notify_one();
}

void IndexContentQueue::forget(IndexItem item)
{
    {
        const XPLocker lock(m_mutex);
        m_missed.remove(item);
    }
    if (m_store.hasText(item))
        add(item);
}

void IndexContentQueue::addBacklog(std::vector<Waiting> &&items)
{
    {
        const XPLocker lock(m_mutex);
        if (m_backlog.empty()) {
            m_backlog = std::move(items);
            std::make_heap(m_backlog.begin(), m_backlog.end(), isOlder);
        } else {
            for (const Waiting &item : items) {
                m_backlog.push_back(item);
                std::push_heap(m_backlog.begin(), m_backlog.end(), isOlder);
            }
        }
        m_hasBacklog = true;
    }
    m_wake.notify_one();
}

void IndexContentQueue::folderMoved()
{
    {
        const XPLocker lock(m_mutex);
        ++m_moves;
        if (m_missed.isEmpty())
            return;
        m_changed.insert(m_changed.end(), m_missed.cbegin(), m_missed.cend());
        m_missed.clear();
    }
    m_wake.notify_one();
}

void IndexContentQueue::retry()
{
    {
        const XPLocker lock(m_mutex);
        m_pausedUntil.reset();
    }
    m_wake.notify_one();
}

void IndexContentQueue::storeIsDamaged(quint64 inode)
{
    {
        const XPLocker lock(m_mutex);
        m_damaged = inode;
    }
    m_wake.notify_one();
}

qsizetype IndexContentQueue::count() const
{
    return static_cast<qsizetype>(m_changed.size() + m_backlog.size() + m_resting.size()) +
           m_atWork + (m_damaged != 0 ? 1 : 0);
}

qsizetype IndexContentQueue::waiting() const
{
    const XPLocker lock(m_mutex);
    return m_pausedUntil ? 0 : count();
}

qsizetype IndexContentQueue::postponed() const
{
    const XPLocker lock(m_mutex);
    return m_pausedUntil ? count() : 0;
}

// --- The feeding thread

void IndexContentQueue::feed()
{
    bool rested = false;
    bool told = false;
    XPLocker lock(m_mutex);
    while (!m_stopping) {
        if (m_damaged != 0 && (!m_pausedUntil || *m_pausedUntil <= Clock::now())) {
            const quint64 inode = m_damaged;
            lock.unlock();
            if (m_store.isFile(inode))
                startOver();
            lock.lock();
            if (m_damaged == inode)
                m_damaged = 0;
            continue;
        }
        takeTasks();
        if (!m_work.tasks.empty()) {
            m_atWork = static_cast<qsizetype>(m_work.tasks.size());
            lock.unlock();
            const Clock::time_point began = Clock::now();
            lookUpTasks();
            m_workReady.release();
            m_workDone.acquire();
            finishWork(began);
            rested = false;
            lock.lock();
            m_atWork = 0;
        } else if (const auto next = nextTime()) {
            m_wake.wait_until(lock, *next);
        } else if (mayEndRenewal()) {
            m_hasBacklog = false;
            lock.unlock();
            if (auto error = m_store.endRenewal())
                qCWarning(xpLog).noquote() << error->message;
            lock.lock();
        } else if (!std::exchange(rested, true)) {
            lock.unlock();
            m_store.rest();
            lock.lock();
        } else if (!std::exchange(told, true)) {
            lock.unlock();
            m_callbacks.idle();
            lock.lock();
        } else {
            m_wake.wait(lock);
            told = false;
        }
    }
}

std::optional<IndexContentQueue::Clock::time_point> IndexContentQueue::nextTime() const
{
    if (m_pausedUntil)
        return m_pausedUntil;
    return m_resting.empty() ? std::nullopt : std::optional(m_resting.begin()->first);
}

// Nothing is left to import: what the old tables still hold has no file any more.
bool IndexContentQueue::mayEndRenewal() const
{
    return m_hasBacklog && m_store.isRenewing();
}

void IndexContentQueue::takeTasks()
{
    m_work = {};
    m_work.moves = m_moves;
    const Clock::time_point now = Clock::now();
    if (m_pausedUntil && *m_pausedUntil > now)
        return;
    takeChanged(now);
    m_hurry = false;
    if (!m_work.tasks.empty())
        return;
    m_work.isBacklog = true;
    while (!m_backlog.empty() && m_work.tasks.size() < filesATime) {
        const Waiting newest = m_backlog.front();
        std::pop_heap(m_backlog.begin(), m_backlog.end(), isOlder);
        m_backlog.pop_back();
        if (m_work.tasks.empty() || m_work.tasks.back().waiting.item != newest.item)
            m_work.tasks.push_back({newest, {}, nullptr});
    }
    if (m_backlog.empty())
        std::vector<Waiting>().swap(m_backlog); // its memory too
}

void IndexContentQueue::takeChanged(Clock::time_point now)
{
    const auto due = m_resting.upper_bound(now);
    for (auto rested = m_resting.begin(); rested != due; ++rested)
        m_changed.push_back(rested->second);
    m_resting.erase(m_resting.begin(), due);
    if (m_restUntil.size() > 1000)
        m_restUntil.removeIf([&](const auto &rest) { return rest.value() <= now; });
    while (!m_changed.empty() && m_work.tasks.size() < filesATime) {
        const IndexItem item = m_changed.front();
        m_changed.pop_front();
        const Clock::time_point rest = m_restUntil.value(item);
        if (rest > now)
            m_resting.insert({rest, item});
        else
            m_work.tasks.push_back({{0, item}, {}, nullptr});
    }
}

void IndexContentQueue::lookUpTasks()
{
    // A file that rests may have been put off several times, and a backlog holds what was
    // imported meanwhile.
    const auto now = std::chrono::system_clock::now();
    std::vector<IndexItem> early;
    std::erase_if(m_work.tasks, [&](Task &task) {
        const IndexItem item = task.waiting.item;
        task.file = m_callbacks.lookUp(item);
        task.importer = task.file ? importerFor(task.file->type) : nullptr;
        if (!task.importer) {
            task.file.reset();
            return !m_store.hasText(item);
        }
        if (task.file->imported && m_store.isStored(item, task.file->modified, task.file->size))
            return true;
        if (!isInTick(task.file->modified, now))
            return false;
        early.push_back(item);
        return true;
    });
    rest(early);
    std::stable_sort(m_work.tasks.begin(), m_work.tasks.end(), [](const Task &a, const Task &b) {
        return a.waiting.modified > b.waiting.modified;
    });
}

void IndexContentQueue::rest(const std::vector<IndexItem> &early)
{
    const XPLocker lock(m_mutex);
    for (const IndexItem item : early)
        m_resting.insert({Clock::now() + tick, item});
}

void IndexContentQueue::finishWork(Clock::time_point began)
{
    if (m_work.stored && !*m_work.stored) {
        storeFailed(m_work.stored->error());
        return;
    }
    const Clock::time_point now = Clock::now();
    if (!m_work.isBacklog) {
        const auto rest =
            std::clamp<Clock::duration>((now - began) * restFactor, shortestRest, longestRest);
        for (size_t i = 0; i < m_work.finished; ++i)
            m_restUntil.insert(m_work.tasks[i].waiting.item, now + rest);
    }
    putBack(m_work.finished);
    keepMissed();
    if (!m_work.stored)
        return;
    m_store.publish(**m_work.stored);
    if (std::exchange(m_pause, {}) != Clock::duration::zero()) {
        m_callbacks.problem({});
        const XPLocker lock(m_mutex);
        m_pausedUntil.reset();
    }
    if (!m_work.batch.empty())
        m_callbacks.done(std::move(m_work.batch));
    renewIfWorthIt();
}

// A folder above may have moved since its path was looked up, of which its files get no word.
void IndexContentQueue::keepMissed()
{
    const XPLocker lock(m_mutex);
    for (size_t i = 0; i < m_work.finished && !m_missed.isEmpty(); ++i)
        m_missed.remove(m_work.tasks[i].waiting.item);
    for (const IndexItem item : m_work.missed) {
        if (m_work.moves == m_moves)
            m_missed.insert(item);
        else
            m_changed.push_back(item);
    }
}

// Tasks from `first` on were not done.
void IndexContentQueue::putBack(size_t first)
{
    const XPLocker lock(m_mutex);
    for (size_t i = m_work.tasks.size(); i-- > first;) {
        const Waiting &waiting = m_work.tasks[i].waiting;
        if (!m_work.isBacklog) {
            m_changed.push_front(waiting.item);
            continue;
        }
        m_backlog.push_back(waiting);
        std::push_heap(m_backlog.begin(), m_backlog.end(), isOlder);
    }
}

void IndexContentQueue::storeFailed(const XPError &error)
{
    qCWarning(xpLog).noquote() << error.message;
    putBack(0);
    if (error.kind == XPError::Kind::Malformed)
        return startOver();
    pause(error);
}

void IndexContentQueue::startOver()
{
    if (auto error = m_store.startOver())
        return pause(*error);
    m_callbacks.startedOver();
}

void IndexContentQueue::pause(const XPError &error)
{
    m_pause = m_pause == Clock::duration::zero()
                  ? Clock::duration(shortestPause)
                  : std::min<Clock::duration>(m_pause * 2, longestPause);
    {
        const XPLocker lock(m_mutex);
        m_pausedUntil = Clock::now() + m_pause;
    }
    m_callbacks.problem(error);
}

void IndexContentQueue::renewIfWorthIt()
{
    if (!m_store.isMostlyStale())
        return;
    const auto items = m_store.beginRenewal();
    if (!items) {
        qCWarning(xpLog).noquote() << items.error().message;
        return;
    }
    std::vector<Waiting> again;
    for (const IndexItem item : *items)
        again.push_back({0, item});
    addBacklog(std::move(again));
}

// --- The idle thread

// As in <linux/ioprio.h>, which some versions of the kernel's headers write in C only.
static constexpr int ioprioOfProcess = 1;
static constexpr int ioprioIdle = 3 << 13;

static void makeIdle()
{
    const sched_param none = {};
    ::pthread_setschedparam(::pthread_self(), SCHED_IDLE, &none);
    ::syscall(SYS_ioprio_set, ioprioOfProcess, 0, ioprioIdle);
}

void IndexContentQueue::idleLoop()
{
    if (m_isIdle)
        makeIdle();
    for (;;) {
        m_workReady.acquire();
        if (m_stop.stop_requested())
            break;
        importTasks();
        m_workDone.release();
    }
    m_workDone.release();
}

void IndexContentQueue::importTasks()
{
    qsizetype bytes = 0;
    for (const Task &task : m_work.tasks) {
        const bool makesWay = m_work.isBacklog && m_hurry.load(std::memory_order_relaxed);
        if (m_stop.stop_requested() || bytes >= bytesATime || (makesWay && m_work.finished > 0))
            break;
        importOne(task);
        bytes += m_work.texts.empty() ? 0 : m_work.texts.back().text.size();
        ++m_work.finished;
    }
    if (!m_work.texts.empty())
        m_work.stored = m_store.write(m_work.texts);
}

void IndexContentQueue::importOne(const Task &task)
{
    const IndexItem item = task.waiting.item;
    if (!task.file) {
        m_work.texts.push_back({item, {}});
        return;
    }
    const auto began = std::chrono::system_clock::now();
    auto content = task.importer->import(task.file->path, task.file->type, m_stop.get_token());
    // Gone: the catalog will hear of it, or of a folder that moved. Not readable: as it was, until
    // it changes or the next start.
    if (!content || m_stop.stop_requested()) {
        if (!content && content.error().kind == XPError::Kind::NotFound)
            m_work.missed.push_back(item);
        return;
    }
    if (content->inode != task.file->inode || content->modified != task.file->modified ||
        content->size != task.file->size)
        m_work.missed.push_back(item);
    // While folders move, another file may stand at the path. Its time and size tell little, as
    // files that were unpacked together share them; so it is not taken for done, nor is what may
    // change yet without a sign. The catalog will hear of either.
    const bool isDone = content->inode == task.file->inode && !isInTick(content->modified, began);
    IndexChange change;
    change.kind = IndexChange::Kind::Import;
    change.record.item = item;
    change.record.importedModified = content->modified;
    change.record.importedSize = isDone ? content->size : -1;
    change.record.imported = content->attributes;
    m_work.batch.push_back(std::move(change));
    m_work.texts.push_back({item, content->text, content->modified, content->size});
}
