#pragma once

#include "KPIndexedSearch.h"
#include "KPResultSource.h"
#include "XPMutex.h"

#include <QThread>
#include <deque>

// Search results from the metadata index, kept up to date as it changes.
//
// What a state's documents are, KPIndexedState says.
// Threads: lives on the main thread. The searching is done on m_thread, owned here; the
//          destructor stops and joins it, waiting for one batch at the most.
// Order:   reports queue up under the mutex and are delivered one (at most 1000 documents) in
//          each turn of the event loop; a new state throws away those that wait.
// Ownership: the index's source must outlive it.
class KPIndexedResults : public KPResultSource
{
    Q_OBJECT

public:
    enum class Mode { Live, Once };
    explicit KPIndexedResults(IndexSource &source, Mode mode = Mode::Live,
                              QObject *parent = nullptr);
    ~KPIndexedResults() override;

    void setSearchState(const KPSearchState::Ptr &state) override XP_EXCLUDES(m_mutex);
    // Instead of a state: all that a query text matches below the folders (none: everywhere),
    // be it a document, a folder or hidden.
    void setQuery(const QString &text, const QStringList &folders) XP_EXCLUDES(m_mutex);
    void stop() override XP_EXCLUDES(m_mutex);

Q_SIGNALS:
    void searchWaiting(QPrivateSignal);  // to m_thread
    void reportsWaiting(QPrivateSignal); // from it

private:
    void supersede(const std::optional<KPIndexedSearch::Query> &query) XP_EXCLUDES(m_mutex);
    void startNext() XP_EXCLUDES(m_mutex);
    void receive(std::vector<KPResultReport> reports, quint64 generation) XP_EXCLUDES(m_mutex);
    void deliverNext() XP_EXCLUDES(m_mutex);
    void deliver(const KPResultReport &report);

    IndexSource &m_source;
    const Mode m_mode;
    XPMutex m_mutex;
    std::optional<KPIndexedSearch::Query> m_next XP_GUARDED_BY(m_mutex); // to be started
    quint64 m_generation XP_GUARDED_BY(m_mutex) = 0;                     // of the search
    quint64 m_started XP_GUARDED_BY(m_mutex) = 0;
    std::deque<KPResultReport> m_reports XP_GUARDED_BY(m_mutex);
    QThread m_thread;
    QObject *m_onThread; // where calls to m_thread are queued; destroyed there
    std::unique_ptr<KPIndexedSearch> m_search; // m_thread's alone
};
