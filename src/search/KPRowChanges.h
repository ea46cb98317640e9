#pragma once

#include "KPResultsOrder.h"

// How the rows of one array of documents become those of the next, as a model tells it to views:
// first rows go, then those that stay take their order, then new ones come. A document that is in
// both is one that stays, so that a selection survives.
// Threads: a value.
struct KPRowChanges
{
    struct Run
    {
        int first = 0;
        int count = 0;
        bool operator==(const Run &) const = default;
    };

    // What this is told against: whoever shows other rows cannot use it.
    std::shared_ptr<const KPDocArray> before;
    std::vector<Run> removed;  // rows of `before`, ascending
    std::vector<int> kept;     // empty: those that stay keep their order. Else as rowsAfter()
    std::vector<Run> inserted; // new rows, ascending
    std::vector<Run> changed;  // new rows of documents that stay and say something else

    bool isEmpty() const
    {
        return removed.empty() && kept.empty() && inserted.empty() && changed.empty();
    }

    // The new row of each old one, -1 for one that goes.
    std::vector<int> rowsAfter() const;

    // Both arrays hold a document once at the most. With the difference that led from one to the
    // other, mostly a comparison of the two; without it (a reset), each document is looked up.
    static KPRowChanges between(const std::shared_ptr<const KPDocArray> &before,
                                const KPDocArray &now, const KPResultsDifference &difference);
};
