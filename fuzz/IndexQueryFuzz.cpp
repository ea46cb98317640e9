// Query texts come from users, from saved searches and from other programs.
#include "IndexEvaluator.h"
#include "IndexFuzzCatalog.h"
#include "IndexTextExpression.h"
#include "MDQueryParser.h"

#include <cstdlib>

namespace {

// Stands in for the text index: any words, the same for the same question.
class SomeText : public IndexText
{
public:
    std::vector<IndexItem> itemsMatching(const MDPredicate::Value &value, qsizetype,
                                         const std::vector<IndexItem> *) const override
    {
        const IndexTextExpression expression(value);
        std::vector<IndexItem> items;
        for (const auto &phrase : expression.phrases()) {
            const qsizetype pattern = IndexTextExpression::patternIn(phrase);
            const QByteArray match = IndexTextExpression::match(phrase, pattern, "word");
            if (match.isEmpty() || IndexTextExpression::headOf(phrase).contains('"'))
                std::abort();
            for (const QByteArray &word : phrase) {
                if (IndexTextExpression::matches(word, "word"))
                    items.push_back(4);
            }
        }
        return items;
    }
};

} // namespace

static const IndexCatalog &catalog()
{
    static IndexCatalog made;
    static const bool filled = (made.apply(fuzzBatch()), true);
    (void)filled;
    return made;
}

static void requireConsistent(const MDPredicatePtr &predicate, size_t seed)
{
    const SomeText text;
    const IndexTextAnswers texts = IndexTextAnswers::ask(*predicate, &text);
    const IndexEvaluator evaluator(catalog(), &texts);
    const Roaring all = *evaluator.rows(predicate);
    // Of some rows only, it finds those that it finds of all.
    Roaring some;
    for (const quint32 slot : catalog().alive().rows()) {
        if ((seed >> (slot % 23)) & 1)
            some.add(slot);
    }
    const Roaring found = *evaluator.rows(predicate, std::make_shared<const Roaring>(some));
    if (found != (all & some))
        std::abort();
    MDPredicate negated;
    negated.kind = MDPredicate::Kind::Not;
    negated.children = {predicate};
    if (*evaluator.rows(negated) != catalog().alive().rows() - all)
        std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto *chars = reinterpret_cast<const char *>(data);
    // UTF-8 as a rule; behind a zero byte any code units, lone surrogates among them.
    const QString text =
        size > 0 && data[0] == 0
            ? QString(reinterpret_cast<const QChar *>(
                          QByteArray(chars, static_cast<qsizetype>(size)).constData()),
                      static_cast<qsizetype>(size / 2))
            : QString::fromUtf8(chars, static_cast<qsizetype>(size));
    const auto predicate = MDQueryParser::parse(text, 1'700'000'000.5);
    if (predicate) {
        requireConsistent(*predicate, qHash(text));
    } else {
        const XPError &error = predicate.error();
        if (error.message.isEmpty() || error.offset.value_or(-1) < 0 || error.offset > text.size())
            std::abort();
    }
    return 0;
}
