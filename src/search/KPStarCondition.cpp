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

std::optional<QString> KPStarCondition::narrow(const QString &condition, const QString &other)
{
    const auto one = bounds(condition);
    const auto two = bounds(other);
    if (!one || !two)
        return one ? condition : other;
    if (std::max(one->lower, two->lower) > std::min(one->upper, two->upper))
        return {};
    const bool isOneWithin = one->lower >= two->lower && one->upper <= two->upper;
    return isOneWithin ? condition : other;
}
