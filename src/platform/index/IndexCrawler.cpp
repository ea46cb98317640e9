#include "IndexCrawler.h"

#include <algorithm>

IndexCrawler::IndexCrawler(const IndexRules &rules, IndexWatcher *watcher, Callbacks callbacks)
    : m_rules(rules), m_watcher(watcher), m_callbacks(std::move(callbacks))
{
    const unsigned count = std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
    for (unsigned i = 0; i < count; ++i)
        m_threads.emplace_back([this] { loop(); });
}

IndexCrawler::~IndexCrawler()
{
    {
        const XPLocker lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

void IndexCrawler::submit(const QByteArray &folder, bool deep)
{
    {
        const XPLocker lock(m_mutex);
        m_tasks.push_back({folder, deep});
    }
    m_wake.notify_one();
}

bool IndexCrawler::isIdle() const
{
    const XPLocker lock(m_mutex);
    return m_tasks.empty() && m_running == 0;
}

void IndexCrawler::loop()
{
    IndexFolderReader reader(m_rules);
    XPLocker lock(m_mutex);
    while (!m_stopping) {
        if (m_tasks.empty()) {
            m_wake.wait(lock);
            continue;
        }
        // Last in, first out: the list of waiting folders stays short on a deep tree.
        const Task task = std::move(m_tasks.back());
        m_tasks.pop_back();
        ++m_running;
        lock.unlock();
        readOne(reader, task);
        lock.lock();
        if (--m_running == 0 && m_tasks.empty() && !m_stopping) {
            lock.unlock();
            m_callbacks.idle();
            lock.lock();
        }
    }
}

void IndexCrawler::readOne(IndexFolderReader &reader, const Task &task)
{
    const quint64 stamp = m_watcher ? m_watcher->stamp() : 0;
    if (m_watcher && !m_watcher->watch(task.folder))
        m_callbacks.unwatched(task.folder);
    IndexFolderReader::Known known;
    if (m_callbacks.knownIn)
        known = m_callbacks.knownIn(task.folder);
    IndexListing listing = reader.readFolder(task.folder, known);
    listing.stamp = stamp;
    listing.deep = task.deep;
    std::vector<Task> below;
    if (task.deep) {
        const QByteArray prefix = task.folder == "/" ? task.folder : task.folder + '/';
        for (const IndexEntry &entry : listing.entries) {
            if (entry.descend)
                below.push_back({prefix + entry.name, true});
        }
    }
    m_callbacks.deliver(std::move(listing));
    if (below.empty())
        return;
    {
        const XPLocker lock(m_mutex);
        m_tasks.insert(m_tasks.end(), below.rbegin(), below.rend());
    }
    m_wake.notify_all();
}
