#include "ReaderChoice.h"

#include "DocumentReaders.h"

#include <algorithm>
#include <cctype>

static QString typeByContent(QByteArrayView start)
{
    struct Row
    {
        QByteArrayView mark;
        const char16_t *type = nullptr;
    };
    static const Row rows[] = {
        {"{\\rtf", u"public.rtf"},
        {"%PDF-", u"com.adobe.pdf"},
        {"\xD0\xCF\x11\xE0", u"com.microsoft.word.doc"},
        {"PK\x03\x04", u"org.openxmlformats.openxml"},
        {"<!doctype html", u"public.html"},
        {"<html", u"public.html"},
    };
    const auto first = std::find_if_not(start.begin(), start.end(), [](char c) {
        return c == ' ' || (c >= '\t' && c <= '\r') || static_cast<uchar>(c) >= 0xEF;
    });
    QByteArray head(first, std::min<qsizetype>(start.end() - first, 16));
    for (const Row &row : rows) {
        if (head.startsWith(row.mark.toByteArray()) ||
            (row.mark.startsWith('<') && head.toLower().startsWith(row.mark.toByteArray())))
            return QString::fromUtf16(row.type);
    }
    return {};
}

const DocumentReader *readerByContent(const DocumentSource &source, const DocumentReader &asker)
{
    const auto start = source.read(0, 512);
    if (!start)
        return nullptr;
    const QString type = typeByContent(*start);
    if (type.isEmpty())
        return nullptr;
    const DocumentReader *reader = documentReaderFor({type});
    return reader == &asker ? nullptr : reader;
}
