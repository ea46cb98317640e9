#include "KPSearchDates.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

using namespace KPSearchDates;

namespace {
constexpr double secondsADay = 86400;
constexpr int oldestYears = 100; // what is older than the year before last goes back this far
const QString daysPrefix = QStringLiteral("days:");
} // namespace

// --- The clock

static std::function<QDateTime()> &installedClock()
{
    static std::function<QDateTime()> installed;
    return installed;
}

QDateTime KPSearchDates::now()
{
    return installedClock() ? installedClock()() : QDateTime::currentDateTime();
}

void KPSearchDates::setClock(std::function<QDateTime()> clockToUse)
{
    installedClock() = std::move(clockToUse);
}

// --- Ranges

// Since the start of the year that many years ago.
static double daysSinceYear(int yearsAgo)
{
    const QDateTime now = KPSearchDates::now();
    const QDateTime start = QDate(now.date().year() - yearsAgo, 1, 1).startOfDay();
    return static_cast<double>(start.msecsTo(now)) / 1000 / secondsADay;
}

static Range rangeOfDays(const QString &key)
{
    const QStringList numbers = key.mid(daysPrefix.size()).split(u':');
    bool isStart = false;
    bool isEnd = false;
    const double start = numbers.value(0).toDouble(&isStart);
    const double end = numbers.value(1).toDouble(&isEnd);
    if (!isStart || !std::isfinite(start))
        return {};
    return {start, isEnd && std::isfinite(end) ? std::optional(end) : std::nullopt};
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
    return key.startsWith(daysPrefix) ? rangeOfDays(key) : Range();
}

QString KPSearchDates::keyOf(const Range &range)
{
    const auto text = [](double days) {
        return QString::number(days, 'g', QLocale::FloatingPointShortest);
    };
    if (!range.start)
        return {};
    return daysPrefix + text(*range.start) + (range.end ? u':' + text(*range.end) : QString());
}

QStringList KPSearchDates::allKeys()
{
    return {anyDate,     today,    yesterday, last7Days,          last30Days,
            last365Days, thisYear, lastYear,  yearBeforeLastYear, olderThanYearBeforeLastYear};
}

// --- Several at once

Range KPSearchDates::commonOf(const QStringList &keys)
{
    Range common;
    for (const QString &key : keys) {
        const Range range = rangeOf(key);
        if (!range.start)
            continue;
        common.start = common.start ? std::min(*common.start, *range.start) : *range.start;
        if (range.end)
            common.end = common.end ? std::max(*common.end, *range.end) : *range.end;
    }
    return common;
}

static bool isWithin(const Range &inner, const Range &outer)
{
    return *inner.start <= *outer.start && inner.end.value_or(0) >= outer.end.value_or(0);
}

static double lengthOf(const Range &range)
{
    return *range.start - range.end.value_or(0);
}

// The same moment may be counted twice, a little apart, where two years meet: within a second.
static bool hasInside(const Range &range)
{
    constexpr double instant = 1 / secondsADay;
    return !range.start || lengthOf(range) >= instant;
}

std::optional<QString> KPSearchDates::narrow(const QString &key, const QString &other)
{
    const Range one = rangeOf(key);
    const Range two = rangeOf(other);
    if (!one.start || !two.start)
        return one.start ? key : two.start ? other : QString();
    if (key == other || isWithin(one, two))
        return key;
    return isWithin(two, one) ? std::optional(other) : std::nullopt;
}

static bool isOfYears(const QString &key)
{
    return key == thisYear || key == lastYear || key == yearBeforeLastYear ||
           key == olderThanYearBeforeLastYear;
}

// Whatever the day is.
static bool isAlwaysWithin(const QString &key, const QString &other)
{
    return key == other ||
           (!isOfYears(key) && !isOfYears(other) && isWithin(rangeOf(key), rangeOf(other)));
}

std::optional<QStringList> KPSearchDates::join(const QStringList &keys, const QStringList &others)
{
    QStringList all;
    for (const QString &key : keys + others) {
        if (rangeOf(key).start && !all.contains(key))
            all.append(key);
    }
    if (!hasInside(commonOf(all)))
        return {};
    std::sort(all.begin(), all.end());
    QStringList needed;
    for (const QString &key : all) {
        const auto makesNeedless = [&](const QString &other) {
            // Of two spellings of one range the first stays.
            return other != key && isAlwaysWithin(other, key) &&
                   (!isAlwaysWithin(key, other) || other < key);
        };
        if (std::none_of(all.begin(), all.end(), makesNeedless))
            needed.append(key);
    }
    std::stable_sort(needed.begin(), needed.end(), [](const QString &a, const QString &b) {
        return lengthOf(rangeOf(a)) < lengthOf(rangeOf(b));
    });
    return needed;
}
