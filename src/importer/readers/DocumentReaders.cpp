#include "DocumentReaders.h"

#include "ArchiveReader.h"
#include "CalendarReader.h"
#include "CardReader.h"
#include "EpubReader.h"
#include "HeifReader.h"
#include "HtmlReader.h"
#include "ImageReader.h"
#include "LinkReader.h"
#include "MailReader.h"
#include "MediaReader.h"
#include "OdfReader.h"
#include "OleReader.h"
#include "OoxmlReader.h"
#include "PdfReader.h"
#include "PlainTextReader.h"
#include "RtfReader.h"
#include "SvgReader.h"
#include "TiffReader.h"

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
        DocumentReaderRow{u"public.text", &one<PlainTextReader>},
        DocumentReaderRow{u"public.rtf", &one<RtfReader>},
        DocumentReaderRow{u"public.html", &one<HtmlReader>},
        DocumentReaderRow{u"public.xhtml", &one<HtmlReader>},
        DocumentReaderRow{u"com.adobe.pdf", &one<PdfReader>},
        DocumentReaderRow{u"com.adobe.illustrator.ai-image", &one<PdfReader>},
        DocumentReaderRow{u"org.openxmlformats.openxml", &one<OoxmlReader>},
        DocumentReaderRow{u"com.microsoft.word.doc", &one<OleReader>},
        DocumentReaderRow{u"com.microsoft.word.dot", &one<OleReader>},
        DocumentReaderRow{u"com.microsoft.excel.xls", &one<OleReader>},
        DocumentReaderRow{u"com.microsoft.excel.xlt", &one<OleReader>},
        DocumentReaderRow{u"com.microsoft.powerpoint.ppt", &one<OleReader>},
        DocumentReaderRow{u"com.microsoft.powerpoint.pps", &one<OleReader>},
        DocumentReaderRow{u"com.microsoft.powerpoint.pot", &one<OleReader>},
        DocumentReaderRow{u"com.microsoft.outlook.msg", &one<OleReader>},
        DocumentReaderRow{u"org.oasis-open.opendocument", &one<OdfReader>},
        DocumentReaderRow{u"org.oasis-open.opendocument.text-flat", &one<OdfReader>},
        DocumentReaderRow{u"org.oasis-open.opendocument.spreadsheet-flat", &one<OdfReader>},
        DocumentReaderRow{u"org.oasis-open.opendocument.presentation-flat", &one<OdfReader>},
        DocumentReaderRow{u"org.oasis-open.opendocument.graphics-flat", &one<OdfReader>},
        DocumentReaderRow{u"org.openoffice.text", &one<OdfReader>},
        DocumentReaderRow{u"org.openoffice.text-template", &one<OdfReader>},
        DocumentReaderRow{u"org.openoffice.spreadsheet", &one<OdfReader>},
        DocumentReaderRow{u"org.openoffice.presentation", &one<OdfReader>},
        DocumentReaderRow{u"org.idpf.epub-container", &one<EpubReader>},
        DocumentReaderRow{u"public.email-message", &one<MailReader>},
        DocumentReaderRow{u"org.ietf.mbox", &one<MailReader>},
        DocumentReaderRow{u"org.ietf.mhtml", &one<MailReader>},
        DocumentReaderRow{u"public.vcard", &one<CardReader>},
        DocumentReaderRow{u"com.apple.addressbook.person", &one<CardReader>},
        DocumentReaderRow{u"public.calendar-event", &one<CalendarReader>},
        DocumentReaderRow{u"com.apple.ical.ics", &one<CalendarReader>},
        DocumentReaderRow{u"com.apple.ical.vcs", &one<CalendarReader>},
        DocumentReaderRow{u"com.apple.ical.ics.todo", &one<CalendarReader>},
        DocumentReaderRow{u"com.apple.internet-location", &one<LinkReader>},
        DocumentReaderRow{u"com.microsoft.internet-shortcut", &one<LinkReader>},
        DocumentReaderRow{u"com.apple.safari.bookmark", &one<LinkReader>},
        DocumentReaderRow{u"org.freedesktop.desktop-entry", &one<LinkReader>},
        DocumentReaderRow{u"public.image", &one<ImageReader>},
        DocumentReaderRow{u"public.tiff", &one<TiffReader>},
        DocumentReaderRow{u"public.heif-standard", &one<HeifReader>},
        DocumentReaderRow{u"public.svg-image", &one<SvgReader>},
        DocumentReaderRow{u"org.w3.svg-compressed", &one<SvgReader>},
        DocumentReaderRow{u"public.audiovisual-content", &one<MediaReader>},
        DocumentReaderRow{u"public.archive", &one<ArchiveReader>},
        DocumentReaderRow{u"org.freedesktop.comic-book", &one<ArchiveReader>},
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
