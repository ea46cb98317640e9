#pragma once

#include "KPResultSource.h"

#include <vector>

// One thing a walk has to say. Documents for Added and Changed; texts for Removed (paths) and
// Finished (problems).
struct KPWalkReport
{
    enum class Kind { Reset, Added, Changed, Removed, Finished };

    Kind kind = Kind::Reset;
    QList<KPFoundDocument> documents;
    QStringList texts;
};

// Collects what a walk has to say, in order, neighbours of one kind together.
//
// A report holds at most `maximumSize` documents, so that a receiver stays responsive.
// Threads: one at a time.
class KPWalkReports
{
public:
    static constexpr qsizetype maximumSize = 1000;

    void document(KPWalkReport::Kind kind, const KPFoundDocument &document);
    void removed(const QString &path);
    void finished(const QStringList &problems);

    bool isEmpty() const { return m_reports.empty(); }
    bool isFull() const { return m_count >= maximumSize; }
    std::vector<KPWalkReport> take();

private:
    KPWalkReport &reportOf(KPWalkReport::Kind kind);

    std::vector<KPWalkReport> m_reports;
    qsizetype m_count = 0;
};
