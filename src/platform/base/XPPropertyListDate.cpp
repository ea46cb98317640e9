#include "XPPropertyListDate.h"

#include <chrono>
#include <cmath>

using namespace std::chrono;

static constexpr sys_days epoch = year{2001} / January / 1;

static constexpr double secondsFrom2001To(sys_seconds time)
{
    return static_cast<double>((time - epoch).count());
}

// `pattern`: a 0 stands for any digit, every other character for itself.
static bool matches(QStringView text, QStringView pattern)
{
    if (text.size() != pattern.size())
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool digit = text[i] >= u'0' && text[i] <= u'9';
        if (pattern[i] == u'0' ? !digit : text[i] != pattern[i])
            return false;
    }
    return true;
}

static int number(QStringView text, qsizetype from, qsizetype count)
{
    int result = 0;
    for (const QChar digit : text.sliced(from, count))
        result = result * 10 + (digit.unicode() - u'0');
    return result;
}

// ".25" in front of the final Z; nothing when something else stands there.
static std::optional<double> fraction(QStringView text)
{
    double result = 0;
    double weight = 1;
    for (const QChar digit : text.sliced(1)) {
        if (digit < u'0' || digit > u'9')
            return {};
        weight /= 10;
        result += weight * (digit.unicode() - u'0');
    }
    return result;
}

std::optional<PropertyValue::Date> XPPropertyListDate::fromText(QStringView text)
{
    constexpr qsizetype wholeSize = 19;
    double part = 0;
    if (text.size() > wholeSize + 2 && text[wholeSize] == u'.' && text.endsWith(u'Z')) {
        const auto read = fraction(text.sliced(wholeSize).chopped(1));
        if (!read)
            return {};
        part = *read;
    } else if (text.size() != wholeSize + 1 || !text.endsWith(u'Z')) {
        return {};
    }
    const QStringView whole = text.first(wholeSize);
    if (!matches(whole, u"0000-00-00T00:00:00"))
        return {};
    const year_month_day day{year{number(whole, 0, 4)}, month{unsigned(number(whole, 5, 2))},
                             std::chrono::day{unsigned(number(whole, 8, 2))}};
    const hours hour{number(whole, 11, 2)};
    const minutes minute{number(whole, 14, 2)};
    const seconds second{number(whole, 17, 2)};
    if (!day.ok() || hour >= 24h || minute >= 60min || second >= 60s)
        return {};
    return PropertyValue::Date{secondsFrom2001To(sys_days{day} + hour + minute + second) + part};
}

std::optional<QByteArray> XPPropertyListDate::toText(PropertyValue::Date date)
{
    constexpr sys_seconds first = sys_days{year{0} / January / 1};
    constexpr sys_seconds end = sys_days{year{10000} / January / 1};
    const double whole = std::floor(date.secondsSince2001);
    // Written so that NaN fails too.
    if (!(whole >= secondsFrom2001To(first) && whole < secondsFrom2001To(end)))
        return {};
    const sys_seconds time = epoch + seconds{static_cast<qint64>(whole)};
    const year_month_day day{floor<days>(time)};
    const hh_mm_ss clock{time - floor<days>(time)};
    return QStringLiteral("%1-%2-%3T%4:%5:%6Z")
        .arg(int(day.year()), 4, 10, QLatin1Char('0'))
        .arg(unsigned(day.month()), 2, 10, QLatin1Char('0'))
        .arg(unsigned(day.day()), 2, 10, QLatin1Char('0'))
        .arg(clock.hours().count(), 2, 10, QLatin1Char('0'))
        .arg(clock.minutes().count(), 2, 10, QLatin1Char('0'))
        .arg(clock.seconds().count(), 2, 10, QLatin1Char('0'))
        .toLatin1();
}
