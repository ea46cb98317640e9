#include "IndexContentQueue.h"

#include "XPLog.h"

#include <algorithm>
#include <sched.h>

// Files whose words are stored in one transaction: a lone file is found at once, a backlog is
// not slowed by commits.
static constexpr size_t filesATime = 64;

IndexContentQueue::IndexContentQueue(IndexTextStore &store, Done done)
    : m_store(store), m_done(std::move(done))
{
    m_importers.push_back(std::make_unique<IndexPlainTextImporter>());
    m_thread = std::thread([this] { loop(); });
}

IndexContentQueue::~IndexContentQueue()
{
    {
        const XPLocker lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

bool IndexContentQueue::accepts(const QString &type) const
{
    return std::any_of(m_importers.begin(), m_importers.end(),
                       [&](const auto &importer) { return importer->accepts(type); });
}

void IndexContentQueue::add(Task task)
{
    {
        const XPLocker lock(m_mutex);
        m_tasks.emplace(task.modified, std::move(task));
    }
    m_wake.notify_one();
}

void IndexContentQueue::forget(IndexItem item)
{
    {
        const XPLocker lock(m_mutex);
        m_gone.push_back(item);
    }
    m_wake.notify_one();
}

qsizetype IndexContentQueue::waiting() const
{
    const XPLocker lock(m_mutex);
    return static_cast<qsizetype>(m_tasks.size() + m_gone.size()) + m_atWork;
}

void IndexContentQueue::loop()
{
    const sched_param none = {};
    ::pthread_setschedparam(::pthread_self(), SCHED_IDLE, &none);
    XPLocker lock(m_mutex);
    while (!m_stopping) {
        if (m_tasks.empty() && m_gone.empty()) {
            m_wake.wait(lock);
            continue;
        }
        std::vector<Task> tasks;
        for (const IndexItem item : std::exchange(m_gone, {}))
            tasks.push_back({item, {}, {}, 0, -1});
        while (!m_tasks.empty() && tasks.size() < filesATime) {
            const auto newest = std::prev(m_tasks.end());
            tasks.push_back(std::move(newest->second));
            m_tasks.erase(newest);
        }
        m_atWork = static_cast<qsizetype>(tasks.size());
        lock.unlock();
        importSome(tasks);
        lock.lock();
        m_atWork = 0;
    }
}

void IndexContentQueue::importSome(const std::vector<Task> &tasks)
{
    std::vector<IndexTextStore::Text> texts;
    IndexBatch batch;
    for (const Task &task : tasks) {
        if (task.size < 0) { // gone
            texts.push_back({task.item, {}});
            continue;
        }
        IndexChange change;
        change.kind = IndexChange::Kind::Import;
        change.record.item = task.item;
        change.record.importedModified = task.modified;
        change.record.importedSize = task.size;
        for (const auto &importer : m_importers) {
            if (!importer->accepts(task.type))
                continue;
            const auto content = importer->import(task.path, task.type);
            if (content)
                change.record.imported = content->attributes;
            texts.push_back({task.item, content ? content->text : QString()});
            break;
        }
        batch.push_back(std::move(change));
    }
    if (auto error = m_store.put(texts)) {
        // Not marked as imported: the next start tries again.
        qCWarning(xpLog).noquote() << error->message;
        return;
    }
    if (!batch.empty())
        m_done(std::move(batch));
}
