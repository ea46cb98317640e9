#include "IndexEvaluatorRows.h"

#include "IndexBothCores.h"
#include "IndexComparison.h"
#include "XPPath.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace IndexComparison;

namespace IndexEvaluatorRows {

// How many times longer it takes to look at a single row than at one in a pass over all.
static constexpr quint32 singleName = 128;
static constexpr quint32 singleColumn = 8;

static bool isFew(const IndexCatalog &catalog, const RowSet &within, quint32 factor)
{
    return within && within->cardinality() < catalog.slotCount() / factor + 64;
}

RowSet shared(Roaring &&rows)
{
    return std::make_shared<const Roaring>(std::move(rows));
}

RowSet intersected(const RowSet &rows, const RowSet &within)
{
    return within ? shared(*rows & *within) : rows;
}

RowSet united(const std::vector<const IndexPosting *> &sets, const RowSet &within)
{
    // One value that matches, the usual case: its set is handed out as it is.
    if (sets.size() == 1)
        return intersected(sets.front()->snapshot(), within);
    std::vector<Roaring> parts;
    std::vector<const Roaring *> rows;
    parts.reserve(sets.size());
    for (const IndexPosting *set : sets) {
        if (within)
            parts.push_back(set->rows() & *within);
        rows.push_back(within ? &parts.back() : &set->rows());
    }
    return shared(Roaring::fastunion(rows.size(), rows.data()));
}

// --- Names

// A root's name is a whole path; people know its last part.
static QString nameText(const IndexCatalog &catalog, IndexSlot slot)
{
    const IndexChunk &chunk = catalog.chunkOf(slot);
    const QString name = XPPath::decode(chunk.name(IndexCatalog::rowOf(slot)));
    return chunk.parents[IndexCatalog::rowOf(slot)] == 0 ? XPPath::fileName(name) : name;
}

template <typename Accept>
static RowSet filtered(const RowSet &rows, Accept accept)
{
    std::vector<IndexSlot> found;
    for (const IndexSlot slot : *rows) {
        if (accept(slot))
            found.push_back(slot);
    }
    return shared(Roaring(found.size(), found.data()));
}

// Where the folded name holds the needle.
static bool verifiesName(const IndexChunk &chunk, quint32 row, const IndexTextPattern &pattern,
                         const IndexNeedle &needle)
{
    if (needle.decidesAscii() &&
        (chunk.isAsciiName(row) || needle.standsIn(chunk.caselessName(row))))
        return true;
    return pattern.matches(XPPath::decode(chunk.name(row)));
}

// A pass over all rows, dead ones too: `find` adds the rows of a chunk that match, counted from
// `base`. Half of the chunks are another thread's, as a pass is bound by the processor.
template <typename Find>
static Roaring passOver(const IndexCatalog &catalog, Find find)
{
    const size_t count = catalog.chunkCount();
    std::vector<Roaring> parts(count);
    const auto findFrom = [&](size_t first, size_t step) {
        std::vector<IndexSlot> found;
        for (size_t number = first; number < count; number += step) {
            found.clear();
            find(catalog.chunk(number), static_cast<IndexSlot>(number << 16), found);
            parts[number].addMany(found.size(), found.data());
        }
    };
    constexpr size_t worthAThread = 4;
    if (count >= worthAThread)
        indexRunBoth([&] { findFrom(0, 2); }, [&] { findFrom(1, 2); });
    else
        findFrom(0, 1);
    std::vector<const Roaring *> all;
    all.reserve(parts.size());
    for (const Roaring &part : parts)
        all.push_back(&part);
    return Roaring::fastunion(all.size(), all.data());
}

static Roaring scannedNames(const IndexCatalog &catalog, const IndexTextPattern &pattern,
                            const IndexNeedle &needle, const RowSet &within)
{
    return passOver(catalog,
                    [&](const IndexChunk &chunk, IndexSlot base, std::vector<IndexSlot> &found) {
                        chunk.foldedNames().find(
                            needle, base,
                            [&](quint32 row) {
                                return (!within || within->contains(base + row)) &&
                                       verifiesName(chunk, row, pattern, needle);
                            },
                            found);
                    });
}

static bool matchesName(const IndexCatalog &catalog, const IndexTextPattern &pattern,
                        const IndexNeedle &needle, IndexSlot slot)
{
    const IndexChunk &chunk = catalog.chunkOf(slot);
    const quint32 row = IndexCatalog::rowOf(slot);
    if (chunk.parents[row] == 0)
        return pattern.matches(nameText(catalog, slot));
    return chunk.foldedNames().matches(
        needle, row, [&](quint32) { return pattern.matches(XPPath::decode(chunk.name(row))); });
}

RowSet named(const IndexCatalog &catalog, const MDPredicate &predicate, const RowSet &within)
{
    if (predicate.value.type == MDPredicate::Value::Type::Present)
        return within ? within : catalog.alive().snapshot();
    const IndexTextPattern pattern(predicate.value);
    const RowSet &candidates = within ? within : catalog.alive().snapshot();
    if (!isEquality(predicate))
        return filtered(candidates, [&](IndexSlot slot) {
            return accepts(nameText(catalog, slot), predicate, pattern);
        });
    const IndexNeedle needle(pattern);
    const auto matches = [&](IndexSlot slot) {
        return matchesName(catalog, pattern, needle, slot);
    };
    if (isFew(catalog, within, singleName))
        return filtered(within, matches);
    // A name that matches holds the folded literal, so it is among the hits of any part of that.
    const QString literal = foldText(pattern.literal());
    const RowSet earlier = catalog.recentNames().findShorter(catalog.generation(), literal);
    if (isFew(catalog, earlier, singleName))
        return filtered(intersected(earlier, within), matches);
    Roaring hits = scannedNames(catalog, pattern, needle, within);
    for (const IndexItem root : catalog.roots()) {
        const IndexSlot slot = catalog.slotOf(root);
        matches(slot) ? hits.add(slot) : hits.remove(slot);
    }
    hits &= catalog.alive().rows();
    const RowSet rows = shared(std::move(hits));
    if (needle.decides() && pattern.shape() == IndexTextPattern::Shape::Contains)
        catalog.recentNames().remember(catalog.generation(), literal, rows);
    return intersected(rows, within);
}

// --- Paths

RowSet atPath(const IndexCatalog &catalog, const MDPredicate &predicate, const RowSet &within)
{
    RowSet candidates = within ? within : catalog.alive().snapshot();
    if (predicate.value.type == MDPredicate::Value::Type::Present)
        return candidates;
    const IndexTextPattern pattern(predicate.value);
    const bool contains =
        isEquality(predicate) && pattern.shape() == IndexTextPattern::Shape::Contains;
    // Neighbours mostly lie in one folder: its path is made and folded once for all of them.
    IndexItem folder = 0;
    QString above;
    bool aboveMatches = false;
    return filtered(candidates, [&](IndexSlot slot) {
        const IndexChunk &chunk = catalog.chunkOf(slot);
        const quint32 row = IndexCatalog::rowOf(slot);
        const IndexItem parent = chunk.parents[row];
        const QString name = XPPath::decode(chunk.name(row));
        if (parent == 0)
            return accepts(name, predicate, pattern);
        if (parent != folder) {
            folder = parent;
            above = XPPath::decode(catalog.path(catalog.slotOf(parent)));
            if (!above.endsWith(u'/'))
                above += u'/';
            if (contains)
                above = foldText(above, pattern.folding());
            aboveMatches = contains && pattern.matchesFolded(above);
        }
        if (aboveMatches)
            return true;
        if (contains)
            return pattern.matchesFolded(above.right(pattern.literal().size()) +
                                         foldText(name, pattern.folding()));
        return accepts(above + name, predicate, pattern);
    });
}

// --- Columns

namespace {

struct ColumnRange
{
    qint64 low;
    qint64 high;
};

enum class Column { None, Size, Modified, Birth };

} // namespace

static constexpr double secondsFrom1970To2001 = 978307200.0;

static Column columnOf(const QString &attribute)
{
    static const std::array<std::pair<QString, Column>, 5> columns{{
        {QStringLiteral("kMDItemFSSize"), Column::Size},
        {QStringLiteral("kMDItemFSContentChangeDate"), Column::Modified},
        {QStringLiteral("kMDItemContentModificationDate"), Column::Modified},
        {QStringLiteral("kMDItemFSCreationDate"), Column::Birth},
        {QStringLiteral("kMDItemContentCreationDate"), Column::Birth},
    }};
    for (const auto &[name, column] : columns) {
        if (attribute == name)
            return column;
    }
    return Column::None;
}

static qint64 clamped(long double value)
{
    constexpr auto low = static_cast<long double>(std::numeric_limits<qint64>::min());
    constexpr auto high = static_cast<long double>(std::numeric_limits<qint64>::max());
    if (value <= low)
        return std::numeric_limits<qint64>::min();
    if (value >= high)
        return std::numeric_limits<qint64>::max();
    return static_cast<qint64>(value);
}

// Dates of the query count seconds since 2001, the columns since 1970: times of change in
// nanoseconds, of birth in whole seconds.
static ColumnRange rangeOf(const Interval &interval, Column column)
{
    const auto convert = [&](double value) -> long double {
        const auto exact = static_cast<long double>(value);
        if (column == Column::Size)
            return exact;
        return (exact + secondsFrom1970To2001) * (column == Column::Modified ? 1e9L : 1.0L);
    };
    ColumnRange range{clamped(std::ceil(convert(interval.low))),
                      clamped(std::floor(convert(interval.high)))};
    if (column == Column::Birth)
        range.low = std::max(range.low, qint64{1}); // 0: not kept
    return range;
}

template <typename T>
static void scanColumn(const T *values, quint32 size, const ColumnRange &range, IndexSlot base,
                       std::vector<IndexSlot> &found)
{
    size_t count = 0;
    for (quint32 row = 0; row < size; ++row) {
        // No branch on the outcome: half of the rows matching is the common case.
        found[count] = base + row;
        const auto value = static_cast<qint64>(values[row]);
        count += static_cast<size_t>(value >= range.low) & static_cast<size_t>(value <= range.high);
    }
    found.resize(count);
}

static qint64 valueIn(const IndexChunk &chunk, quint32 row, Column column)
{
    switch (column) {
    case Column::Size:
        return chunk.sizes[row];
    case Column::Birth:
        return chunk.births[row];
    default:
        return chunk.modified[row];
    }
}

bool isColumn(const QString &attribute)
{
    return columnOf(attribute) != Column::None;
}

// Rows that carry the attribute themselves are judged by it, not by the column.
static RowSet withOwnValues(const IndexCatalog &catalog,
                            const std::vector<const MDPredicate *> &comparisons,
                            const RowSet &within, const RowSet &columnRows)
{
    const IndexAttributePostings *own = catalog.attributeNamed(comparisons.front()->attribute);
    if (!own || own->present().snapshot()->isEmpty())
        return columnRows;
    RowSet matching = within;
    for (const MDPredicate *comparison : comparisons)
        matching = withAttribute(catalog, *comparison, matching);
    return shared((*columnRows - *own->present().snapshot()) | *matching);
}

static RowSet inColumnAlone(const IndexCatalog &catalog,
                            const std::vector<const MDPredicate *> &comparisons,
                            const RowSet &within)
{
    const Column column = columnOf(comparisons.front()->attribute);
    ColumnRange range = rangeOf(Interval(), column);
    for (const MDPredicate *comparison : comparisons) {
        if (comparison->value.type == MDPredicate::Value::Type::Present)
            continue;
        const Interval interval = intervalOf(*comparison);
        if (interval.isEmpty())
            return shared({});
        const ColumnRange one = rangeOf(interval, column);
        range = {std::max(range.low, one.low), std::min(range.high, one.high)};
    }
    if (isFew(catalog, within, singleColumn))
        return filtered(within, [&](IndexSlot slot) {
            const qint64 value = valueIn(catalog.chunkOf(slot), IndexCatalog::rowOf(slot), column);
            return value >= range.low && value <= range.high;
        });
    const Roaring rows = passOver(
        catalog, [&](const IndexChunk &chunk, IndexSlot base, std::vector<IndexSlot> &found) {
            found.resize(IndexChunk::capacity);
            if (column == Column::Birth)
                scanColumn(chunk.births, chunk.size(), range, base, found);
            else
                scanColumn(column == Column::Size ? chunk.sizes : chunk.modified, chunk.size(),
                           range, base, found);
        });
    return shared(rows & (within ? *within : catalog.alive().rows()));
}

RowSet inColumn(const IndexCatalog &catalog, const std::vector<const MDPredicate *> &comparisons,
                const RowSet &within)
{
    return withOwnValues(catalog, comparisons, within, inColumnAlone(catalog, comparisons, within));
}

// --- Attributes

// Numbers of an attribute that has too many distinct ones for a set each.
static void scanNumbers(const IndexCatalog &catalog, const IndexAttributePostings &postings,
                        const MDPredicate &predicate, const RowSet &within, Roaring &out)
{
    const Interval interval = intervalOf(predicate);
    const auto name = catalog.attributeNumber(predicate.attribute);
    const RowSet rows = intersected(postings.present().snapshot(), within);
    std::vector<double> numbers;
    for (const IndexSlot slot : *rows) {
        for (const IndexValues::Entry &entry : catalog.values(slot)) {
            if (entry.name != *name)
                continue;
            numbers.clear();
            entry.collect(nullptr, &numbers);
            if (std::any_of(numbers.begin(), numbers.end(),
                            [&](double number) { return interval.holds(number); }))
                out.add(slot);
        }
    }
}

static std::vector<IndexTexts::Number> textsAccepted(const IndexCatalog &catalog,
                                                     const MDPredicate &predicate)
{
    const IndexTextPattern pattern(predicate.value);
    if (isEquality(predicate))
        return catalog.texts().matching(pattern);
    std::vector<IndexTexts::Number> texts;
    for (IndexTexts::Number text = 0; text < catalog.texts().size(); ++text) {
        if (accepts(catalog.texts().text(text), predicate, pattern))
            texts.push_back(text);
    }
    return texts;
}

// A text that is the same for the same comparison only.
static QString keyOf(const MDPredicate &predicate)
{
    const auto part = [](const MDPredicate::Value &value) {
        QString text = value.text + u'\n' + QString::number(value.number, 'g', 17) + u'\n';
        for (const bool flag : {value.quoted, value.ignoreCase, value.ignoreDiacritics,
                                value.wordBased, value.isDate})
            text += flag ? u'1' : u'0';
        for (const bool wildcard : value.wildcard)
            text += wildcard ? u'1' : u'0';
        return text;
    };
    return predicate.attribute + u'\n' + QString::number(static_cast<int>(predicate.kind)) +
           QString::number(static_cast<int>(
               predicate.op == MDPredicate::Op::NotEqual ? MDPredicate::Op::Equal : predicate.op)) +
           u'\n' + part(predicate.value) + u'\n' + part(predicate.high);
}

RowSet withAttribute(const IndexCatalog &catalog, const MDPredicate &predicate,
                     const RowSet &within)
{
    const IndexAttributePostings *postings = catalog.attributeNamed(predicate.attribute);
    if (!postings)
        return shared({});
    if (predicate.value.type == MDPredicate::Value::Type::Present)
        return intersected(postings->present().snapshot(), within);
    std::vector<const IndexPosting *> sets;
    Roaring out;
    const Interval interval = intervalOf(predicate);
    if (!interval.isEmpty()) {
        const auto &numbers = postings->numbers();
        for (auto set = numbers.lower_bound(interval.low);
             set != numbers.end() && set->first <= interval.high; ++set)
            sets.push_back(&set->second);
        if (postings->hasTooManyNumbers())
            scanNumbers(catalog, *postings, predicate, within, out);
    }
    if (!predicate.value.isDate && !postings->texts().isEmpty()) {
        for (const IndexTexts::Number text : textsAccepted(catalog, predicate)) {
            const auto set = postings->texts().constFind(text);
            if (set != postings->texts().cend())
                sets.push_back(&*set);
        }
    }
    if (!out.isEmpty())
        return shared(*united(sets, within) | out);
    // The same few comparisons come with each letter that somebody types.
    if (sets.size() < 2)
        return united(sets, within);
    const QString key = keyOf(predicate);
    RowSet rows = catalog.recentValues().find(catalog.valuesVersion(), key);
    if (!rows) {
        rows = united(sets);
        catalog.recentValues().remember(catalog.valuesVersion(), key, rows);
    }
    return intersected(rows, within);
}

RowSet withAnyText(const IndexCatalog &catalog, const MDPredicate &predicate, const RowSet &within)
{
    std::vector<const IndexPosting *> sets;
    const bool present = predicate.value.type == MDPredicate::Value::Type::Present;
    const std::vector<IndexTexts::Number> texts =
        present ? std::vector<IndexTexts::Number>() : textsAccepted(catalog, predicate);
    for (const IndexAttributePostings &postings : catalog.attributes()) {
        if (postings.texts().isEmpty())
            continue;
        if (present) {
            for (const IndexPosting &set : postings.texts())
                sets.push_back(&set);
        }
        for (const IndexTexts::Number text : texts) {
            const auto set = postings.texts().constFind(text);
            if (set != postings.texts().cend())
                sets.push_back(&*set);
        }
    }
    return united(sets, within);
}

} // namespace IndexEvaluatorRows
