#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <utility>
#include <variant>

// A property-list value: what an extended attribute or a setting holds.
//
// Strict about kinds in storage and equality: a boolean is no number, an integer no real. Other
// writers mix them, so boolValue() and doubleValue() read all three alike. A null is "nothing":
// it is never stored. Dictionaries are ordered by key, so equal values serialise to equal bytes.
// Threads: a value; copies share their storage.
class PropertyValue
{
public:
    enum class Kind { Null, Bool, Integer, Real, Date, Data, String, Array, Dictionary };

    // Seconds since 2001-01-01T00:00:00Z (the epoch of property lists), unrounded.
    struct Date
    {
        double secondsSince2001 = 0;

        static Date now();
        static Date fromSecondsSince1970(double seconds);
        double secondsSince1970() const;
        bool operator==(const Date &) const = default;
    };

    using Array = QList<PropertyValue>;
    using Dictionary = QMap<QString, PropertyValue>;

    PropertyValue() = default;
    // NOLINTBEGIN(google-explicit-constructor): a value stands for what it holds
    PropertyValue(Date value) : m_value(value) {}
    PropertyValue(const QByteArray &value) : m_value(value) {}
    PropertyValue(QByteArray &&value) : m_value(std::move(value)) {}
    PropertyValue(const QString &value) : m_value(value) {}
    PropertyValue(QString &&value) : m_value(std::move(value)) {}
    PropertyValue(const Array &value) : m_value(value) {}
    PropertyValue(Array &&value) : m_value(std::move(value)) {}
    PropertyValue(const Dictionary &value) : m_value(value) {}
    PropertyValue(Dictionary &&value) : m_value(std::move(value)) {}
    PropertyValue(const QStringList &value); // an array of strings
    // NOLINTEND(google-explicit-constructor)
    // Named, as numbers and booleans convert into each other behind one's back.
    static PropertyValue boolean(bool value);
    static PropertyValue integer(qint64 value);
    static PropertyValue real(double value);

    Kind kind() const { return static_cast<Kind>(m_value.index()); }
    bool isNull() const { return kind() == Kind::Null; }
    bool isString() const { return kind() == Kind::String; }
    bool isArray() const { return kind() == Kind::Array; }
    bool isDictionary() const { return kind() == Kind::Dictionary; }
    bool isArrayOfStrings() const; // an empty array is one

    // The value when it is of that kind, else the empty one.
    const QString &string() const;
    const QByteArray &data() const;
    const Array &array() const;
    const Dictionary &dictionary() const;
    qint64 integerValue() const; // a real is cut towards zero and clamped
    Date date() const;
    QStringList strings() const; // the strings of an array, other elements dropped

    // Boolean, integer and real alike; `fallback` for every other kind.
    bool boolValue(bool fallback = false) const;
    double doubleValue(double fallback = 0) const;

    // Exact: kinds differ, values differ. NaN equals NaN here, so that a value equals its copy.
    bool operator==(const PropertyValue &other) const;

private:
    std::variant<std::monostate, bool, qint64, double, Date, QByteArray, QString, Array, Dictionary>
        m_value;
};

// Lets a list of values grow by copying bytes; no alternative points into itself.
Q_DECLARE_TYPEINFO(PropertyValue, Q_RELOCATABLE_TYPE);
