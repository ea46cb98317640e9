#pragma once

#include "IndexProblem.h"

#include <QByteArray>
#include <QList>

// How the index is, for people and for other processes.
// Threads: a value.
struct IndexStatus
{
    enum class Phase { Opening, Crawling, Verifying, Live };
    struct Root
    {
        enum class State {
            Reading, // being crawled or compared with the disk
            Live,
            Missing, // not there, or its volume is not mounted: its files stay in the index
            Silent,  // does not answer
        };
        QString path;
        State state = State::Reading;
        bool operator==(const Root &) const = default;
    };

    Phase phase = Phase::Opening;
    qint64 items = 0;
    qint64 foldersRead = 0;
    qint64 contentsWaiting = 0;
    QList<Root> roots;
    QList<IndexProblem> problems; // what is degraded

    QByteArray toBytes() const;
    static XPResult<IndexStatus> fromBytes(const QByteArray &bytes);
    bool operator==(const IndexStatus &) const = default;
};
