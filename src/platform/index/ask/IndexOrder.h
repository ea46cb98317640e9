#pragma once

#include "IndexCatalog.h"

// Puts rows in the order of an attribute. Names go by their folded form (kept in order by the
// catalog), dates and sizes by their columns, other attributes by number, then by folded text;
// rows without the attribute come last either way. Equal ones stand in the order of their rows.
// Under the caller's Reading; any thread.
class IndexOrder
{
public:
    explicit IndexOrder(const QString &attribute, bool ascending = true)
        : m_attribute(attribute), m_ascending(ascending)
    {
    }

    // The first `limit` (0: all) of the rows, in order.
    std::vector<IndexSlot> first(const IndexCatalog &catalog, const Roaring &rows,
                                 size_t limit) const;

private:
    std::vector<IndexSlot> byName(const IndexCatalog &catalog, const Roaring &rows,
                                  size_t limit) const;
    std::vector<IndexSlot> byValue(const IndexCatalog &catalog, const Roaring &rows,
                                   size_t limit) const;

    QString m_attribute;
    bool m_ascending;
};
