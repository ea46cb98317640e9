#pragma once

#include "IndexContents.h"
#include "IndexLastUse.h"
#include "IndexRoots.h"

#include <thread>

// Keeps the index right: its roots (IndexRoots), the contents of their files (IndexContents), when
// they were used last (IndexLastUse); and saves it.
//
// One per machine and user, in the process that holds the writer's lock. All changes are applied
// by one writer thread in one order; changes that somebody made just now go before what a crawl
// still finds.
// Threads: the constructor and destructor on one thread; everything else from any.
class IndexKeeper
{
public:
    // The caller holds the writer's lock. `store`: of a follower whose catalog is up to date.
    // Returns at once: opening, loading and everything else happen on the writer's thread.
    IndexKeeper(IndexLive &live, const IndexSetup &setup, std::unique_ptr<IndexStore> store = {});
    ~IndexKeeper();

    IndexStatus status() const;
    // Returns when everything that happened before the call is in the index; false when `stop`
    // said so before. With a crawl under way that takes as long as the crawl; with `contents`, as
    // long as what waits to be imported. A root that does not answer is not waited for.
    bool sync(bool contents, const std::function<bool()> &stop = {});
    // The same as a call, on the writer's thread; never, when the keeper ends before.
    void whenQuiet(bool contents, std::function<void()> done);
    void reimport(const QByteArray &path) { m_roots.look(path); }
    // Another process found the index of contents damaged: it is begun anew.
    void textIsDamaged(quint64 inode) { m_contents.isDamaged(inode); }
    void setFolders(const QStringList &roots, const QStringList &rules)
    {
        m_roots.setFolders(roots, rules);
    }
    IndexProblems &problems() { return m_keeping.problems; }

private:
    struct Waiting
    {
        bool contents = false;
        std::function<void()> done;
    };

    void run();
    void applied(const IndexBatch &batch);
    void saveLater();
    void restLater();
    bool isQuiet(bool contents) const;
    void mayBeQuiet(); // any thread
    void tellQuiet();

    IndexKeeping m_keeping;

    // Writer thread only.
    std::unique_ptr<IndexStore> m_takenOver;
    IndexLastUse m_lastUse;
    IndexRoots m_roots;
    IndexContents m_contents;
    bool m_savingLater = false;
    bool m_restingLater = false;
    std::vector<Waiting> m_waiting; // for the index to be quiet
    std::atomic<int> m_asking = 0;  // the same and those about to; any thread

    std::thread m_thread; // last: joined before anything it uses is destroyed
};
