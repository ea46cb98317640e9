#pragma once

#include "KPDoc.h"

#include <memory>
#include <vector>

using KPDocArray = std::vector<KPDoc *>;

// What became of the documents of a search since they were last told of. No document is in two of
// the lists.
struct KPResultsDifference
{
    // A document and the path under which it was told of: a record moves with its file, and one
    // whose file is gone has no path of its own any more.
    struct Told
    {
        KPDoc *doc = nullptr;
        KPPooledString path;
    };

    bool isReset = false; // nothing was told before: `added` is everything
    KPDocArray added;
    std::vector<Told> removed;
    std::vector<Told> changed; // other facts, tags, rating or path

    bool isEmpty() const { return !isReset && added.empty() && removed.empty() && changed.empty(); }
};

struct KPResultGroups; // of an order that makes groups

struct KPResultsArrangement
{
    std::shared_ptr<const KPDocArray> docs;       // never null
    std::shared_ptr<const KPResultGroups> groups; // null: there are none
};

// Keeps the documents of a search in order, and in groups if it makes any.
//
// Threads: handed to the search thread and used there alone; one object for one searcher. The
// arrays it gives are immutable and shared with views on the main thread.
class KPResultsOrder
{
public:
    virtual ~KPResultsOrder() = default;
    // The documents with the difference taken in. Whatever is compared of a document must be
    // noted here when it comes: a record's facts and path may change at any time.
    virtual KPResultsArrangement apply(const KPResultsDifference &difference) = 0;
};

// As they are found.
class KPOrderAsFound : public KPResultsOrder
{
public:
    KPResultsArrangement apply(const KPResultsDifference &difference) override;

private:
    std::shared_ptr<const KPDocArray> m_docs = std::make_shared<const KPDocArray>();
};
