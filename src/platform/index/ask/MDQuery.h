#pragma once

#include "MDItem.h"
#include "MDPredicate.h"
#include "XPError.h"

#include <QObject>
#include <memory>

class MDQueryScope;

// A metadata query: what matches now and, if asked, what comes to match and ceases to.
//
// Created from a text and a list of attributes whose values come with the results; given scope,
// limit, batching and order; then executed, once or live. Executing finds all matches, then
// delivers them in batches: progress() after each, finished() after the last; from then on, live,
// updated() tells of changes. A file that is renamed stays the same result, reported as changed.
// `$time` in the text is what it was at creation.
// Threads: belongs to the thread that executes it (its QObject thread); all signals come there,
// with no lock of the index held. Ownership: the caller's; the source must outlive it.
class MDQuery : public QObject
{
    Q_OBJECT

public:
    enum Option { Synchronous = 1, WantsUpdates = 4 };
    Q_DECLARE_FLAGS(Options, Option)

    struct BatchingParameters
    {
        int firstMaxCount = 1000;
        int progressMaxCount = 1000;
        // While changes pour in, updates come the more seldom the longer they take to find out,
        // but no more seldom than this.
        int updateMaxMs = 1000;
    };

    // Scope constants beside folders' paths.
    static const QString scopeHome;     // "kMDQueryScopeHome"
    static const QString scopeComputer; // "kMDQueryScopeComputer"
    static const QString scopeNetwork;  // "kMDQueryScopeNetwork"

    // Fails with Malformed and the offset of what cannot be read.
    static XPResult<std::unique_ptr<MDQuery>> create(IndexSource &source, const QString &text,
                                                     const QStringList &valueList = {});
    ~MDQuery() override;

    // Before execute(). An empty scope is everything.
    void setSearchScope(const QStringList &scope);
    void setMaxCount(qsizetype count) { m_maxCount = count; } // 0: no limit
    // The first results in the order of an attribute (names, dates, sizes cost nothing extra);
    // live, what comes later stands behind them. Empty: in no order.
    void setSortOrder(const QString &attribute, bool ascending = true)
    {
        m_sortAttribute = attribute;
        m_sortAscending = ascending;
    }
    void setBatchingParameters(const BatchingParameters &batching) { m_batching = batching; }
    BatchingParameters batchingParameters() const { return m_batching; }

    // Synchronous: returns with all results and gives no progress signals.
    void execute(Options options);
    void stop(); // no further signals; results stay

    bool isGatheringComplete() const { return m_complete; }
    qsizetype resultCount() const { return m_delivered; }
    std::shared_ptr<MDItem> resultAt(qsizetype index) const;
    IndexItem itemAt(qsizetype index) const { return m_results[static_cast<size_t>(index)]; }
    qsizetype indexOf(IndexItem item) const; // -1: no result
    bool holds(IndexItem item) const;        // among the results, in no time
    // A value of the list, or any attribute; as it is now.
    PropertyValue valueAt(qsizetype index, const QString &attribute) const;
    const QStringList &valueList() const { return m_valueList; }

Q_SIGNALS:
    void progress();
    void finished();
    void updated(const QList<IndexItem> &added, const QList<IndexItem> &changed,
                 const QList<IndexItem> &removed);
    // For itself, from any thread: a connection made before, as a function handed over by Qt's
    // queue is nothing that thread-sanitizer builds can follow.
    void changesWaiting(QPrivateSignal);

private:
    MDQuery(IndexSource &source, MDPredicatePtr predicate, const QStringList &valueList);
    struct Inbox;
    struct Members;

    void gather();
    void deliver();
    void takeChanges();
    void takeTouched(std::vector<IndexItem> touched);

    IndexSource &m_source;
    const MDPredicatePtr m_predicate;
    const QStringList m_valueList;
    std::unique_ptr<MDQueryScope> m_scope;
    qsizetype m_maxCount = 0;
    QString m_sortAttribute;
    bool m_sortAscending = true;
    BatchingParameters m_batching;
    std::vector<IndexItem> m_results;
    std::unique_ptr<Members> m_members; // the items of m_results
    qsizetype m_delivered = 0;
    bool m_complete = false;
    bool m_live = false;
    std::shared_ptr<Inbox> m_inbox;
    int m_listener = 0;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(MDQuery::Options)
