#pragma once

#include "IndexCrawler.h"
#include "IndexKeeping.h"
#include "IndexReconciler.h"
#include "IndexStatus.h"
#include "XPMountTable.h"

#include <limits>

// The indexed folders: reads and watches them, again where that gives no events, and follows them
// as they go and come.
//
// Roots on volumes whose file calls may hang (networks, FUSE) are read by threads of their own, and
// the writer makes no file calls there. A root that is not there, or whose volume is not mounted,
// keeps its rows and is compared with the disk again when it comes back.
// Threads: the writer's, unless said otherwise.
class IndexRoots
{
public:
    struct Calls
    {
        std::function<void()> crawled; // everything on this machine's disks was looked at
        std::function<void()> atRest;  // isAtRest() may have become true; any thread
    };
    IndexRoots(IndexKeeping &keeping, Calls calls);

    void begin();
    void end(); // stops reading and watching
    // From any thread: jobs for the writer.
    void setFolders(const QStringList &roots, const QStringList &rules);
    void look(const QByteArray &path); // reads it again

    bool isCrawling() const { return m_local->isCrawling; } // this machine's disks
    // Nothing is being read that answers, and nothing waits that was told of.
    bool isAtRest() const;
    bool hasDistant() const { return m_hasDistant; }
    bool isDistant(const QByteArray &path) const; // its root's file calls may hang
    IndexStatus status() const;                   // phase, roots and folders read; any thread

private:
    using State = IndexStatus::Root::State;

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
        State state = State::Reading;
        bool isAsked = false; // the crawler was asked to read it, and has not done so yet
        QString volume;       // the mount point it was read under last; empty: never read
        std::shared_ptr<Crew> crew;
    };

    std::shared_ptr<Crew> makeCrew(bool distant);
    IndexFolderReader::Hooks::Known compare(const IndexListing &listing,
                                            std::span<IndexFolderReader::Seen> seen) const;
    void applyRoots(const QStringList &roots);
    void applyRules();
    void dropRoot(const QByteArray &path);
    void dropTree(const QByteArray &path);
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

    IndexLive &m_live;
    const IndexSetup &m_setup;
    IndexProblems &m_problems;
    IndexJobs &m_jobs;
    IndexWriter &m_writer;
    const Calls m_calls;

    IndexRules m_rules; // as set, without the roots
    IndexReconciler m_reconciler;
    std::shared_ptr<Crew> m_local;
    std::vector<Root> m_roots;
    XPMountTable m_mounts;
    bool m_hasDistant = false; // roots

    mutable XPMutex m_mutex;
    IndexStatus m_status XP_GUARDED_BY(m_mutex);
    std::atomic<qint64> m_foldersRead = 0;
    // Until the first comparison with the disk is done: rows changed since are read again.
    std::atomic<qint64> m_trustedBefore = std::numeric_limits<qint64>::max();
};
