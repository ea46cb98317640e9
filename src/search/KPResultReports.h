#pragma once

#include "KPResultSource.h"

#include <vector>

// One thing a search has to say. Documents for Added and Changed; texts for Removed (paths) and
// Finished (problems).
struct KPResultReport
{
    enum class Kind { Reset, Added, Changed, Removed, Finished };

    Kind kind = Kind::Reset;
    QList<KPFoundDocument> documents;
    QStringList texts;
};

// Collects what a search has to say, in order, neighbours of one kind together.
//
// A report holds at most `maximumSize` documents, so that a receiver stays responsive.
// Threads: one at a time.
class KPResultReports
{
public:
    static constexpr qsizetype maximumSize = 1000;

    void document(KPResultReport::Kind kind, const KPFoundDocument &document);
    void removed(const QString &path);
    void finished(const QStringList &problems);

    bool isEmpty() const { return m_reports.empty(); }
    bool isFull() const { return m_count >= maximumSize; }
    std::vector<KPResultReport> take();

private:
    KPResultReport &reportOf(KPResultReport::Kind kind);

    std::vector<KPResultReport> m_reports;
    qsizetype m_count = 0;
};
