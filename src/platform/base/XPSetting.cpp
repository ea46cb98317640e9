#include "XPSetting.h"

#include <algorithm>

using Value = PropertyValue::Kind;

static bool isNumber(const PropertyValue &value)
{
    return value.kind() == Value::Integer || value.kind() == Value::Real;
}

static bool isPath(const PropertyValue &value)
{
    return (value.isString() && !value.string().isEmpty()) ||
           (value.kind() == Value::Data && !value.data().isEmpty());
}

static bool isColour(const PropertyValue &value)
{
    const PropertyValue::Array &parts = value.array();
    return parts.size() == 4 && std::all_of(parts.begin(), parts.end(), [](const auto &part) {
               return isNumber(part) && part.doubleValue() >= 0 && part.doubleValue() <= 1;
           });
}

static bool isOfKind(XPSetting::Kind kind, const PropertyValue &value)
{
    using Kind = XPSetting::Kind;
    switch (kind) {
    case Kind::Bool:
        return value.kind() == Value::Bool;
    case Kind::Integer:
        return value.kind() == Value::Integer;
    case Kind::Real:
        return isNumber(value);
    case Kind::Text:
    case Kind::Lines:
    case Kind::Key:
        return value.isString();
    case Kind::Colour:
        return isColour(value);
    case Kind::Path:
        return isPath(value);
    case Kind::Paths:
        return value.isArray() && std::all_of(value.array().begin(), value.array().end(), isPath);
    case Kind::Texts:
        return value.isArrayOfStrings();
    case Kind::Data:
        return value.kind() == Value::Data;
    case Kind::List:
        return value.isArray();
    case Kind::Dictionary:
        break;
    }
    return value.isDictionary();
}

PropertyValue XPSetting::Choice::stored() const
{
    if (const int *number = std::get_if<int>(&value))
        return PropertyValue::integer(*number);
    return QString::fromLatin1(std::get<const char *>(value));
}

std::optional<XPError> XPSetting::refusal(const PropertyValue &value) const
{
    const bool isWithin = !hasLimits() || (value.doubleValue(lowest - 1) >= lowest &&
                                           value.doubleValue(highest + 1) <= highest);
    const bool isChoice =
        choices.empty() || std::any_of(choices.begin(), choices.end(), [&](const Choice &choice) {
            return choice.stored() == value;
        });
    if (isOfKind(kind, value) && isWithin && isChoice)
        return {};
    return XPError::make(XPError::Kind::InvalidArgument,
                         QStringLiteral("%1 takes %2").arg(key, expected()));
}

QString XPSetting::expected() const
{
    if (!choices.empty()) {
        QStringList words;
        for (const Choice &choice : choices) {
            const PropertyValue stored = choice.stored();
            words.append(stored.isString() ? stored.string()
                                           : QString::number(stored.integerValue()));
        }
        return QStringLiteral("one of ") + words.join(QStringLiteral(", "));
    }
    const QString within =
        hasLimits() ? QStringLiteral(" from %1 to %2").arg(lowest).arg(highest) : QString();
    switch (kind) {
    case Kind::Bool:
        return QStringLiteral("true or false");
    case Kind::Integer:
        return QStringLiteral("a whole number") + within;
    case Kind::Real:
        return QStringLiteral("a number") + within;
    case Kind::Text:
    case Kind::Lines:
        return QStringLiteral("a text");
    case Kind::Key:
        return QStringLiteral("a key like Ctrl+Alt+M");
    case Kind::Colour:
        return QStringLiteral("four numbers from 0 to 1: red, green, blue and alpha");
    case Kind::Path:
        return QStringLiteral("a path");
    case Kind::Paths:
        return QStringLiteral("paths");
    case Kind::Texts:
        return QStringLiteral("texts");
    case Kind::Data:
    case Kind::List:
    case Kind::Dictionary:
        break;
    }
    return QStringLiteral("what only the program itself puts together");
}

// --- From words

static std::optional<bool> boolOf(const QString &word)
{
    const QString low = word.toLower();
    for (const char *yes : {"true", "yes", "on", "1"}) {
        if (low == QLatin1String(yes))
            return true;
    }
    for (const char *no : {"false", "no", "off", "0"}) {
        if (low == QLatin1String(no))
            return false;
    }
    return {};
}

static PropertyValue numberOf(XPSetting::Kind kind, const QString &word)
{
    bool isNumber = false;
    if (kind == XPSetting::Kind::Integer) {
        const qint64 number = word.toLongLong(&isNumber);
        return isNumber ? PropertyValue::integer(number) : PropertyValue();
    }
    const double number = word.toDouble(&isNumber);
    return isNumber ? PropertyValue::real(number) : PropertyValue();
}

static PropertyValue pathOf(const QString &word)
{
    return word.isValidUtf16() ? PropertyValue(word) : PropertyValue();
}

// A null where one of them is not understood.
static PropertyValue listOf(const QStringList &words, PropertyValue (*one)(const QString &))
{
    PropertyValue::Array list;
    for (const QString &word : words) {
        list.append(one(word));
        if (list.last().isNull())
            return {};
    }
    return list;
}

static PropertyValue valueOf(XPSetting::Kind kind, const QStringList &words)
{
    using Kind = XPSetting::Kind;
    if (kind == Kind::Paths || kind == Kind::Texts)
        return listOf(words, pathOf);
    if (kind == Kind::Colour)
        return listOf(words, [](const QString &word) { return numberOf(Kind::Real, word); });
    if (words.size() != 1)
        return {};
    const QString &word = words.first();
    switch (kind) {
    case Kind::Bool:
        if (const auto on = boolOf(word))
            return PropertyValue::boolean(*on);
        return {};
    case Kind::Integer:
    case Kind::Real:
        return numberOf(kind, word);
    case Kind::Text:
    case Kind::Lines:
    case Kind::Key:
    case Kind::Path:
        return pathOf(word);
    default:
        return {};
    }
}

XPResult<PropertyValue> XPSetting::fromWords(const QStringList &words) const
{
    PropertyValue value = valueOf(kind, words);
    if (const auto error = refusal(value))
        return *error;
    return value;
}
