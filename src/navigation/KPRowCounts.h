#pragma once

#include "KPSearchState.h"
#include "XPMutex.h"

#include <QHash>
#include <QObject>
#include <QThread>

class IndexSource;

// How many documents each of some searches holds, kept up to date: beside the rows of a list.
//
// All is done on a thread of its own, of the lowest priority, that only reads the index: one look
// at each file says whether it is a document, then each search is one query that stays live and
// tells what came and went. A search that cannot be answered by the index alone (a listing of the
// disk, folders left out) has no count. Words in contents are counted as far as they are read.
// Threads: main. Ownership: the source must outlive it.
class KPRowCounts : public QObject
{
    Q_OBJECT

public:
    explicit KPRowCounts(IndexSource &source, QObject *parent = nullptr);
    ~KPRowCounts() override;

    // The searches to count, by whatever name; those that are counted already go on.
    using Rows = QHash<QString, KPSearchState::Ptr>;
    void setRows(const Rows &rows) XP_EXCLUDES(m_mutex);
    // Nothing: it is not known yet, or never.
    std::optional<qsizetype> count(const QString &row) const { return m_counts.value(row); }

Q_SIGNALS:
    void countsChanged();
    // For itself, from and to the thread.
    void rowsWaiting(QPrivateSignal);
    void countsWaiting(QPrivateSignal);

private:
    class Worker;
    using Counts = QHash<QString, std::optional<qsizetype>>;
    void takeCounts() XP_EXCLUDES(m_mutex);

    mutable XPMutex m_mutex;
    Rows m_wanted XP_GUARDED_BY(m_mutex);
    Counts m_found XP_GUARDED_BY(m_mutex);
    bool m_isWaiting XP_GUARDED_BY(m_mutex) = false;
    std::atomic<bool> m_isEnding = false;
    Counts m_counts; // main thread
    QThread m_thread;
    Worker *m_worker; // lives on the thread and ends there
};
