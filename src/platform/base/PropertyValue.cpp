#include "PropertyValue.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>
#include <limits>

// Between the epochs of Unix and of property lists.
static constexpr double secondsFrom1970To2001 = 978307200;

PropertyValue::Date PropertyValue::Date::now()
{
    return fromSecondsSince1970(static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000);
}

PropertyValue::Date PropertyValue::Date::fromSecondsSince1970(double seconds)
{
    return {seconds - secondsFrom1970To2001};
}

double PropertyValue::Date::secondsSince1970() const
{
    return secondsSince2001 + secondsFrom1970To2001;
}

PropertyValue::PropertyValue(const QStringList &value) : m_value(Array(value.begin(), value.end()))
{
}

PropertyValue PropertyValue::boolean(bool value)
{
    PropertyValue result;
    result.m_value = value;
    return result;
}

PropertyValue PropertyValue::integer(qint64 value)
{
    PropertyValue result;
    result.m_value = value;
    return result;
}

PropertyValue PropertyValue::real(double value)
{
    PropertyValue result;
    result.m_value = value;
    return result;
}

bool PropertyValue::isArrayOfStrings() const
{
    return isArray() &&
           std::all_of(array().begin(), array().end(),
                       [](const PropertyValue &element) { return element.isString(); });
}

template <typename T, typename Variant>
static const T &valueOrEmpty(const Variant &variant)
{
    static const T empty;
    const T *value = std::get_if<T>(&variant);
    return value ? *value : empty;
}

const QString &PropertyValue::string() const
{
    return valueOrEmpty<QString>(m_value);
}

const QByteArray &PropertyValue::data() const
{
    return valueOrEmpty<QByteArray>(m_value);
}

const PropertyValue::Array &PropertyValue::array() const
{
    return valueOrEmpty<Array>(m_value);
}

const PropertyValue::Dictionary &PropertyValue::dictionary() const
{
    return valueOrEmpty<Dictionary>(m_value);
}

PropertyValue::Date PropertyValue::date() const
{
    return valueOrEmpty<Date>(m_value);
}

static qint64 clampedInteger(double value)
{
    // 2^63 itself is a double; the largest integer below it is none.
    constexpr double limit = 9223372036854775808.0;
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<qint64>::max();
    if (value < -limit)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(value);
}

qint64 PropertyValue::integerValue() const
{
    switch (kind()) {
    case Kind::Bool:
        return std::get<bool>(m_value) ? 1 : 0;
    case Kind::Integer:
        return std::get<qint64>(m_value);
    case Kind::Real:
        return clampedInteger(std::get<double>(m_value));
    default:
        return 0;
    }
}

QStringList PropertyValue::strings() const
{
    QStringList result;
    result.reserve(array().size());
    for (const PropertyValue &element : array()) {
        if (element.isString())
            result.append(element.string());
    }
    return result;
}

bool PropertyValue::boolValue(bool fallback) const
{
    switch (kind()) {
    case Kind::Bool:
        return std::get<bool>(m_value);
    case Kind::Integer:
        return std::get<qint64>(m_value) != 0;
    case Kind::Real:
        return std::get<double>(m_value) != 0;
    default:
        return fallback;
    }
}

double PropertyValue::doubleValue(double fallback) const
{
    switch (kind()) {
    case Kind::Bool:
        return std::get<bool>(m_value) ? 1 : 0;
    case Kind::Integer:
        return static_cast<double>(std::get<qint64>(m_value));
    case Kind::Real:
        return std::get<double>(m_value);
    default:
        return fallback;
    }
}

static bool sameDouble(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool PropertyValue::operator==(const PropertyValue &other) const
{
    if (kind() != other.kind())
        return false;
    if (kind() == Kind::Real)
        return sameDouble(std::get<double>(m_value), std::get<double>(other.m_value));
    if (kind() == Kind::Date)
        return sameDouble(date().secondsSince2001, other.date().secondsSince2001);
    return m_value == other.m_value;
}
