#pragma once

#include "IndexTextPattern.h"
#include "MDPredicate.h"

#include <limits>

// What a comparison of a query asks of a number and of a text.
namespace IndexComparison {

inline constexpr double infinity = std::numeric_limits<double>::infinity();

// low <= n <= high.
struct Interval
{
    double low = -infinity;
    double high = infinity;
    bool isEmpty() const { return !(low <= high); }
    bool holds(double number) const { return number >= low && number <= high; }
};

// Empty where the value is no number.
Interval intervalOf(const MDPredicate &predicate);

// == and !=, whose text is a pattern; the others compare the order of texts.
bool isEquality(const MDPredicate &predicate);
// Whether a text satisfies it; `pattern` is made from the predicate's value. != as ==.
bool accepts(const QString &text, const MDPredicate &predicate, const IndexTextPattern &pattern);

} // namespace IndexComparison
