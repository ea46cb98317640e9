#pragma once

#include <memory>

class IndexSource;
class MDQuery;

// Keeps the table of items and paths (XPItemPaths) warm with what the user is likely to touch
// next: the files that are opened from now on, by a live query, and those that lie in the user's
// own folders.
// Threads: that of the constructor. Nothing but the index is asked.
class XPRecentItems
{
public:
    explicit XPRecentItems(IndexSource &source);
    ~XPRecentItems();

private:
    void heatUpTheMDItemCache();

    IndexSource &m_source;
    std::unique_ptr<MDQuery> m_query;
};
