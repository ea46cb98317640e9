// The parsers of foreign documents that are ours. The first byte says which; the rest is the file.
#include "CardText.h"
#include "CompoundFile.h"
#include "DocumentFacts.h"
#include "DocumentSource.h"
#include "FlowText.h"
#include "HtmlText.h"
#include "LinkText.h"
#include "MovieHeader.h"
#include "OleProperties.h"
#include "OleReader.h"
#include "OleText.h"
#include "RtfText.h"
#include "TextDecoding.h"
#include "XPFileDescriptor.h"
#include "XmpPacket.h"

#include <cstdlib>
#include <sys/mman.h>

static void readFile(QByteArrayView bytes, DocumentAnswer &answer, bool isMovie)
{
    const XPFileDescriptor file(::memfd_create("fuzz", MFD_CLOEXEC));
    if (::write(file.get(), bytes.data(), static_cast<size_t>(bytes.size())) != bytes.size())
        std::abort();
    const DocumentSource source(file.get(), {bytes.size(), {}, {}, {}, {}});
    DocumentFacts facts(answer);
    if (isMovie)
        MovieHeader::read(source, facts);
    else
        std::ignore = OleReader().read(source, answer);
}

static void decodeHeader(QByteArrayView bytes)
{
    // Written anew it says the same.
    const QString text = TextDecoding::decodeWords(bytes);
    if (!bytes.contains("=?") && TextDecoding::wordsAsUtf8(bytes) != text.toUtf8())
        std::abort();
    TextDecoding::asLine(text);
}

static void read(int kind, QByteArrayView bytes, DocumentAnswer &answer)
{
    DocumentFacts facts(answer);
    FlowText flow(answer.text);
    int count = 0;
    switch (kind) {
    case 0:
        RtfText::read(bytes, flow, &facts);
        return;
    case 1:
        CardText::readCards(bytes, answer);
        return;
    case 2:
        CardText::readCalendar(bytes, answer);
        return;
    case 3:
        LinkText::readKeys(bytes, answer);
        return;
    case 4:
        LinkText::readList(bytes, answer);
        return;
    case 5:
        OleText::readWord(bytes.first(std::min<qsizetype>(bytes.size(), 600)),
                          bytes.sliced(std::min<qsizetype>(bytes.size(), 600)), flow);
        return;
    case 6:
        OleText::readWorkbook(bytes, flow, count);
        return;
    case 7:
        OleText::readPresentation(bytes, flow, count);
        return;
    case 8:
        OleProperties::readSummary(bytes, answer);
        return;
    case 9:
        readFile(bytes, answer, false);
        return;
    case 10:
        readFile(bytes, answer, true);
        return;
    case 11:
        decodeHeader(bytes);
        return;
    case 12:
        XmpPacket::read(bytes, facts);
        return;
    default:
        HtmlText::read(HtmlText::asUtf8(bytes), flow, &facts);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArrayView bytes(reinterpret_cast<const char *>(data) + 1,
                               static_cast<qsizetype>(size - 1));
    DocumentAnswer answer;
    read(data[0] % 14, bytes, answer);
    if (answer.text.utf8().size() > DocumentText::maximumBytes || answer.pages < 0 ||
        !answer.text.utf8().isValidUtf8())
        std::abort();
    return 0;
}
