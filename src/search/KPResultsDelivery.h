#pragma once

#include "KPResultCounts.h"
#include "KPResultsOrder.h"
#include "KPRowChanges.h"
#include "KPSearchState.h"

// What a search has to tell at one moment: its documents, whole and as the difference to the
// last delivery. Never changed once it is made, and shared by whoever shows it.
// Threads: any.
struct KPResultsDelivery
{
    using Ptr = std::shared_ptr<const KPResultsDelivery>;

    KPSearchState::Ptr state;
    KPResultsArrangement documents;
    KPResultsDifference difference;
    // The same as rows; against the documents of the last delivery, of another search too.
    KPRowChanges rows;
    // Of the documents of difference.added and difference.changed, in their order: where they are
    // at this moment. Records move on.
    std::vector<KPPooledString> addedPaths, changedPaths;
    KPResultCounts counts;
    // Documents below each folder that has any, before the state's narrower folders were applied.
    QHash<KPPooledString, qsizetype> activeFolders;
    // Of a searcher that makes no records (KPThreadedSearcher::Setup), instead of all these: the
    // index's items found since the last delivery.
    std::vector<quint32> items;
    bool isMaxxedOutSpotlight = false; // the index had more than the searcher takes
    bool isMaxxedOutFolder = false;    // so had a listing
    bool isDone = false;               // everything was looked at once
    // Places that could not be searched, documents that may be missing; complete when done.
    QStringList problems;
};
