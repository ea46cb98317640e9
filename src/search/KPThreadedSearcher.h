#pragma once

#include "KPDocValues.h"
#include "KPIndexFilter.h"
#include "KPResultSet.h"
#include "KPTimer.h"
#include "MDQuery.h"

#include <QThread>
#include <deque>

class KPFolderListing;
class QTimer;

// Runs searches on a thread of its own: has at most one live metadata query, makes document
// records of what it finds, lists folders and files where the state asks for that instead, and
// delivers what the documents are to its delegate.
//
// A state that is handed over is picked up within 0.05 s by a timer that runs only while one
// waits. A query that need not be another one keeps running; one that must is abandoned at its
// next item. Results come in passes whose time grows, so that the first are there soon and a
// hundred thousand flood nobody. What the index adds or changes is told at once, what it removes
// after 6 seconds: most programs save a file by removing it for a moment.
// An exception on the thread is logged, and the thread goes on.
// Threads: lives on the main thread; members that say "thread" run on the search thread. Messages
// to the delegate lie under the mutex, and Qt's queue carries the wake-up. The destructor stops
// and joins the thread, which ends at its next item.
// Ownership: source and delegate are the caller's and must outlive it.
class KPThreadedSearcher : public QObject
{
    Q_OBJECT

public:
    // Called on the main thread. Nothing of an older state comes once another was handed over.
    class Delegate
    {
    public:
        virtual ~Delegate() = default;
        virtual void updatedResults(const KPResultsDelivery::Ptr &delivery) = 0;
        virtual void searchDone(const QStringList &problems) = 0;
        virtual void fileListSearchProgress(qint64 filesScanned) = 0;
        // How long after updatedResults() its results are shown. That all are there is said then:
        // what waits to be shown at that moment is held back.
        virtual std::chrono::milliseconds restBeforeDone() const { return {}; }
    };
    struct Setup
    {
        bool live = true;
        // False: items of the index alone where the state's tests need no record (not live).
        bool makesRecords = true;
        bool countsTags = true; // so that tags are read of every listed file too
        // Documents at the most; 0: no limit. The second counts, the first is that of all that
        // the index is ever asked for.
        qsizetype firstMaximum = 200'000;
        qsizetype maximum = 100'000;
        KPTimer::Clock clock; // the system's
        std::chrono::milliseconds pickUp{50};
        std::chrono::milliseconds removalDelay{6000};
    };
    KPThreadedSearcher(IndexSource &source, Delegate *delegate, Setup setup,
                       QObject *parent = nullptr);
    ~KPThreadedSearcher() override;
    void startSearchThread();

    // Hands over a state; null: nothing is searched any more. False: there was nothing to be done.
    // What comes next is told against the documents that are shown.
    using Shown = std::shared_ptr<const KPDocArray>;
    bool newSearchState(const KPSearchState::Ptr &state,
                        const Shown &shown = std::make_shared<const KPDocArray>())
        XP_EXCLUDES(m_mutex);
    // The next state is searched afresh, be it the same one.
    void forceNewSearchNextTime() XP_EXCLUDES(m_mutex);
    void killQuery() { m_killMDQuery = true; }
    // Documents are to be judged again: what the tests read of them changed.
    void metaDataHasChanged() XP_EXCLUDES(m_mutex);
    // Is left out from now on, whatever the index still says, until the next query or until the
    // file is there again.
    void documentDeleted(const QString &path) XP_EXCLUDES(m_deletedMutex);
    // A record moved with its file.
    void pathChanged(const QString &oldPath, const QString &newPath);
    void setResultsOrder(std::unique_ptr<KPResultsOrder> order) XP_EXCLUDES(m_mutex);

    // Any thread. What the query was started with.
    bool mdQueryNeedsRestart(const KPSearchState &state) const XP_EXCLUDES(m_mutex);
    QString mdQueryStringCurrentlyInUse() const XP_EXCLUDES(m_mutex);
    QStringList constraintFoldersCurrentlyInUse() const XP_EXCLUDES(m_mutex);

    // The same for every query: what a query that is never run says, found out once.
    static MDQuery::BatchingParameters defaultBatchingParams(IndexSource &source);

    // The search threads of the process. Any thread.
    static int searchThreadCount();
    // The process ends: all searches are given up for good, and the threads end.
    static void terminate();
    // Returns when there is none any more; false: not within that time.
    static bool waitForSearchThreads(std::chrono::milliseconds patience);

Q_SIGNALS:
    // For itself; connections are made once, as a function handed over by Qt's queue is nothing
    // that thread-sanitizer builds can follow.
    void stateWaiting(QPrivateSignal);    // to the thread
    void ordersWaiting(QPrivateSignal);   // to the thread: what m_orders says
    void messagesWaiting(QPrivateSignal); // to the main thread

private:
    struct Message
    {
        KPResultsDelivery::Ptr delivery; // null: see the others
        bool isDone = false;
        QStringList problems;
        std::optional<qint64> scanned;
    };
    // What is wanted of the thread besides a new state.
    struct Orders
    {
        bool metaDataChanged = false;
        bool deliver = false;
        std::unique_ptr<KPResultsOrder> order;
    };
    // A row of the index, read under one Reading with others.
    struct Row
    {
        IndexItem item = 0;
        QByteArray path; // empty: gone
        XPFileInfo info;
        QString type;
        KPDocValues values;
    };
    void endThread(); // any thread
    static void guard(const std::function<void()> &work);

    // Thread: states.
    void threadEnding();
    void checkForNewSearch() XP_EXCLUDES(m_mutex);
    void newSearchStateInThread(const KPSearchState::Ptr &state, const KPSearchState::Ptr &old,
                                bool forced) XP_EXCLUDES(m_mutex);
    void takeOrders() XP_EXCLUDES(m_mutex);
    bool isGivenUp() const;

    // Thread: the query.
    void startMDQuery(const QString &text, const QStringList &scope) XP_EXCLUDES(m_mutex);
    void cleanUpMDQuery() XP_EXCLUDES(m_mutex);
    void progressMDQuery();
    void finishedMDQuery();
    void updatedMDQuery(const QList<IndexItem> &added, const QList<IndexItem> &changed,
                        const QList<IndexItem> &removed);
    void progressOrFinishedMDResults();
    void delayedProgressOrFinishedResults();
    bool processMDResults(double budget);
    std::vector<Row> rows(const IndexItem *items, size_t count) const;
    void takeRow(const Row &row, bool isChanged);
    bool takeChangedRow(const Row &row);
    bool isLeftOut(const Row &row, KPPooledString path) XP_EXCLUDES(m_deletedMutex);
    KPDoc *mdQueryItemToDocCreate(const Row &row, KPResultCounts::Values *counted, bool isChanged);
    void forget(IndexItem item);
    void learnRoots();
    bool judgesAgain();

    // Thread: listings and delivery.
    void refreshDBDocsThatPassSearch();
    void allowPartialUpdate();
    void finishedOrProgressBaseQuery(bool done);
    QStringList currentProblems() const;
    QStringList unreadableDocuments() const;
    void post(Message message) XP_EXCLUDES(m_mutex);

    void deliverNext() XP_EXCLUDES(m_mutex); // main thread

    IndexSource &m_source;
    Delegate *const m_delegate;
    const Setup m_setup;

    mutable XPMutex m_mutex;
    KPSearchState::Ptr m_searchState XP_GUARDED_BY(m_mutex);
    Shown m_shown XP_GUARDED_BY(m_mutex);
    quint64 m_generation XP_GUARDED_BY(m_mutex) = 0; // of m_searchState
    bool m_forceNewSearch XP_GUARDED_BY(m_mutex) = false;
    bool m_isForced XP_GUARDED_BY(m_mutex) = false; // m_searchState was handed over so
    QString m_mdQueryString XP_GUARDED_BY(m_mutex);
    QStringList m_mdQueryScope XP_GUARDED_BY(m_mutex);
    Orders m_orders XP_GUARDED_BY(m_mutex);
    std::deque<Message> m_messages XP_GUARDED_BY(m_mutex);
    std::atomic<bool> m_killMDQuery = false;
    std::atomic<bool> m_abandonListing = false;
    std::atomic<bool> m_keepQueryRunning = true;
    mutable XPMutex m_deletedMutex;
    QSet<KPPooledString> m_recentlyDeletedPaths XP_GUARDED_BY(m_deletedMutex);

    // The thread's alone:
    KPSearchState::Ptr m_searchStateInUse;
    quint64 m_takenGeneration = 0;
    std::unique_ptr<KPIndexFilter> m_filter;
    std::unique_ptr<MDQuery> m_mdQuery;
    std::unique_ptr<KPFolderListing> m_listing;
    bool m_isListingComplete = false;
    KPResultSet m_set;
    QHash<IndexItem, KPDoc *> m_docCache;
    QSet<IndexItem> m_noDocCache;
    std::deque<IndexItem> m_waitingItems; // results that were not looked at yet
    qsizetype m_queued = 0;               // of the first gathering, into m_waitingItems
    size_t m_pass = 0;
    KPTimer m_passTimer;
    KPTimer m_timer; // since the last delivery of a listing
    double m_delayUntilUpdate = 0;
    bool m_pendingProgressCallNeeded = false;
    bool m_doUpdatesDuringManualSearch = false;
    bool m_itemsOnly = false;
    bool m_isSmall = false;    // few results: what the index says is fresher than the caches
    bool m_showsFirst = false; // of another search: the first batch is told at once
    std::vector<IndexItem> m_foundItems; // of a searcher without records
    bool m_maxxedOutSpotlight = false;
    bool m_wasToldDone = false;
    bool m_wasToldToWait = false; // for a volume that is slow to answer
    QStringList m_problems;       // of the query
    std::vector<IndexItem> m_roots;
    QTimer *m_pickUpTimer = nullptr; // children of m_onThread
    QTimer *m_removalTimer = nullptr;

    bool m_wasStarted = false; // main thread
    QThread m_thread;
    QObject *m_onThread; // where calls to the thread are queued; destroyed there
};
