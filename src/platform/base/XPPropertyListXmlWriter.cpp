#include "XPPropertyList.h"
#include "XPPropertyListDate.h"
#include "XPPropertyListXmlText.h"

namespace {

class XmlWriter
{
public:
    explicit XmlWriter(const XPPropertyList::Limits &limits) : m_limits(limits) {}

    XPResult<QByteArray> write(const PropertyValue &value);

private:
    bool writeValue(const PropertyValue &value, int depth);
    bool writeText(const char *element, const QString &text, int depth);
    bool writeDate(PropertyValue::Date date, int depth);
    bool writeArray(const PropertyValue::Array &array, int depth);
    bool writeDictionary(const PropertyValue::Dictionary &dictionary, int depth);
    bool writeElement(const char *element, const QByteArray &text, int depth);
    bool writeLine(QByteArrayView line, int depth);
    bool fail(XPError::Kind kind, const char *message);

    const XPPropertyList::Limits m_limits;
    QByteArray m_output;
    qsizetype m_values = 0;
    std::optional<XPError> m_error;
};

XPResult<QByteArray> XmlWriter::write(const PropertyValue &value)
{
    m_output = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
               "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
               "<plist version=\"1.0\">\n";
    if (!writeValue(value, 0) || !writeLine("</plist>", 0))
        return *std::move(m_error);
    return m_output;
}

bool XmlWriter::writeValue(const PropertyValue &value, int depth)
{
    if (++m_values > m_limits.objects)
        return fail(XPError::Kind::TooLarge, "Too many values");
    switch (value.kind()) {
    case PropertyValue::Kind::Null:
        return fail(XPError::Kind::InvalidArgument, "Nothing cannot be stored in a property list");
    case PropertyValue::Kind::Bool:
        return writeLine(value.boolValue() ? "<true/>" : "<false/>", depth);
    case PropertyValue::Kind::Integer:
        return writeElement("integer", QByteArray::number(value.integerValue()), depth);
    case PropertyValue::Kind::Real:
        return writeElement("real", XPPropertyListXmlText::fromReal(value.doubleValue()), depth);
    case PropertyValue::Kind::Date:
        return writeDate(value.date(), depth);
    case PropertyValue::Kind::Data:
        return writeElement("data", value.data().toBase64(), depth);
    case PropertyValue::Kind::String:
        return writeText("string", value.string(), depth);
    case PropertyValue::Kind::Array:
        return writeArray(value.array(), depth);
    case PropertyValue::Kind::Dictionary:
        return writeDictionary(value.dictionary(), depth);
    }
    Q_UNREACHABLE();
}

bool XmlWriter::writeText(const char *element, const QString &text, int depth)
{
    if (!XPPropertyListXmlText::isRepresentable(text))
        return fail(XPError::Kind::InvalidArgument, "A text with characters that XML cannot hold");
    QByteArray escaped;
    XPPropertyListXmlText::appendEscaped(escaped, text);
    return writeElement(element, escaped, depth);
}

bool XmlWriter::writeDate(PropertyValue::Date date, int depth)
{
    const auto text = XPPropertyListDate::toText(date);
    if (!text)
        return fail(XPError::Kind::InvalidArgument, "A date outside the years 0 to 9999");
    return writeElement("date", *text, depth);
}

bool XmlWriter::writeArray(const PropertyValue::Array &array, int depth)
{
    if (depth >= m_limits.depth)
        return fail(XPError::Kind::InvalidArgument, "Containers are nested too deeply");
    if (array.isEmpty())
        return writeLine("<array/>", depth);
    if (!writeLine("<array>", depth))
        return false;
    for (const PropertyValue &element : array) {
        if (!writeValue(element, depth + 1))
            return false;
    }
    return writeLine("</array>", depth);
}

bool XmlWriter::writeDictionary(const PropertyValue::Dictionary &dictionary, int depth)
{
    if (depth >= m_limits.depth)
        return fail(XPError::Kind::InvalidArgument, "Containers are nested too deeply");
    if (dictionary.isEmpty())
        return writeLine("<dict/>", depth);
    if (!writeLine("<dict>", depth))
        return false;
    for (auto it = dictionary.begin(); it != dictionary.end(); ++it) {
        if (!writeText("key", it.key(), depth + 1) || !writeValue(it.value(), depth + 1))
            return false;
    }
    return writeLine("</dict>", depth);
}

bool XmlWriter::writeElement(const char *element, const QByteArray &text, int depth)
{
    const QByteArray name(element);
    return writeLine('<' + name + '>' + text + "</" + name + '>', depth);
}

bool XmlWriter::writeLine(QByteArrayView line, int depth)
{
    m_output.append(depth, '\t').append(line).append('\n');
    return m_output.size() <= m_limits.bytes ||
           fail(XPError::Kind::TooLarge, "The property list is too long");
}

bool XmlWriter::fail(XPError::Kind kind, const char *message)
{
    m_error = XPError::make(kind, QString::fromLatin1(message));
    return false;
}

} // namespace

XPResult<QByteArray> XPPropertyList::writeXml(const PropertyValue &value, const Limits &limits)
{
    return XmlWriter(limits).write(value);
}
