#pragma once

#include "KPOptimizedFolders.h"
#include "KPResultsDelivery.h"

#include <QSet>

// The documents of a search on its thread, and what of them was told.
//
// Whoever finds documents says which come, change and go; delivery() makes of it what is new since
// the last one, in time proportional to that (and a copy of the array of documents). A document
// may be found twice, as when its file was replaced: it goes when all that found it let go.
// Threads: one at a time.
class KPResultSet
{
public:
    // The next delivery has the same documents in the new order.
    void setOrder(std::unique_ptr<KPResultsOrder> order);
    void clear(); // to nothing; the next delivery is a reset
    // Keeps the documents; the next delivery is a reset, told against the documents that are shown.
    void restart(const std::shared_ptr<const KPDocArray> &shown);
    // Narrower folders, applied to what is told; none: everything is.
    void setPostConstraintFolders(const std::optional<KPOptimizedFolders> &folders);

    void add(KPDoc *doc, const KPResultCounts::Values &values);
    // False: nothing of it is another one.
    bool change(KPDoc *doc, const KPResultCounts::Values &values);
    void remove(KPDoc *doc);
    // Looks again at the records that moved or are gone since they were told of.
    void touchMoved(const QSet<KPPooledString> &deleted);

    // Paths that were deleted a moment ago are left out, whatever the index says of them.
    void fillDelivery(KPResultsDelivery &delivery, const QSet<KPPooledString> &deleted);

private:
    struct Entry
    {
        KPPooledString path;   // as told; empty: not told
        KPPooledString folder; // as counted among the active ones; empty: not counted
        KPResultCounts::Values values, told;
        quint32 holders = 0;
        bool isTouched = false;
        bool isChanged = false;
    };
    void touch(KPDoc *doc, Entry &entry);
    void settle(KPDoc *doc, Entry &entry, const QSet<KPPooledString> &deleted,
                KPResultsDelivery &delivery);
    void countFolders();

    std::unique_ptr<KPResultsOrder> m_order = std::make_unique<KPOrderAsFound>();
    std::optional<KPOptimizedFolders> m_postConstraint;
    QHash<KPDoc *, Entry> m_entries;
    std::vector<KPDoc *> m_touched;
    KPResultCounts m_counts;
    QHash<KPPooledString, qsizetype> m_activeFolders;
    QHash<KPPooledString, qsizetype> m_folderChanges; // of documents directly in them
    KPResultsDifference everything(const KPResultsDifference &difference) const;

    std::shared_ptr<const KPDocArray> m_last = std::make_shared<const KPDocArray>();
    bool m_isReset = true;
    bool m_isOrderNew = false;
};
