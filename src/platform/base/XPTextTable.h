#pragma once

#include "XPLastingMemory.h"

#include <QHashFunctions>
#include <QStringView>
#include <atomic>

// A set of objects that are found by a text: open addressing, lookups without locks.
//
// `Node` offers textHash() and view(), both constant. The table holds addresses, never frees,
// never removes; nodes must live as long as it does. It has no destructor and starts as zeroes:
// a static table works before and after main().
// Threads: find() from any, at any time, never waiting; insert() and reserve() by one thread at
// a time (the owner's lock), after a find() under the same lock.
template <typename Node>
class XPTextTable
{
public:
    // The same for the whole life of the process, different in the next (texts may be hostile).
    static quint32 hash(QStringView text)
    {
        static const size_t seed = QHashSeed::globalSeed();
        if (text.isEmpty())
            return 0; // known at compile time, for KPPool's empty string
        const quint64 wide = qHash(text, seed);
        return static_cast<quint32>(wide ^ (wide >> 32));
    }

    // nullptr: not there.
    Node *find(QStringView text, quint32 hash) const
    {
        for (Slots *table = m_slots.load(std::memory_order_acquire);;) {
            Node *node = table != nullptr ? findIn(*table, text, hash) : nullptr;
            // A table that was replaced meanwhile may have been emptied: ask the new one.
            Slots *now = m_slots.load(std::memory_order_acquire);
            if (node != nullptr || now == table)
                return node;
            table = now;
        }
    }

    void insert(Node *node)
    {
        reserve(m_count + 1);
        put(*m_slots.load(std::memory_order_relaxed), node, std::memory_order_release);
        ++m_count;
    }

    void reserve(size_t count)
    {
        size_t bytes = m_bytes != 0 ? m_bytes : smallestTable;
        while (count * 3 > capacityOf(bytes) * 2) // at most two thirds full
            bytes *= 2;
        if (bytes != m_bytes)
            grow(bytes);
    }

    size_t count() const { return m_count; }
    size_t memoryUsed() const { return m_bytes; }

private:
    static constexpr size_t smallestTable = 4096; // a page

    struct Slots
    {
        size_t capacity;
        Node *slots[1]; // `capacity` of them

        std::atomic_ref<Node *> slot(size_t i)
        {
            return std::atomic_ref<Node *>(static_cast<Node **>(slots)[i]);
        }
        size_t next(size_t i) const { return i + 1 < capacity ? i + 1 : 0; }
        // By the upper bits of the hash, so that owners can split tables by the lower ones.
        size_t first(quint32 hash) const
        {
            return static_cast<size_t>((quint64{hash} * capacity) >> 32);
        }
    };
    static size_t capacityOf(size_t bytes) { return bytes / sizeof(Node *) - 1; }

    static Node *findIn(Slots &table, QStringView text, quint32 hash)
    {
        for (size_t i = table.first(hash);; i = table.next(i)) {
            Node *node = table.slot(i).load(std::memory_order_acquire);
            if (node == nullptr || (node->textHash() == hash && node->view() == text))
                return node;
        }
    }

    static void put(Slots &table, Node *node, std::memory_order order)
    {
        size_t i = table.first(node->textHash());
        while (table.slot(i).load(std::memory_order_relaxed) != nullptr)
            i = table.next(i);
        table.slot(i).store(node, order);
    }

    // Readers may still be in the old table: its addresses stay, its memory is given back.
    void grow(size_t bytes)
    {
        Slots *old = m_slots.load(std::memory_order_relaxed);
        auto *table = static_cast<Slots *>(XPLastingMemory::pages(bytes));
        table->capacity = capacityOf(bytes);
        for (size_t i = 0; old != nullptr && i < old->capacity; ++i) {
            if (Node *node = old->slot(i).load(std::memory_order_relaxed))
                put(*table, node, std::memory_order_relaxed);
        }
        m_slots.store(table, std::memory_order_release);
        if (old != nullptr)
            XPLastingMemory::release(old, m_bytes);
        m_bytes = bytes;
    }

    std::atomic<Slots *> m_slots = nullptr;
    size_t m_count = 0;
    size_t m_bytes = 0;
};
