#include "IndexOrder.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

struct Keyed
{
    quint64 key;
    IndexSlot slot;
    bool operator<(const Keyed &other) const
    {
        return key != other.key ? key < other.key : slot < other.slot;
    }
};

// Keeps the smallest `limit` of what is added, in a buffer of twice that.
class Smallest
{
public:
    explicit Smallest(size_t limit) : m_limit(limit) {}

    void add(quint64 key, IndexSlot slot)
    {
        if (m_full && key > m_worst)
            return;
        m_kept.push_back({key, slot});
        if (m_limit && m_kept.size() >= 2 * m_limit)
            cut();
    }
    std::vector<IndexSlot> take()
    {
        std::sort(m_kept.begin(), m_kept.end());
        if (m_limit && m_kept.size() > m_limit)
            m_kept.resize(m_limit);
        std::vector<IndexSlot> slots;
        slots.reserve(m_kept.size());
        for (const Keyed &keyed : m_kept)
            slots.push_back(keyed.slot);
        return slots;
    }

private:
    void cut()
    {
        const auto last = m_kept.begin() + static_cast<std::ptrdiff_t>(m_limit - 1);
        std::nth_element(m_kept.begin(), last, m_kept.end());
        m_worst = last->key;
        m_full = true;
        m_kept.resize(m_limit);
    }

    const size_t m_limit;
    std::vector<Keyed> m_kept;
    quint64 m_worst = 0;
    bool m_full = false;
};

} // namespace

// Signed numbers and doubles as unsigned ones of the same order.
static quint64 keyOf(qint64 value)
{
    return static_cast<quint64>(value) ^ (1ULL << 63);
}

static quint64 keyOf(double value)
{
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits >> 63 ? ~bits : bits | 1ULL << 63;
}

// Quicker for a million rows than stepping through the set.
static std::vector<IndexSlot> listOf(const Roaring &rows)
{
    std::vector<IndexSlot> slots(rows.cardinality());
    rows.toUint32Array(slots.data());
    return slots;
}

static qint64 secondsOf(const PropertyValue &date)
{
    const double seconds = date.date().secondsSince1970();
    return std::isfinite(seconds) ? static_cast<qint64>(std::clamp(seconds, -1e15, 1e15)) : 0;
}

std::vector<IndexSlot> IndexOrder::first(const IndexCatalog &catalog, const Roaring &rows,
                                         size_t limit) const
{
    if (m_attribute == u"kMDItemDisplayName" || m_attribute == u"kMDItemFSName")
        return byName(catalog, rows, limit);
    const bool size = m_attribute == u"kMDItemFSSize";
    const bool modified = m_attribute == u"kMDItemContentModificationDate" ||
                          m_attribute == u"kMDItemFSContentChangeDate";
    const bool birth =
        m_attribute == u"kMDItemContentCreationDate" || m_attribute == u"kMDItemFSCreationDate";
    if (!size && !modified && !birth)
        return byValue(catalog, rows, limit);
    // A document's own date goes before that of its file.
    const IndexAttributePostings *own = birth ? catalog.attributeNamed(m_attribute) : nullptr;
    Smallest smallest(limit);
    for (const IndexSlot slot : listOf(rows)) {
        const IndexChunk &chunk = catalog.chunkOf(slot);
        const quint32 row = IndexCatalog::rowOf(slot);
        const quint64 key = own && own->present().contains(slot)
                                ? keyOf(secondsOf(catalog.attribute(slot, m_attribute)))
                                : keyOf(size       ? chunk.sizes[row]
                                        : modified ? chunk.modified[row]
                                                   : qint64{chunk.births[row]});
        smallest.add(m_ascending ? key : ~key, slot);
    }
    return smallest.take();
}

std::vector<IndexSlot> IndexOrder::byName(const IndexCatalog &catalog, const Roaring &rows,
                                          size_t limit) const
{
    const auto name = [&](IndexSlot slot) {
        return catalog.chunkOf(slot).foldedName(IndexCatalog::rowOf(slot));
    };
    const auto before = [&](IndexSlot a, IndexSlot b) {
        const int order = name(a).compare(name(b));
        return order != 0 ? (order < 0) == m_ascending : a < b;
    };
    Smallest smallest(limit);
    std::vector<IndexSlot> young; // have no rank yet
    for (const IndexSlot slot : listOf(rows)) {
        const quint32 rank = catalog.nameRank(slot);
        if (rank == IndexCatalog::unordered)
            young.push_back(slot);
        else
            smallest.add(m_ascending ? rank : ~rank, slot);
    }
    std::vector<IndexSlot> slots = smallest.take();
    if (young.empty())
        return slots;
    if (limit && young.size() > limit) {
        std::nth_element(young.begin(), young.begin() + static_cast<std::ptrdiff_t>(limit),
                         young.end(), before);
        young.resize(limit);
    }
    std::sort(young.begin(), young.end(), before);
    std::vector<IndexSlot> merged;
    merged.reserve(slots.size() + young.size());
    std::merge(slots.begin(), slots.end(), young.begin(), young.end(), std::back_inserter(merged),
               before);
    if (limit && merged.size() > limit)
        merged.resize(limit);
    return merged;
}

std::vector<IndexSlot> IndexOrder::byValue(const IndexCatalog &catalog, const Roaring &rows,
                                           size_t limit) const
{
    struct Value
    {
        int kind = 2; // 0: a number, 1: a text, 2: nothing
        quint64 number = 0;
        QString text;
        IndexSlot slot = 0;
    };
    const auto attribute = catalog.attributeNumber(m_attribute);
    std::vector<Value> values;
    for (const IndexSlot slot : rows) {
        Value value;
        value.slot = slot;
        std::vector<double> numbers;
        std::vector<IndexTexts::Number> texts;
        for (const IndexValues::Entry &entry : catalog.values(slot)) {
            if (attribute && entry.name == *attribute)
                entry.collect(&texts, &numbers);
        }
        if (!numbers.empty()) {
            value.kind = 0;
            value.number = keyOf(numbers.front());
        } else if (!texts.empty()) {
            value.kind = 1;
            value.text = foldText(catalog.texts().text(texts.front()));
        }
        values.push_back(std::move(value));
    }
    const auto before = [this](const Value &a, const Value &b) {
        if (a.kind == 2 || b.kind == 2)
            return a.kind != b.kind ? a.kind < b.kind : a.slot < b.slot;
        if (a.kind != b.kind)
            return (a.kind < b.kind) == m_ascending;
        if (a.number != b.number)
            return (a.number < b.number) == m_ascending;
        const int order = a.text.compare(b.text);
        return order != 0 ? (order < 0) == m_ascending : a.slot < b.slot;
    };
    const size_t count = limit ? std::min(limit, values.size()) : values.size();
    std::partial_sort(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count),
                      values.end(), before);
    std::vector<IndexSlot> slots;
    for (size_t i = 0; i < count; ++i)
        slots.push_back(values[i].slot);
    return slots;
}
