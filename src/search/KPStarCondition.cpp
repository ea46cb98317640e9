#include "KPStarCondition.h"

#include <algorithm>

std::optional<KPStarCondition::Bounds> KPStarCondition::bounds(const QString &condition)
{
    const QString text = condition.trimmed();
    if (text.startsWith(u"!=") && text.mid(2).trimmed() == u"*")
        return Bounds{0, 0};
    bool isNumber = false;
    const double stars = text.mid(2).trimmed().toDouble(&isNumber);
    if (isNumber && text.startsWith(u">="))
        return Bounds{stars, noUpperBound};
    if (isNumber && text.startsWith(u"<="))
        return Bounds{0, stars};
    return {};
}

std::optional<KPStarCondition::Bounds> KPStarCondition::commonBounds(const QStringList &conditions)
{
    std::optional<Bounds> common;
    for (const QString &condition : conditions) {
        const auto each = bounds(condition);
        if (each && common)
            common =
                Bounds{std::max(common->lower, each->lower), std::min(common->upper, each->upper)};
        else if (each)
            common = each;
    }
    return common;
}

// Both of one kind, for the index takes "unrated" for something else than no stars.
static bool followsFrom(const QString &condition, const QString &other)
{
    const auto one = KPStarCondition::bounds(condition);
    const auto two = KPStarCondition::bounds(other);
    return one && two && condition.trimmed().left(2) == other.trimmed().left(2) &&
           one->lower <= two->lower && one->upper >= two->upper;
}

std::optional<QStringList> KPStarCondition::join(const QStringList &conditions,
                                                 const QStringList &others)
{
    QStringList all = conditions + others;
    all.removeDuplicates();
    all.removeAll(QString());
    const auto common = commonBounds(all);
    if (common && common->lower > common->upper)
        return {};
    std::sort(all.begin(), all.end());
    QStringList needed;
    for (const QString &condition : all) {
        const auto makesNeedless = [&](const QString &other) {
            return other != condition && followsFrom(condition, other) &&
                   (!followsFrom(other, condition) || other < condition);
        };
        if (std::none_of(all.begin(), all.end(), makesNeedless))
            needed.append(condition);
    }
    return needed;
}
