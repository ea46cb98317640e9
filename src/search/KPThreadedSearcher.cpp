// KPThreadedSearcher: the thread, and what is handed to and fro.
#include "KPThreadedSearcher.h"

#include "KPFolderListing.h"
#include "XPLog.h"

#include <QTimer>
#include <condition_variable>

using namespace std::chrono_literals;

namespace {
struct Threads
{
    XPMutex mutex;
    std::condition_variable_any ended;
    std::atomic<int> count = 0;
    QSet<KPThreadedSearcher *> searchers XP_GUARDED_BY(mutex);
};
} // namespace

// Asked by threads that may outlast main().
static Threads &threads()
{
    static auto *const threads = new Threads;
    return *threads;
}

int KPThreadedSearcher::searchThreadCount()
{
    return threads().count;
}

void KPThreadedSearcher::terminate()
{
    const XPLocker lock(threads().mutex);
    for (KPThreadedSearcher *searcher : std::as_const(threads().searchers))
        searcher->endThread();
}

void KPThreadedSearcher::endThread()
{
    m_keepQueryRunning = false;
    m_killMDQuery = true;
    m_thread.quit();
}

bool KPThreadedSearcher::waitForSearchThreads(std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    XPLocker lock(threads().mutex);
    while (threads().count > 0) {
        if (threads().ended.wait_until(lock, deadline) == std::cv_status::timeout)
            return threads().count == 0;
    }
    return true;
}

void KPThreadedSearcher::guard(const std::function<void()> &work)
{
    try {
        work();
    } catch (const std::exception &exception) {
        qCWarning(xpLog) << "Exception thrown in search thread" << exception.what();
    }
}

KPThreadedSearcher::KPThreadedSearcher(IndexSource &source, Delegate *delegate, Setup setup,
                                       QObject *parent)
    : QObject(parent), m_source(source), m_delegate(delegate), m_setup(std::move(setup)),
      m_passTimer(m_setup.clock), m_timer(m_setup.clock), m_onThread(new QObject)
{
    connect(this, &KPThreadedSearcher::messagesWaiting, this, &KPThreadedSearcher::deliverNext,
            Qt::QueuedConnection);
    m_thread.setObjectName(QStringLiteral("murn-search"));
    m_pickUpTimer = new QTimer(m_onThread);
    m_pickUpTimer->setInterval(m_setup.pickUp);
    m_removalTimer = new QTimer(m_onThread);
    m_removalTimer->setInterval(m_setup.removalDelay);
    m_removalTimer->setSingleShot(true);
    m_onThread->moveToThread(&m_thread);
    connect(this, &KPThreadedSearcher::stateWaiting, m_pickUpTimer, [this] {
        if (!m_pickUpTimer->isActive())
            m_pickUpTimer->start();
    });
    connect(m_pickUpTimer, &QTimer::timeout, m_onThread,
            [this] { guard([this] { checkForNewSearch(); }); });
    connect(m_removalTimer, &QTimer::timeout, m_onThread,
            [this] { guard([this] { delayedProgressOrFinishedResults(); }); });
    connect(this, &KPThreadedSearcher::ordersWaiting, m_onThread,
            [this] { guard([this] { takeOrders(); }); });
    connect(&m_thread, &QThread::finished, m_onThread, [this] { threadEnding(); });
}

KPThreadedSearcher::~KPThreadedSearcher()
{
    {
        const XPLocker lock(threads().mutex);
        threads().searchers.remove(this);
    }
    endThread();
    m_thread.wait();
    if (!m_wasStarted)
        delete m_onThread;
    // What the thread did last is seen from here on; Qt's waiting alone does not say so to tools
    // that watch threads.
    const XPLocker ended(m_mutex);
}

void KPThreadedSearcher::startSearchThread()
{
    m_wasStarted = true;
    {
        const XPLocker lock(threads().mutex);
        threads().searchers.insert(this);
        ++threads().count;
    }
    m_thread.start();
}

// On the thread itself, after its event loop.
void KPThreadedSearcher::threadEnding()
{
    guard([this] { cleanUpMDQuery(); });
    m_listing.reset();
    m_set.clear();
    m_onThread->deleteLater();
    {
        const XPLocker lock(threads().mutex);
        --threads().count;
    }
    threads().ended.notify_all();
    const XPLocker ended(m_mutex); // see the destructor
}

bool KPThreadedSearcher::isGivenUp() const
{
    return m_killMDQuery || !m_keepQueryRunning;
}

// --- From the main thread

void KPThreadedSearcher::forceNewSearchNextTime()
{
    const XPLocker lock(m_mutex);
    m_forceNewSearch = true;
}

static bool isSame(const KPSearchState::Ptr &one, const KPSearchState::Ptr &two)
{
    return one == two || (one && two && one->isEqualToSearchState(*two));
}

bool KPThreadedSearcher::newSearchState(const KPSearchState::Ptr &state, const Shown &shown)
{
    const bool needsRestart = !state || mdQueryNeedsRestart(*state);
    {
        const XPLocker lock(m_mutex);
        const bool forced = std::exchange(m_forceNewSearch, false);
        if (!forced && isSame(state, m_searchState))
            return false;
        const KPSearchState::Ptr old = std::exchange(m_searchState, state);
        m_shown = shown;
        ++m_generation;
        m_isForced = m_isForced || forced;
        m_messages.clear();
        if (!state || !old || forced || !state->isEqualToSearchStateIgnorePostContraint(*old))
            m_abandonListing = true;
        if (forced || needsRestart)
            m_killMDQuery = true;
    }
    Q_EMIT stateWaiting(QPrivateSignal());
    return true;
}

void KPThreadedSearcher::metaDataHasChanged()
{
    {
        const XPLocker lock(m_mutex);
        m_orders.metaDataChanged = true;
    }
    Q_EMIT ordersWaiting(QPrivateSignal());
}

void KPThreadedSearcher::documentDeleted(const QString &path)
{
    {
        const XPLocker lock(m_deletedMutex);
        m_recentlyDeletedPaths.insert(KPPool::pooledString(path));
    }
    pathChanged(path, {});
}

void KPThreadedSearcher::pathChanged(const QString & /*oldPath*/, const QString & /*newPath*/)
{
    {
        const XPLocker lock(m_mutex);
        m_orders.deliver = true;
    }
    Q_EMIT ordersWaiting(QPrivateSignal());
}

void KPThreadedSearcher::setResultsOrder(std::unique_ptr<KPResultsOrder> order)
{
    {
        const XPLocker lock(m_mutex);
        m_orders.order = std::move(order);
    }
    Q_EMIT ordersWaiting(QPrivateSignal());
}

// What a state is asked of the index with; a listing is not.
static QString queryTextOf(const KPSearchState &state)
{
    if (state.isFinderListing() || state.isFileListSearch())
        return {};
    return state.mdQueryString().value_or(QString());
}

bool KPThreadedSearcher::mdQueryNeedsRestart(const KPSearchState &state) const
{
    const QString text = queryTextOf(state);
    const QStringList scope = state.searchFoldersWhereSpotlightWorks();
    const XPLocker lock(m_mutex);
    return text != m_mdQueryString || scope != m_mdQueryScope;
}

QString KPThreadedSearcher::mdQueryStringCurrentlyInUse() const
{
    const XPLocker lock(m_mutex);
    return m_mdQueryString;
}

QStringList KPThreadedSearcher::constraintFoldersCurrentlyInUse() const
{
    const XPLocker lock(m_mutex);
    return m_mdQueryScope;
}

// --- To the main thread

void KPThreadedSearcher::post(Message message)
{
    bool isFirst = false;
    {
        const XPLocker lock(m_mutex);
        if (m_takenGeneration != m_generation)
            return;
        isFirst = m_messages.empty();
        m_messages.push_back(std::move(message));
    }
    if (isFirst)
        Q_EMIT messagesWaiting(QPrivateSignal());
}

// One in each turn of the event loop, so that input and painting come between two.
void KPThreadedSearcher::deliverNext()
{
    Message message;
    bool isLast = false;
    std::chrono::milliseconds pause{};
    {
        const XPLocker lock(m_mutex);
        if (m_messages.empty())
            return;
        message = std::move(m_messages.front());
        m_messages.pop_front();
        if (message.delivery && message.isDone)
            pause = m_delegate->restBeforeDone();
        if (pause > std::chrono::milliseconds::zero()) {
            Message end;
            end.isDone = std::exchange(message.isDone, false);
            end.problems = message.problems;
            m_messages.push_front(std::move(end));
        }
        isLast = m_messages.empty();
    }
    if (!isLast)
        QTimer::singleShot(pause, Qt::PreciseTimer, this, &KPThreadedSearcher::deliverNext);
    if (message.delivery)
        m_delegate->updatedResults(message.delivery);
    if (message.scanned)
        m_delegate->fileListSearchProgress(*message.scanned);
    if (message.isDone)
        m_delegate->searchDone(message.problems);
}

// --- On the thread

void KPThreadedSearcher::checkForNewSearch()
{
    KPSearchState::Ptr state;
    Shown shown;
    bool forced = false;
    bool isKilled = false;
    {
        const XPLocker lock(m_mutex);
        m_pickUpTimer->stop(); // until the next one waits
        if (m_generation == m_takenGeneration)
            return;
        isKilled = m_killMDQuery.exchange(false);
        m_takenGeneration = m_generation;
        state = m_searchState;
        shown = m_shown;
        forced = std::exchange(m_isForced, false);
        m_abandonListing = false;
    }
    const KPSearchState::Ptr old = std::exchange(m_searchStateInUse, state);
    if (isKilled || !state)
        cleanUpMDQuery();
    m_set.restart(shown);
    newSearchStateInThread(state, old, forced);
}

void KPThreadedSearcher::newSearchStateInThread(const KPSearchState::Ptr &state,
                                                const KPSearchState::Ptr &old, bool forced)
{
    m_wasToldDone = false;
    m_wasToldToWait = false;
    m_showsFirst = !isSame(state, old);
    if (!state)
        return;
    const bool isNarrowing = old && !forced && state->isEqualToSearchStateIgnorePostContraint(*old);
    m_set.setPostConstraintFolders(
        state->postConstraintFolders().isEmpty() || state->isFilesAndFolders()
            ? std::nullopt
            : std::optional(KPOptimizedFolders(state->postConstraintFolders(),
                                               KPOptimizedFolders::Reach::Below)));
    if (!isNarrowing)
        m_problems.clear();
    const QString text = queryTextOf(*state);
    if (text.isEmpty()) {
        if (m_mdQuery)
            cleanUpMDQuery();
        const XPLocker lock(m_mutex);
        m_mdQueryString.clear();
        m_mdQueryScope = state->searchFoldersWhereSpotlightWorks();
    } else if (!m_mdQuery || forced || mdQueryNeedsRestart(*state)) {
        startMDQuery(text, state->searchFoldersWhereSpotlightWorks());
    } else if (!isNarrowing) {
        m_filter = std::make_unique<KPIndexFilter>(state);
        m_maxxedOutSpotlight = false;
        static_cast<void>(judgesAgain());
    }
    m_timer.reset();
    m_delayUntilUpdate = 1.5;
    const bool isListing = state->isFinderListing() || state->isFileListSearch();
    if (!isListing)
        m_listing.reset();
    else if (!(isNarrowing && m_isListingComplete)) {
        m_doUpdatesDuringManualSearch = !isSame(state, old);
        refreshDBDocsThatPassSearch();
    }
    if (isListing || !m_mdQuery)
        finishedOrProgressBaseQuery(true);
    else if (m_mdQuery->isGatheringComplete())
        finishedMDQuery();
}

void KPThreadedSearcher::takeOrders()
{
    Orders orders;
    bool isAnotherWaiting = false;
    {
        const XPLocker lock(m_mutex);
        orders = std::exchange(m_orders, {});
        isAnotherWaiting = m_generation != m_takenGeneration;
    }
    if (orders.order)
        m_set.setOrder(std::move(orders.order));
    // A state that waits brings all of it.
    if (isAnotherWaiting || !m_searchStateInUse || isGivenUp())
        return;
    QSet<KPPooledString> deleted;
    {
        const XPLocker lock(m_deletedMutex);
        deleted = m_recentlyDeletedPaths;
    }
    m_set.touchMoved(deleted);
    if (orders.metaDataChanged) {
        if (m_listing)
            refreshDBDocsThatPassSearch();
        else if (m_mdQuery && judgesAgain())
            return progressOrFinishedMDResults();
    }
    finishedOrProgressBaseQuery(true);
}
