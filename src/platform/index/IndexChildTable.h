#pragma once

#include "IndexPostings.h"

#include <QByteArrayView>

// Which row a name in a folder is: a hash table that holds only row numbers; its owner says
// whether a row is the one looked for.
// Threads: as the catalog that owns it.
class IndexChildTable
{
public:
    static constexpr IndexSlot none = ~0U;

    static quint32 hashOf(IndexItem parent, QByteArrayView name);

    template <typename IsChild>
    IndexSlot find(quint32 hash, IsChild isChild) const
    {
        for (size_t i = start(hash); m_rows[i] != none; i = after(i)) {
            if (m_rows[i] != erased && isChild(m_rows[i]))
                return m_rows[i];
        }
        return none;
    }
    // `hashOfRow` is asked when the table grows.
    template <typename HashOfRow>
    void insert(IndexSlot row, quint32 hash, HashOfRow hashOfRow)
    {
        if ((m_used + 1) * 10 > m_rows.size() * 8)
            grow(hashOfRow);
        place(row, hash);
    }
    void erase(IndexSlot row, quint32 hash);
    void reserve(size_t rows); // of an empty table

    // How many a folder holds.
    void countUp(IndexItem parent) { ++m_counts[parent]; }
    void countDown(IndexItem parent);
    quint32 countOf(IndexItem parent) const { return m_counts.value(parent); }

    bool isReady() const { return m_ready; } // false: not filled after loading
    void setReady(bool ready) { m_ready = ready; }
    qsizetype memoryUsed() const;

private:
    static constexpr IndexSlot erased = none - 1;

    size_t start(quint32 hash) const { return (quint64{hash} * m_rows.size()) >> 32; }
    size_t after(size_t i) const { return i + 1 < m_rows.size() ? i + 1 : 0; }
    void place(IndexSlot row, quint32 hash)
    {
        size_t i = start(hash);
        while (m_rows[i] != none)
            i = after(i);
        m_rows[i] = row;
        ++m_used;
    }
    template <typename HashOfRow>
    void grow(HashOfRow hashOfRow)
    {
        const std::vector<IndexSlot> before = std::move(m_rows);
        size_t live = 0;
        for (const IndexSlot row : before)
            live += row < erased ? 1 : 0;
        m_rows.assign(std::max<size_t>(1024, live * 5 / 3), none);
        m_used = 0;
        for (const IndexSlot row : before) {
            if (row < erased)
                place(row, hashOfRow(row));
        }
    }

    std::vector<IndexSlot> m_rows = std::vector<IndexSlot>(1024, none);
    size_t m_used = 0; // rows and erased places
    QHash<IndexItem, quint32> m_counts;
    bool m_ready = true;
};
