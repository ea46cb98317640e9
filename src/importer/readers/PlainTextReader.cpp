#include "PlainTextReader.h"

#include "TextDecoding.h"

#include <algorithm>

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
    if (!TextDecoding::isText(*bytes))
        return {};
    const bool isCut = source.size() > bytes->size();
    // What is UTF-8 already is not decoded and encoded again.
    const bool isUtf8 = bytes->isValidUtf8() && !bytes->contains('\0');
    const QByteArray text = isUtf8 ? *bytes : TextDecoding::detect(*bytes, isCut).toUtf8();
    const bool isMarked = text.startsWith("\xEF\xBB\xBF");
    if (source.conformsTo(u"net.daringfireball.markdown"))
        answer.title = firstHeading(text);
    answer.text.append(QByteArrayView(text).sliced(isMarked ? 3 : 0));
    return {};
}
