#include "XPPath.h"

#include <QDir>
#include <algorithm>
#include <unicode/utf8.h>

static constexpr char16_t undecodableBase = 0xDC00;

static bool standsForByte(char16_t unit)
{
    return unit >= undecodableBase + 0x80 && unit <= undecodableBase + 0xFF;
}

// How many bytes from the start are ASCII: nearly all of nearly every name.
static qsizetype asciiPrefix(QByteArrayView bytes)
{
    const auto *end = std::find_if(bytes.begin(), bytes.end(),
                                   [](char byte) { return static_cast<quint8>(byte) >= 0x80; });
    return end - bytes.begin();
}

QString XPPath::decode(QByteArrayView bytes)
{
    const auto *data = reinterpret_cast<const uint8_t *>(bytes.data());
    const qsizetype size = bytes.size();
    const qsizetype ascii = asciiPrefix(bytes);
    QString out = QString::fromLatin1(bytes.first(ascii));
    if (ascii == size)
        return out;
    out.reserve(size);
    for (qsizetype i = ascii; i < size;) {
        const qsizetype start = i;
        UChar32 c = 0;
        U8_NEXT(data, i, size, c);
        if (c >= 0) {
            out.append(QStringView(QChar::fromUcs4(static_cast<char32_t>(c))));
            continue;
        }
        // One byte at a time, whatever length the broken sequence has: the way back is exact.
        out.append(QChar(static_cast<char16_t>(undecodableBase + data[start])));
        i = start + 1;
    }
    return out;
}

QByteArray XPPath::encode(const QString &path)
{
    const qsizetype size = path.size();
    const auto *plainEnd = std::find_if(
        path.begin(), path.end(), [](QChar c) { return c.unicode() == 0 || c.unicode() >= 0x80; });
    const qsizetype plain = plainEnd - path.begin();
    QByteArray out = QStringView(path).first(plain).toLatin1();
    if (plain == size)
        return out;
    out.reserve(size + size / 4);
    for (qsizetype i = plain; i < size; ++i) {
        const char16_t unit = path[i].unicode();
        if (unit == 0)
            return {};
        if (unit < 0x80) {
            out.append(static_cast<char>(unit));
            continue;
        }
        char32_t c = unit;
        if (QChar::isHighSurrogate(unit) && i + 1 < size && path[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(path[i], path[i + 1]);
            ++i;
        } else if (standsForByte(unit)) {
            out.append(static_cast<char>(unit - undecodableBase));
            continue;
        } else if (QChar::isSurrogate(unit)) {
            return {};
        }
        uint8_t sequence[U8_MAX_LENGTH];
        int32_t length = 0;
        U8_APPEND_UNSAFE(sequence, length, c);
        out.append(reinterpret_cast<const char *>(sequence), length);
    }
    return out;
}

QString XPPath::absolute(const QString &path)
{
    QString full = path;
    if (!full.startsWith(u'/'))
        full = QDir::currentPath() + u'/' + full;
    QStringList kept;
    for (const QString &part : full.split(u'/', Qt::SkipEmptyParts)) {
        if (part != u".")
            kept.append(part);
    }
    return u'/' + kept.join(u'/');
}

QString XPPath::fileName(const QString &path)
{
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString XPPath::extension(const QString &path)
{
    const QString name = fileName(path);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.mid(dot + 1) : QString();
}

QString XPPath::folder(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash > 0 ? path.left(slash) : QStringLiteral("/");
}

static bool isBidirectionalControl(char16_t unit)
{
    return unit == 0x061C || unit == 0x200E || unit == 0x200F ||
           (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

QString XPPath::printable(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            out += text[i];
            out += text[++i];
        } else if (unit == '\n') {
            out += QStringLiteral("\\n");
        } else if (unit == '\t') {
            out += QStringLiteral("\\t");
        } else if (unit == '\r') {
            out += QStringLiteral("\\r");
        } else if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || standsForByte(unit)) {
            out += QStringLiteral("\\x%1").arg(unit & 0xFF, 2, 16, QLatin1Char('0'));
        } else if (isBidirectionalControl(unit) || QChar::isSurrogate(unit)) {
            out += QStringLiteral("\\u%1").arg(unit, 4, 16, QLatin1Char('0'));
        } else {
            out += text[i];
        }
    }
    return out;
}
