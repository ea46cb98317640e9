#pragma once

#include <QStringList>
#include <optional>

// The date ranges that a search state can name, and what they stand for now.
//
// Days are counted backwards from now, 86400 seconds each; years are calendar years in local
// time, so their days have a fraction.
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
// All keys, in the order of a menu.
QStringList allKeys();

// A range with the key that stands for it, where there is one.
struct NamedRange
{
    QString key;
    Range range;
};

// What fulfils both.
struct Narrowed
{
    enum class Kind {
        Key,   // one key says it; an empty one: no condition
        Range, // no key does: `range`
        None,  // nothing can
    };
    Kind kind = Kind::Key;
    QString key;
    Range range;
};
Narrowed narrow(const NamedRange &one, const NamedRange &two);

} // namespace KPSearchDates
