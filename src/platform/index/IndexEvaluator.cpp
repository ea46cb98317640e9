#include "IndexEvaluator.h"

#include "IndexScan.h"
#include "KPContentTypes.h"
#include "KPFileType.h"
#include "XPPath.h"

#include <algorithm>
#include <cmath>
#include <limits>

using Kind = MDPredicate::Kind;
using Op = MDPredicate::Op;
using Value = MDPredicate::Value;

static constexpr double infinity = std::numeric_limits<double>::infinity();
static constexpr double secondsFrom1970To2001 = 978307200.0;

// Few enough rows to look at them one by one.
static constexpr quint64 fewRows = 4096;

static RowSet share(Roaring &&rows)
{
    return std::make_shared<const Roaring>(std::move(rows));
}

static RowSet intersect(const RowSet &rows, const RowSet &within)
{
    return within ? share(*rows & *within) : rows;
}

static bool isFew(const RowSet &within)
{
    return within && within->cardinality() < fewRows;
}

// --- What a comparison asks of a number: low <= n <= high.

namespace {

struct Interval
{
    double low = -infinity;
    double high = infinity;
    bool isEmpty() const { return !(low <= high); }
};

} // namespace

static std::optional<double> numberOf(const Value &value)
{
    if (value.type == Value::Type::Number)
        return value.number;
    bool ok = false;
    const double number = value.text.toDouble(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

static Interval intervalOf(const MDPredicate &predicate)
{
    const Interval none{1, 0};
    const std::optional<double> value = numberOf(predicate.value);
    if (!value || std::isnan(*value))
        return none;
    if (predicate.kind == Kind::InRange) {
        const std::optional<double> high = numberOf(predicate.high);
        return high ? Interval{*value, *high} : none;
    }
    switch (predicate.op) {
    case Op::Equal:
    case Op::NotEqual:
        return {*value, *value};
    case Op::Less:
        return {-infinity, std::nextafter(*value, -infinity)};
    case Op::LessOrEqual:
        return {-infinity, *value};
    case Op::Greater:
        return {std::nextafter(*value, infinity), infinity};
    case Op::GreaterOrEqual:
        return {*value, infinity};
    }
    return none;
}

// Whether a text satisfies an ordering comparison (equality is the pattern's business).
static bool ordered(const QString &text, const MDPredicate &predicate,
                    const IndexTextPattern &pattern)
{
    const QString left = foldText(text, pattern.folding());
    const QString right = foldText(predicate.value.text, pattern.folding());
    const int order = left.compare(right);
    if (predicate.kind == Kind::InRange)
        return order >= 0 && left.compare(foldText(predicate.high.text, pattern.folding())) <= 0;
    switch (predicate.op) {
    case Op::Less:
        return order < 0;
    case Op::LessOrEqual:
        return order <= 0;
    case Op::Greater:
        return order > 0;
    case Op::GreaterOrEqual:
        return order >= 0;
    default:
        return pattern.matchesFolded(left);
    }
}

static bool isEquality(const MDPredicate &predicate)
{
    return predicate.kind == Kind::Compare &&
           (predicate.op == Op::Equal || predicate.op == Op::NotEqual);
}

// --- The tree

RowSet IndexEvaluator::all(const RowSet &within) const
{
    return within ? within : m_catalog.alive().snapshot();
}

RowSet IndexEvaluator::rows(const MDPredicate &predicate, const RowSet &within) const
{
    switch (predicate.kind) {
    case Kind::True:
        return all(within);
    case Kind::False:
        return share({});
    case Kind::And:
        return andRows(predicate, within);
    case Kind::Or: {
        Roaring out;
        for (const MDPredicatePtr &child : predicate.children)
            out |= *rows(*child, within);
        return share(std::move(out));
    }
    case Kind::Not:
        return share(*all(within) - *rows(*predicate.children.front(), within));
    case Kind::Compare:
    case Kind::InRange:
        return compare(predicate, within);
    }
    return share({});
}

int IndexEvaluator::cost(const MDPredicate &predicate)
{
    if (predicate.kind != Kind::Compare && predicate.kind != Kind::InRange) {
        int worst = 0;
        for (const MDPredicatePtr &child : predicate.children)
            worst = std::max(worst, cost(*child));
        return worst;
    }
    const QString &name = predicate.attribute;
    if (name == u"kMDItemPath")
        return 5;
    if (name == u"*")
        return 4;
    if (name == u"kMDItemDisplayName" || name == u"kMDItemFSName")
        return 3;
    if (name.startsWith(u"kMDItemFS") || name.startsWith(u"kMDItemContent"))
        return name.startsWith(u"kMDItemContentType") ? 0 : name == u"kMDItemTextContent" ? 1 : 2;
    return name == u"kMDItemSupportFileType" ? 1 : 0;
}

RowSet IndexEvaluator::andRows(const MDPredicate &predicate, RowSet within) const
{
    std::vector<const MDPredicate *> children;
    for (const MDPredicatePtr &child : predicate.children)
        children.push_back(child.get());
    std::stable_sort(children.begin(), children.end(),
                     [](const auto *a, const auto *b) { return cost(*a) < cost(*b); });
    for (const MDPredicate *child : children) {
        within = rows(*child, within);
        if (within->isEmpty())
            break;
    }
    return all(within);
}

RowSet IndexEvaluator::compare(const MDPredicate &predicate, const RowSet &within) const
{
    RowSet matching = equalOrOrdered(predicate, within);
    if (predicate.kind == Kind::Compare && predicate.op == Op::NotEqual)
        return share(*all(within) - *matching);
    return matching;
}

RowSet IndexEvaluator::equalOrOrdered(const MDPredicate &predicate, const RowSet &within) const
{
    const QString &name = predicate.attribute;
    if (name == u"kMDItemDisplayName" || name == u"kMDItemFSName")
        return nameRows(predicate, within);
    if (name == u"*")
        return anyText(predicate, within);
    if (name == u"kMDItemContentType" || name == u"kMDItemContentTypeTree" ||
        name == u"kMDItemKind")
        return intersect(typeRows(predicate), within);
    if (name == u"kMDItemPath")
        return pathRows(predicate, within);
    if (name == u"kMDItemTextContent")
        return intersect(contentRows(predicate), within);
    if (name == u"kMDItemSupportFileType") {
        const bool asked =
            predicate.value.type == Value::Type::Present ||
            IndexTextPattern(predicate.value).matches(QStringLiteral("MDSystemFile"));
        return asked ? intersect(m_catalog.systemRows(), within) : share({});
    }
    static const QStringList columns{
        QStringLiteral("kMDItemFSSize"),
        QStringLiteral("kMDItemFSContentChangeDate"),
        QStringLiteral("kMDItemFSCreationDate"),
        QStringLiteral("kMDItemContentModificationDate"),
        QStringLiteral("kMDItemContentCreationDate"),
    };
    if (columns.contains(name))
        return columnRows(predicate, within);
    const auto postings = m_catalog.attributes().constFind(name);
    if (postings == m_catalog.attributes().cend())
        return share({});
    return intersect(attributeRows(*postings, predicate), within);
}

// --- Names

QString IndexEvaluator::nameText(IndexSlot slot) const
{
    const IndexChunk &chunk = m_catalog.chunkOf(slot);
    const QString name = XPPath::decode(chunk.name(IndexCatalog::rowOf(slot)));
    return chunk.parents[IndexCatalog::rowOf(slot)] == 0 ? XPPath::fileName(name) : name;
}

RowSet IndexEvaluator::nameRows(const MDPredicate &predicate, const RowSet &within) const
{
    if (predicate.value.type == Value::Type::Present)
        return all(within);
    const IndexTextPattern pattern(predicate.value);
    Roaring out;
    if (isFew(within) || !isEquality(predicate) || pattern.literal().isEmpty()) {
        const RowSet candidates = all(within);
        for (const IndexSlot slot : *candidates) {
            if (isEquality(predicate) ? pattern.matches(nameText(slot))
                                      : ordered(nameText(slot), predicate, pattern))
                out.add(slot);
        }
        return share(std::move(out));
    }
    scanNames(pattern, out);
    return share(out & *all(within));
}

void IndexEvaluator::scanNames(const IndexTextPattern &pattern, Roaring &out) const
{
    // The stored names are folded in case and marks; a stricter pattern is looked for in its
    // folded form first, and each hit then checked against the name itself.
    const bool exact = pattern.folding() == FoldText::CaseAndDiacritics;
    const IndexTextPattern::Shape shape = pattern.shape();
    const QByteArray literal = XPPath::encode(foldText(pattern.literal()));
    const bool decided = exact && shape != IndexTextPattern::Shape::Other;
    std::vector<quint32> hits;
    std::vector<quint32> found;
    for (size_t number = 0; number < m_catalog.chunkCount(); ++number) {
        const IndexChunk &chunk = m_catalog.chunk(number);
        hits.clear();
        found.clear();
        indexScan(chunk.foldedNames(), literal, hits);
        const std::vector<quint32> &starts = chunk.foldedStarts();
        quint32 row = 0;
        bool first = true;
        quint32 last = 0;
        for (const quint32 hit : hits) {
            // Hits and rows both ascend: gallop is not needed, most hits are rows apart.
            if (!first && hit < starts[last + 1] && decided &&
                shape == IndexTextPattern::Shape::Contains)
                continue; // a second hit in the same name
            row = chunk.rowAtFoldedOffset(hit);
            const IndexSlot slot = static_cast<IndexSlot>(number << 16) | row;
            bool matches = false;
            if (decided && chunk.parents[row] != 0) {
                const bool atStart = hit == starts[row];
                const bool atEnd =
                    hit + static_cast<quint32>(literal.size()) + 1 == starts[row + 1];
                matches = shape == IndexTextPattern::Shape::Contains ||
                          (shape == IndexTextPattern::Shape::Prefix && atStart) ||
                          (shape == IndexTextPattern::Shape::Suffix && atEnd) ||
                          (shape == IndexTextPattern::Shape::Whole && atStart && atEnd);
            } else {
                matches = pattern.matches(nameText(slot));
            }
            if (matches && (found.empty() || found.back() != slot))
                found.push_back(slot);
            last = row;
            first = false;
        }
        out.addMany(found.size(), found.data());
    }
}

// --- Texts and numbers of attributes

RowSet IndexEvaluator::attributeRows(const IndexAttributePostings &postings,
                                     const MDPredicate &predicate) const
{
    if (predicate.value.type == Value::Type::Present)
        return postings.present().snapshot();
    Roaring out;
    const Interval interval = intervalOf(predicate);
    if (!interval.isEmpty()) {
        if (interval.low == interval.high && postings.texts().isEmpty()) {
            if (const IndexPosting *posting = postings.exact(interval.low))
                return posting->snapshot();
        }
        postings.rowsInRange(interval.low, interval.high, out);
    }
    if (predicate.value.isDate)
        return share(std::move(out));
    const IndexTextPattern pattern(predicate.value);
    const IndexPosting *only = nullptr;
    for (auto text = postings.texts().begin(); text != postings.texts().end(); ++text) {
        if (!ordered(text.key(), predicate, pattern))
            continue;
        // One text that matches, the usual case: its set is handed out as it is.
        if (!only && out.isEmpty()) {
            only = &*text;
            continue;
        }
        out |= text->rows();
    }
    if (only && out.isEmpty())
        return only->snapshot();
    if (only)
        out |= only->rows();
    return share(std::move(out));
}

RowSet IndexEvaluator::anyText(const MDPredicate &predicate, const RowSet &within) const
{
    MDPredicate part = predicate;
    part.attribute = QStringLiteral("kMDItemDisplayName");
    Roaring out = *nameRows(part, within);
    part.attribute = QStringLiteral("kMDItemKind");
    out |= *intersect(typeRows(part), within);
    for (const IndexAttributePostings &postings : m_catalog.attributes()) {
        if (!postings.texts().isEmpty())
            out |= *intersect(attributeRows(postings, predicate), within);
    }
    return share(std::move(out));
}

// --- Types: few distinct ones, each tested once

static QStringList typeTexts(const QString &type, const QString &attribute)
{
    if (attribute == u"kMDItemContentType")
        return {type};
    if (attribute == u"kMDItemKind")
        return {KPFileType::displayNameForUTI(type)};
    return KPContentTypes::typeTree(type);
}

RowSet IndexEvaluator::typeRows(const MDPredicate &predicate) const
{
    const bool present = predicate.value.type == Value::Type::Present;
    const IndexTextPattern pattern(predicate.value);
    std::vector<const IndexPosting *> matching;
    const std::vector<QString> &types = m_catalog.types();
    for (quint32 number = 1; number < types.size(); ++number) {
        const IndexPosting &posting = m_catalog.rowsOfType(number);
        if (posting.isEmpty())
            continue;
        const QStringList texts = typeTexts(types[number], predicate.attribute);
        if (present || std::any_of(texts.begin(), texts.end(), [&](const QString &text) {
                return ordered(text, predicate, pattern);
            }))
            matching.push_back(&posting);
    }
    if (matching.size() == 1)
        return matching.front()->snapshot();
    Roaring out;
    for (const IndexPosting *posting : matching)
        out |= posting->rows();
    return share(std::move(out));
}

RowSet IndexEvaluator::pathRows(const MDPredicate &predicate, const RowSet &within) const
{
    if (predicate.value.type == Value::Type::Present)
        return all(within);
    const IndexTextPattern pattern(predicate.value);
    Roaring out;
    const RowSet candidates = all(within);
    for (const IndexSlot slot : *candidates) {
        if (ordered(XPPath::decode(m_catalog.path(slot)), predicate, pattern))
            out.add(slot);
    }
    return share(std::move(out));
}

RowSet IndexEvaluator::contentRows(const MDPredicate &predicate) const
{
    Roaring out;
    if (!m_text)
        return share(std::move(out));
    for (const IndexItem item : m_text->itemsMatching(predicate.value, 0, nullptr)) {
        const IndexSlot slot = m_catalog.slotOf(item);
        if (slot != IndexCatalog::noSlot)
            out.add(slot);
    }
    return share(std::move(out));
}

// --- Columns

namespace {

struct ColumnRange
{
    qint64 low;
    qint64 high;
};

} // namespace

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

// Dates of the query count seconds since 2001, the columns nanoseconds since 1970.
static ColumnRange columnRange(const Interval &interval, bool date)
{
    const auto convert = [&](double value) {
        const auto exact = static_cast<long double>(value);
        return date ? (exact + secondsFrom1970To2001) * 1e9L : exact;
    };
    return {clamped(std::ceil(convert(interval.low))), clamped(std::floor(convert(interval.high)))};
}

RowSet IndexEvaluator::columnRows(const MDPredicate &predicate, const RowSet &within) const
{
    const QString &name = predicate.attribute;
    const bool size = name == u"kMDItemFSSize";
    const bool birth = name.endsWith(u"CreationDate");
    const bool present = predicate.value.type == Value::Type::Present;
    const Interval interval = present ? Interval() : intervalOf(predicate);
    Roaring out;
    if (interval.isEmpty())
        return share(std::move(out));
    ColumnRange range = columnRange(interval, !size);
    if (birth)
        range.low = std::max(range.low, qint64{1}); // 0: the file system keeps no birth time
    const auto column = [&](const IndexChunk &chunk) -> const std::vector<qint64> & {
        return size ? chunk.sizes : birth ? chunk.births : chunk.modified;
    };
    if (isFew(within)) {
        for (const IndexSlot slot : *within) {
            const qint64 value = column(m_catalog.chunkOf(slot))[IndexCatalog::rowOf(slot)];
            if (value >= range.low && value <= range.high)
                out.add(slot);
        }
        return share(std::move(out));
    }
    std::vector<quint32> found(IndexChunk::capacity);
    for (size_t number = 0; number < m_catalog.chunkCount(); ++number) {
        const IndexChunk &chunk = m_catalog.chunk(number);
        const std::vector<qint64> &values = column(chunk);
        size_t count = 0;
        for (quint32 row = 0; row < chunk.size(); ++row) {
            // No branch on the outcome: half of the rows matching is the common case.
            found[count] = static_cast<quint32>(number << 16) | row;
            count += values[row] >= range.low && values[row] <= range.high ? 1 : 0;
        }
        out.addMany(count, found.data());
    }
    return share(out & *all(within));
}
