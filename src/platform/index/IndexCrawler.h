#pragma once

#include "IndexFolderReader.h"
#include "IndexWatcher.h"
#include "XPMutex.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <thread>

// Reads trees of folders on a small pool of threads and hands over one listing a folder.
//
// A folder is watched before it is read, so that nothing falls between. Listings are handed over
// parents first (a folder's listing before any listing below it). deliver() may block to slow the
// pool down. When all that was asked for is done, idle() is called once.
// Threads: construct, submit and destroy on any one thread; the callbacks come from the pool.
class IndexCrawler
{
public:
    struct Callbacks
    {
        std::function<void(IndexListing)> deliver;
        std::function<void()> idle;
        std::function<void(const QByteArray &folder)> unwatched;
        // See IndexFolderReader::readFolder(): tells for a folder which entries are known as
        // they are. May be empty.
        std::function<IndexFolderReader::Known(const QByteArray &folder)> knownIn;
    };
    IndexCrawler(const IndexRules &rules, IndexWatcher *watcher, Callbacks callbacks);
    ~IndexCrawler(); // stops within one folder's reading

    // `deep`: everything below too.
    void submit(const QByteArray &folder, bool deep);
    bool isIdle() const;

private:
    struct Task
    {
        QByteArray folder;
        bool deep;
    };
    void loop();
    void readOne(IndexFolderReader &reader, const Task &task);

    const IndexRules m_rules;
    IndexWatcher *const m_watcher;
    const Callbacks m_callbacks;
    mutable XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::deque<Task> m_tasks XP_GUARDED_BY(m_mutex);
    int m_running XP_GUARDED_BY(m_mutex) = 0;
    bool m_stopping XP_GUARDED_BY(m_mutex) = false;
    std::vector<std::thread> m_threads;
};
