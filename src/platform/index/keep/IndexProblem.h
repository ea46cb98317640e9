#pragma once

#include "XPError.h"

#include <QDataStream>
#include <QObject>

// One thing of the index that is degraded, as a kind and its values. The programs put it in words.
// Threads: a value.
struct IndexProblem
{
    Q_GADGET

public:
    enum class Kind : quint8 {
        NothingSaved,         // `error`; the next start begins anew
        SavingFails,          // `error`; tried again later
        NoRequests,           // `error`; other processes cannot ask this one
        NotAnswering,         // `error`; the process that keeps the index
        NoWatches,            // the system gives none: changes are found by looking again only
        FoldersUnwatched,     // `count`; looked at every `seconds`
        EventsLost,           // everything is being compared with the disk
        FoldersUnreadable,    // `count`
        ContentsUnsearchable, // `error`
        ContentsNotSaved,     // `error`; tried again later
        RootMissing,          // `path`
        RootUnmounted,        // `path`, of `volume`
        RootHoldsStore,       // `path`: the index itself is kept there
        RootUnreadable,       // `path`, `error`
        RootSilent,           // `path` does not answer
        RootDistant,          // `path`: other machines' changes are found every `seconds`
    };
    Q_ENUM(Kind)

    Kind kind = Kind::NothingSaved;
    QString path = {};
    QString volume = {};
    qint64 count = 0;
    qint64 seconds = 0;
    bool keepsItems = false; // what was found in a missing root stays in the index
    std::optional<XPError> error = {};

    bool operator==(const IndexProblem &) const = default;
};

// For other processes. A kind that this program does not know makes the stream's status bad.
QDataStream &operator<<(QDataStream &out, const IndexProblem &problem);
QDataStream &operator>>(QDataStream &in, IndexProblem &problem);
