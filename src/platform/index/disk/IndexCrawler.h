#pragma once

#include "IndexFolderReader.h"
#include "IndexWatcher.h"
#include "XPMutex.h"

#include <memory>
#include <thread>

// Reads trees of folders on a small pool of threads and hands over what they hold.
//
// A folder is watched before it is read, so that nothing falls between. Listings are handed over
// parents first (a folder's listings before any below it), several small ones at a time. deliver()
// may block to slow the pool down. When all that was asked for is done, idle() is called once.
// A folder that never answers (a network that is gone) holds up this pool alone, and not its end:
// the thread is left behind and does nothing more when it wakes up.
// Threads: everything from any; the callbacks come from the pool, never after the destructor.
class IndexCrawler
{
public:
    struct Callbacks
    {
        std::function<quint64()> stamp; // for IndexListing::stamp
        // See IndexFolderReader::Hooks::compare. No file calls in it.
        std::function<IndexFolderReader::Hooks::Known(const IndexListing &,
                                                      std::span<IndexFolderReader::Seen>)>
            compare;
        std::function<void(std::vector<IndexListing>)> deliver;
        std::function<void(const QByteArray &folder)> unwatched;
        std::function<void()> idle;
    };
    // `local`: file calls are answered by this machine.
    IndexCrawler(bool local, std::shared_ptr<const IndexRules> rules,
                 std::shared_ptr<IndexWatcher> watcher, Callbacks callbacks);
    ~IndexCrawler();

    // `deep`: everything below too.
    void submit(const QByteArray &folder, bool deep);
    void setRules(std::shared_ptr<const IndexRules> rules);
    bool isIdle() const;
    // A folder is being read for longer than that.
    bool isStuckFor(std::chrono::seconds time) const;
    qint64 foldersRead() const;

private:
    struct Pool;
    std::shared_ptr<Pool> m_pool;
    std::vector<std::thread> m_threads;
};
