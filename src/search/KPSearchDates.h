#pragma once

#include <QDateTime>
#include <QStringList>
#include <functional>
#include <optional>

// The date ranges that a search state can name, and what they stand for now.
//
// Days are counted backwards from now, 86400 seconds each; years are calendar years in local
// time, so their days have a fraction. A range that nobody named is spelled "days:START" or
// "days:START:END", in days before now.
// Threads: any.
namespace KPSearchDates {

inline const QString anyDate = QStringLiteral("KPCrumbTrailAnyDate");
inline const QString today = QStringLiteral("KPCrumbTrailToday");
inline const QString yesterday = QStringLiteral("KPCrumbTrailYesterday");
inline const QString last7Days = QStringLiteral("KPCrumbTrailLast7Days");
inline const QString last30Days = QStringLiteral("KPCrumbTrailLast30Days");
inline const QString last365Days = QStringLiteral("KPCrumbTrailLast365Days");
inline const QString thisYear = QStringLiteral("KPCrumbTrailThisYear");
inline const QString lastYear = QStringLiteral("KPCrumbTrailLastYear");
inline const QString yearBeforeLastYear = QStringLiteral("KPCrumbTrailYearBeforeLastYear");
inline const QString olderThanYearBeforeLastYear =
    QStringLiteral("KPCrumbTrailOlderThanYearBeforeLastYear");

// Days before now. No start: no condition. No end: up to now.
struct Range
{
    std::optional<double> start;
    std::optional<double> end;
    bool operator==(const Range &) const = default;
};

// No range for a key that is not known.
Range rangeOf(const QString &key);
QString keyOf(const Range &range); // "days:…"; empty without a start
// What fulfils all of the keys. Where that is nothing, the range has no inside.
Range commonOf(const QStringList &keys);
// All keys, in the order of a menu.
QStringList allKeys();

// The one of two keys that stands for both, as ranges are now. None: neither does, or nothing
// fulfils both.
std::optional<QString> narrow(const QString &key, const QString &other);

// The keys that say together what both lists say, without those that always follow from another:
// where two years meet, what lies within what depends on the day. The first is the narrowest for
// now. None: nothing fulfils both.
std::optional<QStringList> join(const QStringList &keys, const QStringList &others);

// What time it is, in local time.
QDateTime now();
// Another clock, for tests; an empty function is the usual one. When no other thread asks.
void setClock(std::function<QDateTime()> clockToUse);

} // namespace KPSearchDates
