#include "PlainTextReader.h"

#include <QStringDecoder>
#include <algorithm>

static bool isMostlyControls(const QByteArray &bytes)
{
    const QByteArrayView start =
        QByteArrayView(bytes).first(std::min<qsizetype>(bytes.size(), 4096));
    const auto controls = std::count_if(start.begin(), start.end(), [](char byte) {
        const auto code = static_cast<uchar>(byte);
        return (code < 0x20 && !(code >= '\t' && code <= '\r') && code != 0x1B) || code == 0x7F;
    });
    return controls * 20 > start.size();
}

// Without a last character that the limit cut in two.
static QByteArrayView withoutCutCharacter(QByteArrayView bytes)
{
    qsizetype start = bytes.size();
    while (start > 0 && bytes.size() - start < 4 &&
           (static_cast<uchar>(bytes[start - 1]) & 0xC0) == 0x80)
        --start;
    if (start == 0 || static_cast<uchar>(bytes[start - 1]) < 0xC0)
        return bytes;
    const auto lead = static_cast<uchar>(bytes[start - 1]);
    const qsizetype length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    return bytes.size() - start + 1 < length ? bytes.first(start - 1) : bytes;
}

QByteArray PlainTextReader::decoded(const QByteArray &bytes, bool cut)
{
    const auto encoding = QStringConverter::encodingForData(bytes);
    if (encoding && *encoding != QStringConverter::Utf8) {
        const QString text = QStringDecoder(*encoding)(bytes);
        return text.contains(QChar(u'\0')) ? QByteArray() : text.toUtf8();
    }
    if (bytes.contains('\0') || isMostlyControls(bytes))
        return {};
    const QByteArrayView whole = cut ? withoutCutCharacter(bytes) : QByteArrayView(bytes);
    if (whole.isValidUtf8())
        return whole.size() == bytes.size() ? bytes : whole.toByteArray();
    return QString::fromLatin1(bytes).toUtf8();
}

static QString firstHeading(const QByteArray &text)
{
    qsizetype start = text.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    const qsizetype end = std::min<qsizetype>(text.size(), 4096);
    while (start < end) {
        qsizetype lineEnd = text.indexOf('\n', start);
        lineEnd = lineEnd < 0 || lineEnd > end ? end : lineEnd;
        const QByteArrayView line = QByteArrayView(text).sliced(start, lineEnd - start);
        if (line.startsWith("# "))
            return QString::fromUtf8(line.sliced(2)).trimmed();
        start = lineEnd + 1;
    }
    return {};
}

std::optional<DocumentFailure> PlainTextReader::read(const DocumentSource &source,
                                                     DocumentAnswer &answer) const
{
    const auto bytes = source.read(0, DocumentText::maximumBytes);
    if (!bytes)
        return documentFailureOf(bytes.error());
    const QByteArray text = decoded(*bytes, source.size() > DocumentText::maximumBytes);
    if (source.conformsTo(u"net.daringfireball.markdown"))
        answer.title = firstHeading(text);
    answer.text.append(QByteArrayView(text));
    return {};
}
