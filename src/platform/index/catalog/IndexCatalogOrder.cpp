#include "IndexCatalog.h"

#include <algorithm>

// The order of names. Ranks are made for all rows at once; rows that came later have none and are
// few, so that whoever sorts compares their names.

namespace {

struct Key
{
    quint64 part; // eight bytes of the name
    IndexSlot slot;
};

// Sorts rows by their names, eight bytes at a time: numbers are compared, not texts that lie all
// over the memory and mostly begin alike.
class NameSort
{
public:
    explicit NameSort(const IndexCatalog &catalog) : m_catalog(catalog) {}

    std::vector<IndexSlot> sorted(IndexSlot begin, IndexSlot end)
    {
        m_keys.reserve(end - begin);
        for (IndexSlot slot = begin; slot < end; ++slot)
            m_keys.push_back({0, slot});
        sort(0, m_keys.size(), 0);
        std::vector<IndexSlot> slots;
        slots.reserve(m_keys.size());
        for (const Key &key : m_keys)
            slots.push_back(key.slot);
        return slots;
    }

private:
    quint64 partOf(IndexSlot slot, qsizetype depth) const
    {
        const QByteArrayView name = m_catalog.chunkOf(slot).foldedName(IndexCatalog::rowOf(slot));
        quint64 part = 0;
        for (qsizetype i = depth; i < depth + 8; ++i)
            part = part << 8 | (i < name.size() ? static_cast<quint8>(name[i]) : 0U);
        return part;
    }

    // A name is at most a few hundred bytes long, so neither is the nesting deep.
    void sort(size_t begin, size_t end, qsizetype depth) // NOLINT(misc-no-recursion)
    {
        for (size_t i = begin; i < end; ++i)
            m_keys[i].part = partOf(m_keys[i].slot, depth);
        const auto at = [this](size_t i) {
            return m_keys.begin() + static_cast<std::ptrdiff_t>(i);
        };
        std::sort(at(begin), at(end), [](const Key &a, const Key &b) {
            return a.part != b.part ? a.part < b.part : a.slot < b.slot;
        });
        for (size_t first = begin; first < end;) {
            size_t last = first + 1;
            while (last < end && m_keys[last].part == m_keys[first].part)
                ++last;
            // No zero stands in a name: one at the end of the part is beyond the name's end.
            if (last - first > 1 && (m_keys[first].part & 0xFF))
                sort(first, last, depth + 8);
            first = last;
        }
    }

    const IndexCatalog &m_catalog;
    std::vector<Key> m_keys;
};

} // namespace

// The rows that have a rank, in order. Empty when the ranks are not one for each.
std::vector<IndexSlot> IndexCatalog::orderBefore() const
{
    std::vector<IndexSlot> order(d->nameRanks.size(), noSlot);
    for (IndexSlot slot = 0; slot < order.size(); ++slot) {
        const quint32 rank = d->nameRanks[slot];
        if (rank >= order.size() || order[rank] != noSlot)
            return {};
        order[rank] = slot;
    }
    return order;
}

void IndexCatalog::orderNames()
{
    if (d->nameRanks.size() == d->slotCount)
        return;
    const std::vector<IndexSlot> before = orderBefore();
    const size_t ordered = before.size();
    std::vector<quint32> ranks(d->slotCount);
    quint32 rank = 0;
    if (d->slotCount - ordered > ordered / 8) {
        for (const IndexSlot slot : NameSort(*this).sorted(0, d->slotCount))
            ranks[slot] = rank++;
    } else {
        // The old order, from ranks back to rows, merged with the few new names.
        const auto nameOf = [this](IndexSlot slot) {
            return chunkOf(slot).foldedName(rowOf(slot));
        };
        auto old = before.cbegin();
        for (const IndexSlot fresh :
             NameSort(*this).sorted(static_cast<IndexSlot>(ordered), d->slotCount)) {
            const auto place = std::partition_point(old, before.cend(), [&](IndexSlot slot) {
                return nameOf(slot).compare(nameOf(fresh)) <= 0;
            });
            for (; old != place; ++old)
                ranks[*old] = rank++;
            ranks[fresh] = rank++;
        }
        for (; old != before.cend(); ++old)
            ranks[*old] = rank++;
    }
    const std::unique_lock lock(m_mutex);
    d->nameRanks.swap(ranks);
    ++m_orderVersion;
}

void IndexCatalog::compact()
{
    const auto dead = d->slotCount - static_cast<quint32>(count());
    if (dead < IndexChunk::capacity / 2 || dead < d->slotCount / 4)
        return;
    // A catalog made anew from the living rows, then exchanged: readers wait for a moment only.
    // Parents first, so that a folder's rows find what they inherit.
    std::vector<IndexItem> items;
    std::vector<quint8> done(d->slotOfItem.size(), 0);
    std::vector<IndexItem> chain;
    for (const IndexSlot slot : d->alive.rows()) {
        for (IndexItem item = itemAt(slot); item && !done[item];) {
            done[item] = 1;
            chain.push_back(item);
            const IndexSlot at = slotOf(item);
            item = at == noSlot ? 0 : chunkOf(at).parents[rowOf(at)];
        }
        for (; !chain.empty(); chain.pop_back()) {
            if (slotOf(chain.back()) != noSlot)
                items.push_back(chain.back());
        }
    }
    IndexCatalog fresh;
    for (const IndexItem item : items) {
        const IndexSlot from = slotOf(item);
        const IndexRecord row = record(from);
        const IndexSlot to = fresh.append(row);
        for (int origin = 0; origin < IndexValues::origins; ++origin) {
            const auto which = static_cast<IndexValues::Origin>(origin);
            fresh.setOrigin(to, which, attributesOf(from, which));
        }
        fresh.setImported(to, chunkOf(from).hasFlag(rowOf(from), IndexChunk::Imported));
    }
    fresh.d->slotOfItem.resize(d->slotOfItem.size(), noSlot);
    fresh.orderNames();
    const std::unique_lock lock(m_mutex);
    d.swap(fresh.d);
    ++m_typesVersion;
    ++m_orderVersion;
    ++m_generation;
}
