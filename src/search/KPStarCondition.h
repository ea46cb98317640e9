#pragma once

#include <QString>
#include <optional>

// A condition on the star rating as a search state stores it: "!= *" (unrated), ">= N", "<= N".
// It is the right side of a comparison in the index's query language.
// Threads: any.
namespace KPStarCondition {

// The ratings that fulfil it, ends included; an unrated document counts as 0.
struct Bounds
{
    double lower = 0;
    double upper = 0;
    bool operator==(const Bounds &) const = default;
};

inline constexpr double noUpperBound = 1e9;

// Nothing for a text that is none of the three; that and an empty text set no condition.
std::optional<Bounds> bounds(const QString &condition);

// What fulfils both; of two that overlap without one holding the other, the second. Nothing: no
// rating can.
std::optional<QString> narrow(const QString &condition, const QString &other);

} // namespace KPStarCondition
