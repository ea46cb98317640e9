#include "IndexProblems.h"

#include "XPLog.h"

#include <QDebug>

const QString IndexProblems::saving = QStringLiteral("saving");
const QString IndexProblems::requests = QStringLiteral("requests");
const QString IndexProblems::watching = QStringLiteral("watching");
const QString IndexProblems::unwatched = QStringLiteral("unwatched");
const QString IndexProblems::overflow = QStringLiteral("overflow");
const QString IndexProblems::reading = QStringLiteral("reading");
const QString IndexProblems::contents = QStringLiteral("contents");

void IndexProblems::set(const QString &about, const IndexProblem &problem)
{
    const XPLocker lock(m_mutex);
    const auto [known, isNew] = m_problems.try_emplace(about, problem);
    if (!isNew && known->second == problem)
        return;
    known->second = problem;
    qCInfo(xpLog) << "Index:" << problem.kind << problem.path << problem.volume << problem.count
                  << (problem.error ? problem.error->message : QString());
}

void IndexProblems::clear(const QString &about)
{
    const XPLocker lock(m_mutex);
    m_problems.erase(about);
}

QList<IndexProblem> IndexProblems::all() const
{
    const XPLocker lock(m_mutex);
    QList<IndexProblem> all;
    for (const auto &[about, problem] : m_problems)
        all.append(problem);
    return all;
}
