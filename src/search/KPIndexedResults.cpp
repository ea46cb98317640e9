#include "KPIndexedResults.h"

#include <QTimer>

KPIndexedResults::KPIndexedResults(IndexSource &source, Mode mode, QObject *parent)
    : KPResultSource(parent), m_source(source), m_mode(mode), m_onThread(new QObject)
{
    connect(this, &KPIndexedResults::reportsWaiting, this, &KPIndexedResults::deliverNext,
            Qt::QueuedConnection);
    m_thread.setObjectName(QStringLiteral("murn-search"));
    m_onThread->moveToThread(&m_thread);
    connect(this, &KPIndexedResults::searchWaiting, m_onThread, [this] { startNext(); });
    // On the thread itself, after its event loop.
    connect(&m_thread, &QThread::finished, m_onThread, [this] {
        m_search.reset();
        m_onThread->deleteLater();
        const XPLocker ended(m_mutex); // see the destructor
    });
    m_thread.start();
}

KPIndexedResults::~KPIndexedResults()
{
    supersede({});
    m_thread.quit();
    m_thread.wait();
    // What the thread did last is seen from here on; Qt's waiting alone does not say so to tools
    // that watch threads.
    const XPLocker ended(m_mutex);
}

void KPIndexedResults::setSearchState(const KPSearchState::Ptr &state)
{
    KPIndexedSearch::Query query;
    query.state = state;
    query.live = m_mode == Mode::Live;
    supersede(query);
}

void KPIndexedResults::setQuery(const QString &text, const QStringList &folders)
{
    KPIndexedSearch::Query query;
    query.text = text;
    query.folders = folders;
    query.live = m_mode == Mode::Live;
    supersede(query);
}

void KPIndexedResults::stop()
{
    supersede({});
}

void KPIndexedResults::supersede(const std::optional<KPIndexedSearch::Query> &query)
{
    {
        const XPLocker locker(m_mutex);
        ++m_generation;
        m_next = query;
        m_reports.clear();
        if (query)
            m_reports.push_back({KPResultReport::Kind::Reset, {}, {}});
    }
    Q_EMIT searchWaiting(QPrivateSignal());
    if (query)
        Q_EMIT reportsWaiting(QPrivateSignal());
}

// On m_thread.
void KPIndexedResults::startNext()
{
    std::optional<KPIndexedSearch::Query> query;
    quint64 generation = 0;
    {
        const XPLocker locker(m_mutex);
        // Of several searches in a row the last was started by the first of these calls.
        if (std::exchange(m_started, m_generation) == m_generation)
            return;
        query = std::exchange(m_next, std::nullopt);
        generation = m_generation;
    }
    m_search.reset();
    if (!query)
        return;
    m_search = std::make_unique<KPIndexedSearch>(
        m_source, *query, [this, generation](std::vector<KPResultReport> reports) {
            receive(std::move(reports), generation);
        });
    m_search->start();
}

void KPIndexedResults::receive(std::vector<KPResultReport> reports, quint64 generation)
{
    if (reports.empty())
        return;
    bool isFirst = false;
    {
        const XPLocker locker(m_mutex);
        if (generation != m_generation)
            return;
        isFirst = m_reports.empty();
        std::move(reports.begin(), reports.end(), std::back_inserter(m_reports));
    }
    if (isFirst)
        Q_EMIT reportsWaiting(QPrivateSignal());
}

void KPIndexedResults::deliverNext()
{
    KPResultReport report;
    bool isLast = false;
    {
        const XPLocker locker(m_mutex);
        if (m_reports.empty())
            return;
        report = std::move(m_reports.front());
        m_reports.pop_front();
        isLast = m_reports.empty();
    }
    // By a timer, so that input and painting come between two reports.
    if (!isLast)
        QTimer::singleShot(0, this, &KPIndexedResults::deliverNext);
    deliver(report);
}

void KPIndexedResults::deliver(const KPResultReport &report)
{
    switch (report.kind) {
    case KPResultReport::Kind::Reset:
        Q_EMIT resultsReset();
        break;
    case KPResultReport::Kind::Added:
        Q_EMIT documentsAdded(report.documents);
        break;
    case KPResultReport::Kind::Changed:
        Q_EMIT documentsChanged(report.documents);
        break;
    case KPResultReport::Kind::Removed:
        Q_EMIT documentsRemoved(report.texts);
        break;
    case KPResultReport::Kind::Finished:
        Q_EMIT finished(report.texts);
        break;
    }
}
