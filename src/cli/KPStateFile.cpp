#include "KPStateFile.h"

#include "KPCommandOutput.h"
#include "XPAtomicFile.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <cmath>

// Room for a list of some hundred thousand files.
static constexpr XPPropertyList::Limits limits = {64 << 20, 64, 1'000'000};

// --- Reading

// NOLINTNEXTLINE(misc-no-recursion): the reader of JSON limits the depth
static PropertyValue valueOf(const QJsonValue &json)
{
    switch (json.type()) {
    case QJsonValue::Bool:
        return PropertyValue::boolean(json.toBool());
    case QJsonValue::Double: {
        const QVariant number = json.toVariant();
        return number.typeId() == QMetaType::LongLong ? PropertyValue::integer(number.toLongLong())
                                                      : PropertyValue::real(number.toDouble());
    }
    case QJsonValue::String:
        return json.toString();
    case QJsonValue::Array: {
        PropertyValue::Array array;
        for (const auto &element : json.toArray())
            array.append(valueOf(element));
        return array;
    }
    case QJsonValue::Object: {
        PropertyValue::Dictionary dictionary;
        const QJsonObject object = json.toObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            dictionary.insert(entry.key(), valueOf(entry.value()));
        return dictionary;
    }
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return {};
}

static XPResult<PropertyValue> readJson(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return XPError::malformed(QStringLiteral("no valid JSON after %1 bytes: %2")
                                      .arg(error.offset)
                                      .arg(error.errorString()));
    return valueOf(document.object());
}

static XPResult<PropertyValue> decode(const QByteArray &bytes)
{
    const QByteArray byteOrderMark("\xEF\xBB\xBF");
    const QByteArray text =
        bytes.mid(bytes.startsWith(byteOrderMark) ? byteOrderMark.size() : 0).trimmed();
    if (text.startsWith('{'))
        return readJson(text);
    if (text.startsWith('<') || bytes.startsWith("bplist"))
        return XPPropertyList::read(bytes, limits);
    return XPError::malformed(QStringLiteral("neither a JSON object nor a property list"));
}

XPResult<KPSearchState::Ptr> KPStateFile::read(const QString &path)
{
    const auto bytes = XPAtomicFile::read(path, limits.bytes);
    if (!bytes)
        return bytes.error();
    const auto value = decode(*bytes);
    if (!value)
        return value.error();
    if (!value->isDictionary())
        return XPError::malformed(QStringLiteral("no search state, as it is no dictionary"));
    return KPSearchState::searchStateWithDictionary(value->dictionary());
}

// --- Writing

static QByteArray numberJson(double number)
{
    return std::isfinite(number) ? QByteArray::number(number, 'g', QLocale::FloatingPointShortest)
                                 : QByteArray("null");
}

static QByteArrayList entriesJson(const PropertyValue::Dictionary &dictionary)
{
    QByteArrayList entries;
    for (auto entry = dictionary.cbegin(); entry != dictionary.cend(); ++entry)
        entries.append(KPCommandOutput::json(entry.key()) + ": " +
                       KPStateFile::json(entry.value()));
    return entries;
}

// NOLINTNEXTLINE(misc-no-recursion): a property list's depth is limited
QByteArray KPStateFile::json(const PropertyValue &value)
{
    switch (value.kind()) {
    case PropertyValue::Kind::Null:
        break;
    case PropertyValue::Kind::Bool:
        return value.boolValue() ? "true" : "false";
    case PropertyValue::Kind::Integer:
        return QByteArray::number(value.integerValue());
    case PropertyValue::Kind::Real:
        return numberJson(value.doubleValue());
    case PropertyValue::Kind::Date: {
        const double ms = value.date().secondsSince1970() * 1000;
        return KPCommandOutput::json(
            QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(ms), Qt::UTC)
                .toString(Qt::ISODateWithMs));
    }
    case PropertyValue::Kind::Data:
        return KPCommandOutput::json(XPPath::decode(value.data()));
    case PropertyValue::Kind::String:
        return KPCommandOutput::json(value.string());
    case PropertyValue::Kind::Array: {
        QByteArrayList elements;
        for (const PropertyValue &element : value.array())
            elements.append(KPStateFile::json(element));
        return '[' + elements.join(", ") + ']';
    }
    case PropertyValue::Kind::Dictionary:
        return '{' + entriesJson(value.dictionary()).join(", ") + '}';
    }
    return "null";
}

QByteArray KPStateFile::json(const KPSearchState &state)
{
    const QByteArrayList entries = entriesJson(state.searchStateDictionary());
    return entries.isEmpty() ? QByteArray("{}\n") : "{\n  " + entries.join(",\n  ") + "\n}\n";
}
