#pragma once

#include <QStringList>
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

// The conditions that say together what both lists say, without those that follow from another.
// One that is none of the three stays: the index may understand it. Nothing: no rating fulfils
// all.
std::optional<QStringList> join(const QStringList &conditions, const QStringList &others);
// Of those that can be read.
std::optional<Bounds> commonBounds(const QStringList &conditions);

} // namespace KPStarCondition
