#include "IndexEvaluator.h"

#include "IndexComparison.h"
#include "IndexEvaluatorRows.h"
#include "KPContentTypes.h"
#include "KPFileType.h"

#include <algorithm>

using namespace IndexEvaluatorRows;
using IndexComparison::accepts;
using Kind = MDPredicate::Kind;
using Op = MDPredicate::Op;
using Type = MDPredicate::Value::Type;

RowSet IndexEvaluator::all(const RowSet &within) const
{
    return within ? within : m_catalog.alive().snapshot();
}

// NOLINTBEGIN(misc-no-recursion): the parser limits how deep a predicate is nested
RowSet IndexEvaluator::rows(const MDPredicate &predicate, const RowSet &within) const
{
    switch (predicate.kind) {
    case Kind::True:
        return all(within);
    case Kind::False:
        return shared({});
    case Kind::And:
        return andRows(predicate, within);
    case Kind::Or: {
        Roaring out;
        for (const MDPredicatePtr &child : predicate.children)
            out |= *rows(*child, within);
        return shared(std::move(out));
    }
    case Kind::Not:
        return shared(*all(within) - *rows(*predicate.children.front(), within));
    case Kind::Compare:
    case Kind::InRange:
        return compare(predicate, within);
    }
    return shared({});
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
    if (name.startsWith(u"kMDItemFS") || name.endsWith(u"Date"))
        return 2;
    // Sets that are there already; those that take out few rows of many go last.
    return predicate.op == Op::NotEqual || name == u"kMDItemTextContent" ? 1 : 0;
}

// At most how many rows match, where that is known at once.
quint64 IndexEvaluator::estimate(const MDPredicate &predicate) const
{
    if (predicate.kind != Kind::Compare && predicate.kind != Kind::InRange)
        return m_catalog.slotCount();
    const auto *postings = m_catalog.attributeNamed(predicate.attribute);
    return postings && predicate.op != Op::NotEqual ? postings->present().rows().cardinality()
                                                    : m_catalog.slotCount();
}

// What all must hold, in the order in which it is found out. A column's comparisons are one test.
struct IndexEvaluator::Test
{
    int cost;
    quint64 estimate;
    std::vector<const MDPredicate *> predicates;
};

void IndexEvaluator::addTests(const MDPredicate &predicate, std::vector<Test> &tests) const
{
    for (const MDPredicatePtr &child : predicate.children) {
        if (child->kind == Kind::And) {
            addTests(*child, tests);
            continue;
        }
        const bool column = (child->kind == Kind::Compare || child->kind == Kind::InRange) &&
                            child->op != Op::NotEqual && isColumn(child->attribute);
        const auto same = std::find_if(tests.begin(), tests.end(), [&](const Test &test) {
            return column && test.predicates.front()->attribute == child->attribute &&
                   test.predicates.front()->op != Op::NotEqual;
        });
        if (same != tests.end())
            same->predicates.push_back(child.get());
        else
            tests.push_back({cost(*child), estimate(*child), {child.get()}});
    }
}

RowSet IndexEvaluator::andRows(const MDPredicate &predicate, RowSet within) const
{
    std::vector<Test> tests;
    addTests(predicate, tests);
    std::stable_sort(tests.begin(), tests.end(), [](const Test &a, const Test &b) {
        return a.cost != b.cost ? a.cost < b.cost : a.estimate < b.estimate;
    });
    for (const Test &test : tests) {
        within = test.predicates.size() > 1 ? inColumn(m_catalog, test.predicates, within)
                                            : rows(*test.predicates.front(), within);
        if (within->isEmpty())
            break;
    }
    return all(within);
}
// NOLINTEND(misc-no-recursion)

RowSet IndexEvaluator::compare(const MDPredicate &predicate, const RowSet &within) const
{
    RowSet matching = equalOrOrdered(predicate, within);
    if (predicate.kind == Kind::Compare && predicate.op == Op::NotEqual)
        return shared(*all(within) - *matching);
    return matching;
}

RowSet IndexEvaluator::equalOrOrdered(const MDPredicate &predicate, const RowSet &within) const
{
    const QString &name = predicate.attribute;
    if (name == u"kMDItemDisplayName" || name == u"kMDItemFSName")
        return named(m_catalog, predicate, within);
    if (name == u"kMDItemContentType" || name == u"kMDItemContentTypeTree" ||
        name == u"kMDItemKind")
        return typeRows(predicate, within);
    if (name == u"kMDItemTextContent")
        return intersected(contentRows(predicate), within);
    if (name == u"kMDItemSupportFileType")
        return intersected(systemRows(predicate), within);
    if (name == u"kMDItemPath")
        return atPath(m_catalog, predicate, within);
    if (name == u"*") {
        MDPredicate kind = predicate;
        kind.attribute = QStringLiteral("kMDItemKind");
        Roaring out = *named(m_catalog, predicate, within);
        out |= *typeRows(kind, within);
        out |= *withAnyText(m_catalog, predicate, within);
        return shared(std::move(out));
    }
    if (isColumn(name))
        return inColumn(m_catalog, {&predicate}, within);
    return withAttribute(m_catalog, predicate, within);
}

RowSet IndexEvaluator::systemRows(const MDPredicate &predicate) const
{
    static const QString systemFile = QStringLiteral("MDSystemFile");
    const bool asked = predicate.value.type == Type::Present ||
                       accepts(systemFile, predicate, IndexTextPattern(predicate.value));
    return asked ? m_catalog.systemRows() : shared({});
}

// --- Types: few distinct ones, each tested once

static bool acceptsType(const QString &type, const MDPredicate &predicate,
                        const IndexTextPattern &pattern)
{
    if (predicate.attribute == u"kMDItemContentType")
        return accepts(type, predicate, pattern);
    if (predicate.attribute == u"kMDItemKind")
        return accepts(KPFileType::displayNameForUTI(type), predicate, pattern);
    // An exact identifier, the usual case, needs no list of all that the type conforms to.
    if (pattern.shape() == IndexTextPattern::Shape::Whole && pattern.folding() == FoldText::None &&
        IndexComparison::isEquality(predicate))
        return KPContentTypes::conformsTo(type, pattern.literal());
    const QStringList tree = KPContentTypes::typeTree(type);
    return std::any_of(tree.begin(), tree.end(),
                       [&](const QString &text) { return accepts(text, predicate, pattern); });
}

RowSet IndexEvaluator::typesUnited(const MDPredicate &predicate) const
{
    const bool present = predicate.value.type == Type::Present;
    const IndexTextPattern pattern(predicate.value);
    std::vector<const IndexPosting *> matching;
    const std::vector<QString> &types = m_catalog.types();
    for (quint32 number = 1; number < types.size(); ++number) {
        const IndexPosting &posting = m_catalog.rowsOfType(number);
        if (!posting.isEmpty() && (present || acceptsType(types[number], predicate, pattern)))
            matching.push_back(&posting);
    }
    return united(matching);
}

RowSet IndexEvaluator::typeRows(const MDPredicate &predicate, const RowSet &within) const
{
    const IndexTextPattern pattern(predicate.value);
    // An exact identifier in the tree: asked again and again, for images or texts as a whole.
    const bool kept = predicate.attribute == u"kMDItemContentTypeTree" &&
                      IndexComparison::isEquality(predicate) &&
                      pattern.shape() == IndexTextPattern::Shape::Whole &&
                      pattern.folding() == FoldText::None;
    if (!kept)
        return intersected(typesUnited(predicate), within);
    const quint64 version = m_catalog.typesVersion();
    RowSet rows = m_catalog.recentTypes().find(version, pattern.literal());
    if (!rows) {
        rows = typesUnited(predicate);
        m_catalog.recentTypes().remember(version, pattern.literal(), rows);
    }
    return intersected(rows, within);
}

RowSet IndexEvaluator::contentRows(const MDPredicate &predicate) const
{
    std::vector<IndexSlot> slots;
    if (const auto *items = m_texts ? m_texts->answerTo(predicate) : nullptr) {
        slots.reserve(items->size());
        for (const IndexItem item : *items) {
            const IndexSlot slot = m_catalog.slotOf(item);
            if (slot != IndexCatalog::noSlot)
                slots.push_back(slot);
        }
    }
    std::sort(slots.begin(), slots.end());
    return shared(Roaring(slots.size(), slots.data()));
}
