#pragma once

#include "IndexContentQueue.h"
#include "IndexCrawler.h"
#include "IndexJobs.h"
#include "IndexRecents.h"
#include "IndexReconciler.h"
#include "IndexSetup.h"
#include "IndexStatus.h"
#include "XPMountTable.h"

#include <limits>

// Keeps the index right: crawls the roots, watches them, repairs what was missed, saves.
//
// One per machine and user, in the process that holds the writer's lock. All changes are applied
// by one writer thread in one order; changes that somebody made just now go before what a crawl
// still finds. Roots on volumes whose file calls may hang (networks, FUSE) are read by threads of
// their own, and the writer makes no file calls there. A root that is not there, or whose volume
// is not mounted, keeps its rows and is compared with the disk again when it comes back.
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
    void reimport(const QByteArray &path);
    // Another process found the index of contents damaged: it is begun anew.
    void textIsDamaged(quint64 inode);
    void setRoots(const QStringList &roots);
    void setRules(const QStringList &rules);
    IndexProblems &problems() { return m_problems; }

private:
    using Urgency = IndexJobs::Urgency;
    using RootState = IndexStatus::Root::State;

    // What reads and watches: one for everything on this machine's disks, one for each root that
    // is not.
    struct Crew
    {
        ~Crew();
        bool distant = false;
        bool isCrawling = false;
        bool isSilent = false;
        std::atomic<int> waiting = 0; // listings, for the writer
        std::shared_ptr<IndexWatcher> watcher;
        std::unique_ptr<IndexCrawler> crawler;
        QSet<QByteArray> unwatched;                  // folders
        std::chrono::steady_clock::time_point since; // the crawl under way
        std::chrono::milliseconds lastCrawl{};
        bool isDue = false;      // to be read again on a timer
        bool overflowed = false; // during the crawl under way
    };
    struct Root
    {
        QByteArray path;
        RootState state = RootState::Reading;
        bool isAsked = false; // the crawler was asked to read it, and has not done so yet
        QString volume;       // the mount point it was read under last; empty: never read
        std::shared_ptr<Crew> crew;
    };

    struct Waiting
    {
        bool contents = false;
        std::function<void()> done;
    };

    void run();
    void openText();
    std::shared_ptr<IndexContentQueue> makeContentQueue();
    std::shared_ptr<Crew> makeCrew(bool distant);
    IndexFolderReader::Hooks::Known compare(const IndexListing &listing,
                                            std::span<IndexFolderReader::Seen> seen) const;

    // On the writer thread:
    void applyRoots(const QStringList &roots);
    void applyRules();
    void dropRoot(const QByteArray &path);
    void readRoot(Root &root);
    bool isMountedAsBefore(const Root &root) const;
    void setMissing(Root &root, IndexProblem problem);
    void watchForMissing(const Root &root);
    bool prepareRoot(Root &root, const IndexListing &listing);
    Root *rootAt(const QByteArray &path);
    std::shared_ptr<Crew> crewOf(const QByteArray &path) const; // none: in no root
    void read(const QByteArray &folder, bool deep);
    bool applyListing(IndexReconciler::Pending &pending);
    void applySpecialEvents(const std::shared_ptr<Crew> &crew,
                            const std::vector<IndexWatcher::Event> &events);
    void mountsChanged();
    void crawlDone(const std::shared_ptr<Crew> &crew);
    void scheduleReading(const std::shared_ptr<Crew> &crew);
    void readAgain(Crew &crew);
    void tellOfUnwatched(const Crew &crew);
    void tellOf(const Root &root, IndexProblem::Kind kind);
    void checkSilence(const std::shared_ptr<Crew> &crew);
    void updateStatus();
    bool isQuiet(bool contents) const;
    void mayBeQuiet(); // any thread
    void tellQuiet();
    void applied(const IndexBatch &batch);
    bool wantsContent(IndexSlot slot) const;
    bool isContentStored(IndexSlot slot) const;
    bool queueWaitingContents(IndexSlot from);
    void applyImports(IndexBatch &batch);
    void forgetImport(IndexItem item);
    std::optional<IndexContentQueue::File> contentFile(IndexItem item) const; // any thread
    void saveLater();
    void restLater();
    void setRecents(IndexRecents::Times times);
    void applyRecents();
    void tellLastUse(IndexItem item, const QByteArray &path, IndexBatch &batch) const;
    void queueLastUse(IndexItem item);

    IndexLive &m_live;
    const IndexSetup m_setup;
    IndexProblems m_problems;
    IndexJobs m_jobs;

    // Writer thread only.
    std::unique_ptr<IndexStore> m_takenOver;
    IndexWriter m_writer;
    IndexRules m_rules; // as set, without the roots
    IndexReconciler m_reconciler;
    std::shared_ptr<Crew> m_local;
    std::vector<Root> m_roots;
    XPMountTable m_mounts;
    std::shared_ptr<IndexTextStore> m_text;
    IndexContentQueue *m_importer = nullptr; // m_contents
    IndexRecents::Times m_lastUsed;
    bool m_hasRecents = false; // the list was read
    QSet<QByteArray> m_lastUsedNames;
    bool m_savingLater = false;
    bool m_restingLater = false;
    bool m_hasDistant = false;      // roots
    std::vector<Waiting> m_waiting; // for the index to be quiet
    std::atomic<int> m_asking = 0;  // the same and those about to; any thread

    mutable XPMutex m_mutex;
    IndexStatus m_status XP_GUARDED_BY(m_mutex);
    std::shared_ptr<IndexContentQueue> m_contents XP_GUARDED_BY(m_mutex);
    std::atomic<qint64> m_foldersRead = 0;
    // Until the first comparison with the disk is done: rows changed since are read again.
    std::atomic<qint64> m_trustedBefore = std::numeric_limits<qint64>::max();

    std::thread m_thread; // last: joined before anything it uses is destroyed
};
