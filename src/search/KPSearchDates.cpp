#include "KPSearchDates.h"

#include <QDateTime>
#include <QStringList>
#include <algorithm>

using namespace KPSearchDates;

namespace {
constexpr double secondsADay = 86400;
constexpr int oldestYears = 100; // what is older than the year before last goes back this far
} // namespace

// Since the start of the year that many years ago.
static double daysSinceYear(int yearsAgo)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime start = QDate(now.date().year() - yearsAgo, 1, 1).startOfDay();
    return static_cast<double>(start.msecsTo(now)) / 1000 / secondsADay;
}

Range KPSearchDates::rangeOf(const QString &key)
{
    if (key == today)
        return {1, {}};
    if (key == yesterday)
        return {2, 1};
    if (key == last7Days)
        return {7, {}};
    if (key == last30Days)
        return {30, {}};
    if (key == last365Days)
        return {365, {}};
    if (key == thisYear)
        return {daysSinceYear(0), {}};
    if (key == lastYear)
        return {daysSinceYear(1), daysSinceYear(0)};
    if (key == yearBeforeLastYear)
        return {daysSinceYear(2), daysSinceYear(1)};
    if (key == olderThanYearBeforeLastYear)
        return {daysSinceYear(oldestYears), daysSinceYear(2)};
    return {};
}

QStringList KPSearchDates::allKeys()
{
    return {anyDate,     today,    yesterday, last7Days,          last30Days,
            last365Days, thisYear, lastYear,  yearBeforeLastYear, olderThanYearBeforeLastYear};
}

static bool isWithin(const Range &inner, const Range &outer)
{
    return *inner.start <= *outer.start && inner.end.value_or(0) >= outer.end.value_or(0);
}

static Narrowed named(const NamedRange &range)
{
    return {range.range.start && range.key.isEmpty() ? Narrowed::Kind::Range : Narrowed::Kind::Key,
            range.range.start ? range.key : QString(), range.range};
}

Narrowed KPSearchDates::narrow(const NamedRange &one, const NamedRange &two)
{
    if (!one.range.start || !two.range.start)
        return named(one.range.start ? one : two);
    // The same moment was counted twice, a little apart, where two years meet: within a second.
    constexpr double instant = 1 / secondsADay;
    const double start = std::min(*one.range.start, *two.range.start);
    const double end = std::max(one.range.end.value_or(0), two.range.end.value_or(0));
    if (start - end < instant)
        return {Narrowed::Kind::None, {}, {}};
    if (isWithin(one.range, two.range) || (one.key == two.key && !one.key.isEmpty()))
        return named(one);
    if (isWithin(two.range, one.range))
        return named(two);
    return {Narrowed::Kind::Range, {}, {start, end > 0 ? std::optional(end) : std::nullopt}};
}
