#include "DocumentReaders.h"

#include "PlainTextReader.h"

#include <array>

template <typename Reader>
static const DocumentReader &one()
{
    static const Reader reader;
    return reader;
}

std::span<const DocumentReaderRow> documentReaders()
{
    static constexpr std::array rows = {
        DocumentReaderRow{u"public.plain-text", &one<PlainTextReader>},
        DocumentReaderRow{u"public.source-code", &one<PlainTextReader>},
        DocumentReaderRow{u"net.daringfireball.markdown", &one<PlainTextReader>},
    };
    return rows;
}

const DocumentReader *documentReaderFor(const QStringList &tree)
{
    for (const QString &type : tree) {
        for (const DocumentReaderRow &row : documentReaders()) {
            if (row.type == type)
                return &row.reader();
        }
    }
    return nullptr;
}
