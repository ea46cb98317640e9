#pragma once

#include "IndexProblem.h"
#include "XPMutex.h"

#include <QList>
#include <map>

// What is degraded at present, by what it is about: one problem each.
// Threads: any.
class IndexProblems
{
public:
    // What a problem is about; a root's are about its path.
    static const QString saving;
    static const QString requests;
    static const QString watching;
    static const QString unwatched;
    static const QString overflow;
    static const QString reading;
    static const QString contents;

    void set(const QString &about, const IndexProblem &problem);
    void clear(const QString &about);
    QList<IndexProblem> all() const;

private:
    mutable XPMutex m_mutex;
    std::map<QString, IndexProblem> m_problems XP_GUARDED_BY(m_mutex);
};
