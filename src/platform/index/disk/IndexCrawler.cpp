#include "IndexCrawler.h"

#include "XPStrandedThreads.h"

#include <QHash>
#include <algorithm>
#include <condition_variable>

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

static constexpr size_t mostFoldersATime = 16;
static constexpr size_t entriesATime = 1000;
static constexpr auto patience = 2s; // with a thread in a file call, at the end

// What the threads share. It outlives the crawler where a thread is left behind.
struct IndexCrawler::Pool
{
    struct Task
    {
        QByteArray folder;
        bool deep;
    };

    Pool(bool isLocal, std::shared_ptr<const IndexRules> what,
         std::shared_ptr<IndexWatcher> watching, Callbacks calls)
        : local(isLocal), watcher(std::move(watching)), callbacks(std::move(calls)),
          rules(std::move(what))
    {
    }

    void loop(size_t thread);
    size_t take(std::vector<Task> &tasks) XP_REQUIRES(mutex);
    void readSome(IndexFolderReader &reader, size_t thread, std::vector<Task> &tasks);
    // False once the crawler is at its end; else callbacks may be used until leave().
    bool enter();
    void leave();

    const bool local;
    const std::shared_ptr<IndexWatcher> watcher;
    const Callbacks callbacks;
    mutable XPMutex mutex;
    std::condition_variable_any wake;
    std::condition_variable_any left;
    std::shared_ptr<const IndexRules> rules XP_GUARDED_BY(mutex);
    std::vector<Task> tasks XP_GUARDED_BY(mutex);
    QHash<QByteArray, bool> asked XP_GUARDED_BY(mutex);        // by submit(), not begun yet: deep?
    std::vector<Clock::time_point> since XP_GUARDED_BY(mutex); // by thread; reading a folder
    qint64 folders XP_GUARDED_BY(mutex) = 0;
    int running XP_GUARDED_BY(mutex) = 0;
    int inside XP_GUARDED_BY(mutex) = 0; // callbacks
    int threads XP_GUARDED_BY(mutex) = 0;
    bool stopping XP_GUARDED_BY(mutex) = false;
};

IndexCrawler::IndexCrawler(bool local, std::shared_ptr<const IndexRules> rules,
                           std::shared_ptr<IndexWatcher> watcher, Callbacks callbacks)
    : m_pool(
          std::make_shared<Pool>(local, std::move(rules), std::move(watcher), std::move(callbacks)))
{
    const unsigned count = local ? std::clamp(std::thread::hardware_concurrency(), 1U, 4U) : 1;
    {
        const XPLocker lock(m_pool->mutex);
        m_pool->since.resize(count);
        m_pool->threads = static_cast<int>(count);
    }
    for (size_t i = 0; i < count; ++i)
        m_threads.emplace_back([pool = m_pool, i] { pool->loop(i); });
}

IndexCrawler::~IndexCrawler()
{
    bool all = false;
    {
        XPLocker lock(m_pool->mutex);
        m_pool->stopping = true;
        m_pool->wake.notify_all();
        const auto deadline = Clock::now() + patience;
        while (m_pool->inside > 0 || (m_pool->threads > 0 && Clock::now() < deadline))
            m_pool->left.wait_until(lock, m_pool->inside > 0 ? Clock::now() + patience : deadline);
        all = m_pool->threads == 0;
    }
    for (std::thread &thread : m_threads) {
        if (all)
            thread.join();
        else
            XPStrandedThreads::adopt(std::move(thread), [pool = m_pool] {
                const XPLocker lock(pool->mutex);
                return pool->threads == 0;
            });
    }
}

void IndexCrawler::submit(const QByteArray &folder, bool deep)
{
    {
        const XPLocker lock(m_pool->mutex);
        const auto known = m_pool->asked.constFind(folder);
        if (known != m_pool->asked.cend() && (*known || !deep))
            return;
        m_pool->asked.insert(folder, deep);
        m_pool->tasks.push_back({folder, deep});
    }
    m_pool->wake.notify_one();
}

void IndexCrawler::setRules(std::shared_ptr<const IndexRules> rules)
{
    const XPLocker lock(m_pool->mutex);
    m_pool->rules = std::move(rules);
}

bool IndexCrawler::isIdle() const
{
    const XPLocker lock(m_pool->mutex);
    return m_pool->tasks.empty() && m_pool->running == 0;
}

bool IndexCrawler::isStuckFor(std::chrono::seconds time) const
{
    const XPLocker lock(m_pool->mutex);
    const auto before = Clock::now() - time;
    return std::any_of(m_pool->since.begin(), m_pool->since.end(), [&](const auto &since) {
        return since != Clock::time_point() && since < before;
    });
}

qint64 IndexCrawler::foldersRead() const
{
    const XPLocker lock(m_pool->mutex);
    return m_pool->folders;
}

// --- The pool's threads

bool IndexCrawler::Pool::enter()
{
    const XPLocker lock(mutex);
    if (stopping)
        return false;
    ++inside;
    return true;
}

void IndexCrawler::Pool::leave()
{
    const XPLocker lock(mutex);
    if (--inside == 0 && stopping)
        left.notify_all();
}

void IndexCrawler::Pool::loop(size_t thread)
{
    std::vector<Task> taken;
    XPLocker lock(mutex);
    IndexFolderReader reader(rules, {local, true});
    while (!stopping) {
        if (tasks.empty()) {
            wake.wait(lock);
            continue;
        }
        const size_t count = take(taken);
        reader.setRules(rules);
        ++running;
        lock.unlock();
        readSome(reader, thread, taken);
        lock.lock();
        since[thread] = {};
        folders += static_cast<qint64>(count);
        if (!taken.empty()) {
            tasks.insert(tasks.end(), std::make_move_iterator(taken.rbegin()),
                         std::make_move_iterator(taken.rend()));
            if (running < static_cast<int>(since.size()))
                wake.notify_all();
        }
        if (--running == 0 && tasks.empty() && !stopping) {
            ++inside;
            lock.unlock();
            callbacks.idle();
            lock.lock();
            if (--inside == 0)
                left.notify_all();
        }
    }
    --threads;
    left.notify_all();
}

// Last in, first out: the list of waiting folders stays short on a deep tree. A share of what
// waits, so that the other threads have work too.
size_t IndexCrawler::Pool::take(std::vector<Task> &taken)
{
    const size_t share = tasks.size() / (since.size() * 2);
    const size_t count = local ? std::clamp<size_t>(share, 1, mostFoldersATime) : 1;
    taken.clear();
    for (size_t i = 0; i < count; ++i) {
        taken.push_back(std::move(tasks.back()));
        tasks.pop_back();
        if (!asked.isEmpty())
            asked.remove(taken.back().folder);
    }
    return count;
}

// Afterwards `taken` holds the folders below those that were read.
void IndexCrawler::Pool::readSome(IndexFolderReader &reader, size_t thread,
                                  std::vector<Task> &taken)
{
    std::vector<Task> below;
    std::vector<IndexListing> ready;
    size_t entries = 0;
    quint64 stamp = 0;
    bool deep = false;
    bool stopped = false;
    const auto flush = [&] {
        if (ready.empty() || stopped || !enter()) {
            ready.clear();
            return;
        }
        callbacks.deliver(std::move(ready));
        leave();
        ready.clear();
        entries = 0;
    };
    IndexFolderReader::Hooks hooks;
    hooks.opened = [&](const QByteArray &folder, int descriptor) {
        if (watcher && !watcher->watch(folder, descriptor) && enter()) {
            callbacks.unwatched(folder);
            leave();
        }
    };
    hooks.compare = [&](const IndexListing &listing, std::span<IndexFolderReader::Seen> seen) {
        IndexFolderReader::Hooks::Known known;
        stopped = stopped || !enter();
        if (!stopped) {
            known = callbacks.compare(listing, seen);
            leave();
        }
        return known;
    };
    hooks.deliver = [&](IndexListing listing) {
        listing.stamp = stamp;
        listing.deep = deep;
        if (deep) {
            const QByteArray prefix = listing.folder == "/" ? "/" : listing.folder + '/';
            for (const QByteArray &name : listing.below)
                below.push_back({prefix + name, true});
        }
        if (listing.isNews) {
            entries += listing.changes.size() + 1;
            const bool more = !listing.last;
            ready.push_back(std::move(listing));
            if (more || entries >= entriesATime)
                flush();
        }
    };
    for (const Task &task : taken) {
        if (stopped || !enter())
            break;
        stamp = callbacks.stamp();
        leave();
        deep = task.deep;
        {
            const XPLocker lock(mutex);
            since[thread] = Clock::now();
        }
        reader.readFolder(task.folder, hooks);
    }
    flush();
    taken = std::move(below);
}
