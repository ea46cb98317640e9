#include "IndexCatalog.h"

#include <algorithm>
#include <numeric>

// The order of names. Ranks are made for all rows at once; rows that came later have none and are
// few, so that whoever sorts compares their names.

namespace {

struct Key
{
    quint64 start; // the first eight bytes, so that most comparisons look no further
    IndexSlot slot;
};

} // namespace

static quint64 startOf(QByteArrayView name)
{
    quint64 start = 0;
    for (qsizetype i = 0; i < 8; ++i)
        start = start << 8 | (i < name.size() ? static_cast<quint8>(name[i]) : 0U);
    return start;
}

void IndexCatalog::orderNames()
{
    const size_t ordered = d->nameRanks.size();
    if (ordered == d->slotCount)
        return;
    const auto nameOf = [this](IndexSlot slot) { return chunkOf(slot).foldedName(rowOf(slot)); };
    std::vector<Key> keys;
    keys.reserve(d->slotCount - ordered);
    for (auto slot = static_cast<IndexSlot>(ordered); slot < d->slotCount; ++slot)
        keys.push_back({startOf(nameOf(slot)), slot});
    std::sort(keys.begin(), keys.end(), [&](const Key &a, const Key &b) {
        if (a.start != b.start)
            return a.start < b.start;
        const int order = nameOf(a.slot).compare(nameOf(b.slot));
        return order != 0 ? order < 0 : a.slot < b.slot;
    });
    // The old order, from ranks back to rows, merged with the new names.
    std::vector<IndexSlot> before(ordered);
    for (IndexSlot slot = 0; slot < ordered; ++slot)
        before[d->nameRanks[slot]] = slot;
    std::vector<quint32> ranks(d->slotCount);
    quint32 rank = 0;
    size_t old = 0;
    for (const Key &key : keys) {
        // Gallop: new names are few among the old ones.
        const auto place = std::partition_point(
            before.begin() + static_cast<std::ptrdiff_t>(old), before.end(),
            [&](IndexSlot slot) { return nameOf(slot).compare(nameOf(key.slot)) <= 0; });
        for (const auto end = static_cast<size_t>(place - before.begin()); old < end; ++old)
            ranks[before[old]] = rank++;
        ranks[key.slot] = rank++;
    }
    for (; old < ordered; ++old)
        ranks[before[old]] = rank++;
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
    ++m_orderVersion;
    ++m_generation;
}
