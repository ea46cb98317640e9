#pragma once

#include "KPPool.h"

#include <utility>
#include <vector>

class KPDoc;

// Pooled path to record: open addressing, sixteen bytes a place, at most two thirds full.
// Threads: one at a time (the owner's lock). Never looks into a record.
class KPDocTable
{
public:
    // For owners that split tables by hash: the table itself uses the upper bits.
    static size_t hash(KPPooledString path) { return qHash(path); }

    // nullptr: not there.
    KPDoc *find(KPPooledString path, size_t hash) const
    {
        return m_slots.empty() ? nullptr : m_slots[place(path, hash)].doc;
    }

    // Answers the record that stood there before, if any.
    KPDoc *put(KPPooledString path, size_t hash, KPDoc *doc)
    {
        if ((m_count + 1) * 3 > m_slots.size() * 2)
            grow();
        Slot &slot = m_slots[place(path, hash)];
        if (slot.doc == nullptr)
            ++m_count;
        slot.path = path;
        return std::exchange(slot.doc, doc);
    }

    // Only while the path still stands for this record.
    void remove(KPPooledString path, size_t hash, const KPDoc *doc)
    {
        if (m_slots.empty())
            return;
        size_t gap = place(path, hash);
        if (m_slots[gap].doc == nullptr || m_slots[gap].doc != doc)
            return;
        // Whatever was put further on because of the gap moves into it.
        for (size_t i = next(gap); m_slots[i].doc != nullptr; i = next(i)) {
            const size_t wanted = first(KPDocTable::hash(m_slots[i].path));
            const size_t mask = m_slots.size() - 1;
            if (((i - wanted) & mask) >= ((i - gap) & mask))
                m_slots[std::exchange(gap, i)] = m_slots[i];
        }
        m_slots[gap] = {};
        --m_count;
    }

    size_t count() const { return m_count; }

    template <typename Visit>
    void forEach(Visit visit) const
    {
        for (const Slot &slot : m_slots) {
            if (slot.doc != nullptr)
                visit(slot.path, slot.doc);
        }
    }

private:
    struct Slot
    {
        KPPooledString path;
        KPDoc *doc = nullptr;
    };

    size_t first(size_t hash) const { return (hash >> 16) & (m_slots.size() - 1); }
    size_t next(size_t i) const { return (i + 1) & (m_slots.size() - 1); }

    // Where the path is, or would go.
    size_t place(KPPooledString path, size_t hash) const
    {
        size_t i = first(hash);
        while (m_slots[i].doc != nullptr && m_slots[i].path != path)
            i = next(i);
        return i;
    }

    void grow()
    {
        const std::vector<Slot> old =
            std::exchange(m_slots, std::vector<Slot>(std::max<size_t>(m_slots.size() * 2, 16)));
        for (const Slot &slot : old) {
            if (slot.doc != nullptr)
                m_slots[place(slot.path, hash(slot.path))] = slot;
        }
    }

    std::vector<Slot> m_slots; // a power of two
    size_t m_count = 0;
};
