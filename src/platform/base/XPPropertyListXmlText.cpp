#include "XPPropertyListXmlText.h"

#include "XPPropertyListDate.h"

#include <algorithm>
#include <charconv>
#include <cmath>

// Digits with an optional sign: all of `text` must be used.
template <typename T, typename... Format>
static std::optional<T> parsed(QByteArrayView text, Format... format)
{
    T value{};
    const auto [end, error] = std::from_chars(text.begin(), text.end(), value, format...);
    if (text.isEmpty() || error != std::errc{} || end != text.end())
        return {};
    return value;
}

static QByteArray withoutPlus(const QString &text)
{
    QByteArray ascii = text.trimmed().toLatin1();
    if (ascii.startsWith('+') && !ascii.startsWith("+-"))
        ascii.remove(0, 1);
    return ascii;
}

// Decimal or, with 0x, hexadecimal.
static std::optional<PropertyValue> integerFrom(const QString &text)
{
    QByteArray digits = withoutPlus(text);
    const qsizetype sign = digits.startsWith('-') ? 1 : 0;
    const bool isHex = digits.sliced(sign).startsWith("0x") || digits.sliced(sign).startsWith("0X");
    if (isHex)
        digits.remove(sign, 2);
    // A second sign would hide behind the removed prefix.
    if (isHex && digits.sliced(sign).startsWith('-'))
        return {};
    const auto value = parsed<qint64>(digits, isHex ? 16 : 10);
    return value ? std::optional(PropertyValue::integer(*value)) : std::nullopt;
}

static std::optional<PropertyValue> realFrom(const QString &text)
{
    const auto value = parsed<double>(withoutPlus(text));
    return value ? std::optional(PropertyValue::real(*value)) : std::nullopt;
}

static std::optional<PropertyValue> dateFrom(const QString &text)
{
    const auto date = XPPropertyListDate::fromText(QStringView(text).trimmed());
    return date ? std::optional(PropertyValue(*date)) : std::nullopt;
}

static std::optional<PropertyValue> dataFrom(const QString &text)
{
    QByteArray base64 = text.toLatin1();
    base64.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    if (base64.size() % 4 != 0) // Qt does without the padding; here it tells of lost bytes
        return {};
    const auto decoded = QByteArray::fromBase64Encoding(
        base64, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional(PropertyValue(*decoded)) : std::nullopt;
}

static std::optional<PropertyValue> stringFrom(const QString &text)
{
    return text;
}

XPPropertyListXmlText::Converter XPPropertyListXmlText::converterFor(QStringView element)
{
    static constexpr std::pair<QStringView, Converter> converters[] = {
        {u"string", stringFrom}, {u"integer", integerFrom}, {u"real", realFrom},
        {u"date", dateFrom},     {u"data", dataFrom},
    };
    for (const auto &[name, converter] : converters) {
        if (name == element)
            return converter;
    }
    return nullptr;
}

// The end of a tag or document type, behind its '>' (quoted ones do not count); nothing when it
// is too long or declares something.
static std::optional<qsizetype> endOfTag(QStringView document, qsizetype start)
{
    constexpr qsizetype longest = 1024; // the usual document type has 110 characters
    QChar quote;
    const qsizetype end = std::min(document.size(), start + longest);
    for (qsizetype i = start; i < end; ++i) {
        const QChar c = document[i];
        if (!quote.isNull())
            quote = c == quote ? QChar() : quote;
        else if (c == u'"' || c == u'\'')
            quote = c;
        else if (c == u'>')
            return i + 1;
        else if (c == u'[')
            return {};
    }
    return end == document.size() ? std::optional(end) : std::nullopt;
}

std::optional<qsizetype> XPPropertyListXmlText::unsuitableMarkup(QStringView document)
{
    static constexpr std::pair<QStringView, QStringView> sections[] = {
        {u"<!--", u"-->"},
        {u"<![CDATA[", u"]]>"},
        {u"<?", u"?>"},
    };
    qsizetype at = document.indexOf(u'<');
    while (at >= 0) {
        const QStringView rest = document.sliced(at);
        const auto section = std::find_if(std::begin(sections), std::end(sections),
                                          [&](const auto &s) { return rest.startsWith(s.first); });
        if (section != std::end(sections)) {
            const qsizetype end = document.indexOf(section->second, at + section->first.size());
            if (end < 0)
                return {};
            at = document.indexOf(u'<', end + section->second.size());
            continue;
        }
        const auto end = endOfTag(document, at);
        if (!end)
            return at;
        at = document.indexOf(u'<', *end);
    }
    return {};
}

bool XPPropertyListXmlText::isRepresentable(QStringView text)
{
    return text.isValidUtf16() && std::all_of(text.begin(), text.end(), [](QChar c) {
               return c >= u' ' ? c < QChar(0xFFFE) : c == u'\t' || c == u'\n' || c == u'\r';
           });
}

void XPPropertyListXmlText::appendEscaped(QByteArray &output, const QString &text)
{
    for (const char c : text.toUtf8()) {
        switch (c) {
        case '&':
            output.append("&amp;");
            break;
        case '<':
            output.append("&lt;");
            break;
        case '>':
            output.append("&gt;");
            break;
        case '\r': // a bare one would be read as a line feed
            output.append("&#13;");
            break;
        default:
            output.append(c);
        }
    }
}

QByteArray XPPropertyListXmlText::fromReal(double value)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value > 0 ? "+infinity" : "-infinity";
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    return {digits, end - digits};
}
