#include "XPPropertyList.h"
#include "XPPropertyListDate.h"
#include "XPPropertyListXmlText.h"

#include <QStringDecoder>
#include <QXmlStreamReader>
#include <algorithm>

namespace {

class XmlReader
{
public:
    XmlReader(QByteArrayView bytes, const XPPropertyList::Limits &limits)
        : m_bytes(bytes), m_limits(limits)
    {
    }

    XPResult<PropertyValue> read();

private:
    bool decode();
    bool readDocument(PropertyValue &value);
    bool nextTag();
    bool readText(QString &text);
    bool readEmpty();
    bool readValue(PropertyValue &value, int depth);
    bool readArray(PropertyValue &value, int depth);
    bool readDictionary(PropertyValue &value, int depth);
    bool readScalar(PropertyValue &value);

    bool malformed(const QString &message);
    bool tooLarge(const char *message);
    qsizetype byteOffset(qsizetype unit) const;

    const QByteArrayView m_bytes;
    const XPPropertyList::Limits m_limits;
    qsizetype m_bytesAUnit = 0; // of m_text, in the input; 0: UTF-8
    QString m_text;
    QXmlStreamReader m_xml;
    qsizetype m_values = 0;
    std::optional<XPError> m_error;
};

XPResult<PropertyValue> XmlReader::read()
{
    PropertyValue value;
    if (!decode() || !readDocument(value))
        return *std::move(m_error);
    return value;
}

// Decoded here and not by the XML parser, so that the check of the markup and the parser see the
// same characters. Writers use UTF-8; UTF-16 and UTF-32 are known by their first bytes.
bool XmlReader::decode()
{
    if (m_bytes.size() > m_limits.bytes)
        return tooLarge("The property list is too long");
    const auto encoding =
        QStringConverter::encodingForData(m_bytes, u'<').value_or(QStringConverter::Utf8);
    switch (encoding) {
    case QStringConverter::Utf8:
        break;
    case QStringConverter::Utf32:
    case QStringConverter::Utf32BE:
    case QStringConverter::Utf32LE:
        m_bytesAUnit = 4;
        break;
    default:
        m_bytesAUnit = 2;
    }
    QStringDecoder decoder(encoding);
    m_text = decoder(m_bytes);
    if (decoder.hasError()) {
        m_error = XPError::malformed(QStringLiteral("Text in another encoding than it says"),
                                     byteOffset(m_text.indexOf(QChar::ReplacementCharacter)));
        return false;
    }
    if (const auto offset = XPPropertyListXmlText::unsuitableMarkup(m_text)) {
        m_error = XPError::malformed(QStringLiteral("Markup that property lists do not have"),
                                     byteOffset(*offset));
        return false;
    }
    m_xml.setNamespaceProcessing(false);
    m_xml.addData(m_text);
    return true;
}

bool XmlReader::readDocument(PropertyValue &value)
{
    if (!nextTag())
        return false;
    if (m_xml.qualifiedName() != u"plist")
        return malformed(QStringLiteral("Not an XML property list"));
    if (!nextTag())
        return false;
    if (!m_xml.isStartElement())
        return malformed(QStringLiteral("A property list without a value"));
    if (!readValue(value, 0) || !nextTag())
        return false;
    if (!m_xml.isEndElement())
        return malformed(QStringLiteral("A property list with several values"));
    while (!m_xml.atEnd())
        m_xml.readNext();
    return !m_xml.hasError() || malformed({});
}

static bool isKnownEncoding(QStringView name)
{
    constexpr auto anyCase = Qt::CaseInsensitive;
    return name.isEmpty() || name.startsWith(u"UTF-", anyCase) ||
           name.compare(u"US-ASCII", anyCase) == 0;
}

// Goes to the next start or end of an element; text between elements is blank.
bool XmlReader::nextTag()
{
    for (;;) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::StartElement:
        case QXmlStreamReader::EndElement:
            return true;
        case QXmlStreamReader::StartDocument:
            if (!isKnownEncoding(m_xml.documentEncoding()))
                return malformed(QStringLiteral("An encoding that is not supported"));
            break;
        case QXmlStreamReader::Characters:
            if (!m_xml.isWhitespace())
                return malformed(QStringLiteral("Text outside of a value"));
            break;
        case QXmlStreamReader::Comment:
        case QXmlStreamReader::ProcessingInstruction:
        case QXmlStreamReader::DTD:
            break;
        default:
            return malformed(QStringLiteral("The property list is cut off"));
        }
    }
}

// Reads up to the end of the current element, which holds nothing but text.
bool XmlReader::readText(QString &text)
{
    for (;;) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::EndElement:
            return true;
        case QXmlStreamReader::Characters:
            text += m_xml.text();
            break;
        case QXmlStreamReader::Comment:
        case QXmlStreamReader::ProcessingInstruction:
            break;
        default:
            return malformed(QStringLiteral("A value that holds more than text"));
        }
    }
}

bool XmlReader::readEmpty()
{
    return nextTag() &&
           (m_xml.isEndElement() || malformed(QStringLiteral("A truth value holds elements")));
}

bool XmlReader::readValue(PropertyValue &value, int depth)
{
    if (++m_values > m_limits.objects)
        return tooLarge("Too many values");
    const QStringView name = m_xml.qualifiedName();
    const bool isArray = name == u"array";
    if (isArray || name == u"dict") {
        if (depth >= m_limits.depth)
            return tooLarge("Containers are nested too deeply");
        return isArray ? readArray(value, depth) : readDictionary(value, depth);
    }
    if (name == u"true" || name == u"false") {
        value = PropertyValue::boolean(name == u"true");
        return readEmpty();
    }
    return readScalar(value);
}

bool XmlReader::readArray(PropertyValue &value, int depth)
{
    PropertyValue::Array array;
    for (;;) {
        if (!nextTag())
            return false;
        if (m_xml.isEndElement())
            break;
        array.emplace_back();
        if (!readValue(array.back(), depth + 1))
            return false;
    }
    value = array;
    return true;
}

bool XmlReader::readDictionary(PropertyValue &value, int depth)
{
    PropertyValue::Dictionary dictionary;
    for (;;) {
        if (!nextTag())
            return false;
        if (m_xml.isEndElement())
            break;
        QString key;
        if (m_xml.qualifiedName() != u"key")
            return malformed(QStringLiteral("A dictionary value without a key"));
        if (!readText(key))
            return false;
        if (dictionary.contains(key))
            return malformed(QStringLiteral("A dictionary key appears twice"));
        if (!nextTag())
            return false;
        if (!m_xml.isStartElement())
            return malformed(QStringLiteral("A dictionary key without a value"));
        if (!readValue(*dictionary.insert(key, {}), depth + 1))
            return false;
    }
    value = dictionary;
    return true;
}

bool XmlReader::readScalar(PropertyValue &value)
{
    // The name is gone once the text is read.
    const auto convert = XPPropertyListXmlText::converterFor(m_xml.qualifiedName());
    if (!convert)
        return malformed(QStringLiteral("An unknown element"));
    QString text;
    if (!readText(text))
        return false;
    auto converted = convert(text);
    if (!converted)
        return malformed(QStringLiteral("A value that does not fit its element"));
    value = *std::move(converted);
    return true;
}

// The parser's own message is the better one where it has found a fault.
bool XmlReader::malformed(const QString &message)
{
    const QString said = m_xml.hasError() ? m_xml.errorString() : message;
    m_error = XPError::malformed(said, byteOffset(m_xml.characterOffset()));
    return false;
}

bool XmlReader::tooLarge(const char *message)
{
    m_error = XPError::make(XPError::Kind::TooLarge, QString::fromLatin1(message));
    m_error->offset = byteOffset(m_xml.characterOffset());
    return false;
}

// Where a UTF-16 unit of the text stands in the input; near enough to find a fault.
qsizetype XmlReader::byteOffset(qsizetype unit) const
{
    const QStringView before =
        QStringView(m_text).first(std::clamp<qsizetype>(unit, 0, m_text.size()));
    const qsizetype bytes =
        m_bytesAUnit == 0 ? before.toUtf8().size() : before.size() * m_bytesAUnit;
    return std::min(bytes, m_bytes.size());
}

} // namespace

XPResult<PropertyValue> XPPropertyList::readXml(QByteArrayView bytes, const Limits &limits)
{
    return XmlReader(bytes, limits).read();
}
