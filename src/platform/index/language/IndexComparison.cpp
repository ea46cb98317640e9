#include "IndexComparison.h"

#include <cmath>

namespace IndexComparison {

using Kind = MDPredicate::Kind;
using Op = MDPredicate::Op;
using Value = MDPredicate::Value;

static std::optional<double> numberOf(const Value &value)
{
    if (value.type == Value::Type::Number)
        return value.number;
    bool ok = false;
    const double number = value.text.toDouble(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

Interval intervalOf(const MDPredicate &predicate)
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

bool isEquality(const MDPredicate &predicate)
{
    return predicate.kind == Kind::Compare &&
           (predicate.op == Op::Equal || predicate.op == Op::NotEqual);
}

bool accepts(const QString &text, const MDPredicate &predicate, const IndexTextPattern &pattern)
{
    const QString left = foldText(text, pattern.folding());
    if (isEquality(predicate))
        return pattern.matchesFolded(left);
    const int order = left.compare(foldText(predicate.value.text, pattern.folding()));
    if (predicate.kind == Kind::InRange)
        return order >= 0 && left.compare(foldText(predicate.high.text, pattern.folding())) <= 0;
    switch (predicate.op) {
    case Op::Less:
        return order < 0;
    case Op::LessOrEqual:
        return order <= 0;
    case Op::Greater:
        return order > 0;
    default:
        return order >= 0;
    }
}

} // namespace IndexComparison
