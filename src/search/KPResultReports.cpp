#include "KPResultReports.h"

void KPResultReports::document(KPResultReport::Kind kind, const KPFoundDocument &document)
{
    reportOf(kind).documents.append(document);
}

void KPResultReports::removed(const QString &path)
{
    reportOf(KPResultReport::Kind::Removed).texts.append(path);
}

void KPResultReports::finished(const QStringList &problems)
{
    m_reports.push_back({KPResultReport::Kind::Finished, {}, problems});
}

std::vector<KPResultReport> KPResultReports::take()
{
    m_count = 0;
    return std::exchange(m_reports, {});
}

KPResultReport &KPResultReports::reportOf(KPResultReport::Kind kind)
{
    ++m_count;
    if (m_reports.empty() || m_reports.back().kind != kind ||
        m_reports.back().documents.size() + m_reports.back().texts.size() >= maximumSize)
        m_reports.push_back({kind, {}, {}});
    return m_reports.back();
}
