#pragma once

#include "KPResultSource.h"
#include "KPSearcher.h"

#include <deque>

// The results of a searcher as the window's model takes them: in batches of at most a thousand
// documents, one in each turn of the event loop.
// Threads: main. Ownership: the index's source must outlive it.
class KPSearcherSource : public KPResultSource
{
    Q_OBJECT

public:
    explicit KPSearcherSource(IndexSource &source, const KPThreadedSearcher::Setup &setup = {},
                              QObject *parent = nullptr);
    ~KPSearcherSource() override;

    void setSearchState(const KPSearchState::Ptr &state) override;
    void stop() override;

private:
    struct Report
    {
        enum class Kind { Reset, Added, Changed, Removed, Finished };
        Kind kind = Kind::Reset;
        QStringList texts; // paths, or problems
    };
    void take(const KPResultsDelivery::Ptr &delivery);
    void append(Report::Kind kind, const QStringList &texts);
    void deliverNext();
    QList<KPFoundDocument> found(const QStringList &paths) const;

    IndexSource &m_source;
    KPSearcher m_searcher;
    std::deque<Report> m_reports;
    QTimer m_next;
};
