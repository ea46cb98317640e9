#include "KPWalkReports.h"

void KPWalkReports::document(KPWalkReport::Kind kind, const KPFoundDocument &document)
{
    reportOf(kind).documents.append(document);
}

void KPWalkReports::removed(const QString &path)
{
    reportOf(KPWalkReport::Kind::Removed).texts.append(path);
}

void KPWalkReports::finished(const QStringList &problems)
{
    m_reports.push_back({KPWalkReport::Kind::Finished, {}, problems});
}

std::vector<KPWalkReport> KPWalkReports::take()
{
    m_count = 0;
    return std::exchange(m_reports, {});
}

KPWalkReport &KPWalkReports::reportOf(KPWalkReport::Kind kind)
{
    ++m_count;
    if (m_reports.empty() || m_reports.back().kind != kind ||
        m_reports.back().documents.size() + m_reports.back().texts.size() >= maximumSize)
        m_reports.push_back({kind, {}, {}});
    return m_reports.back();
}
