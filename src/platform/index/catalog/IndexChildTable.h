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

    // `name`: bytes as on disk, or the same in lower case, which has the same hash.
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
    // Without room the owner calls makeRoom() and inserts all rows anew, in their order, which is
    // far quicker than in the order of the table.
    bool hasRoom() const { return (m_used + 1) * 10 <= m_rows.size() * 8; }
    void makeRoom(size_t rows);
    void insert(IndexSlot row, quint32 hash);
    void erase(IndexSlot row, quint32 hash);

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

    std::vector<IndexSlot> m_rows = std::vector<IndexSlot>(1024, none);
    size_t m_used = 0; // rows and erased places
    QHash<IndexItem, quint32> m_counts;
    bool m_ready = true;
};
