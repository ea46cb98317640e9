#pragma once

#include "IndexImporter.h"
#include "IndexTextStore.h"

#include <condition_variable>
#include <map>
#include <thread>

// Imports the contents of files on a thread of its own, at idle priority, newest file first.
//
// What waits is not saved: an item whose imported time and size are not those of its file is
// waiting, so at the next start the catalog tells what is left to do.
// Threads: any; the callback comes from the content thread.
class IndexContentQueue
{
public:
    struct Task
    {
        IndexItem item = 0;
        QByteArray path;
        QString type;
        qint64 modified = 0;
        qint64 size = 0;
    };
    // Applies what was found (an Import change a file); called after its words are stored.
    using Done = std::function<void(IndexBatch)>;

    IndexContentQueue(IndexTextStore &store, Done done);
    ~IndexContentQueue(); // stops within one file's import

    bool accepts(const QString &type) const;
    void add(Task task);
    void forget(IndexItem item); // the file is gone: its words too
    qsizetype waiting() const;   // files; 0 when all are done and stored

private:
    void loop();
    void importSome(const std::vector<Task> &tasks);

    IndexTextStore &m_store;
    const Done m_done;
    std::vector<std::unique_ptr<IndexImporter>> m_importers;
    mutable XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::multimap<qint64, Task> m_tasks XP_GUARDED_BY(m_mutex); // by modification time
    std::vector<IndexItem> m_gone XP_GUARDED_BY(m_mutex);
    qsizetype m_atWork XP_GUARDED_BY(m_mutex) = 0;
    bool m_stopping XP_GUARDED_BY(m_mutex) = false;
    std::thread m_thread;
};
