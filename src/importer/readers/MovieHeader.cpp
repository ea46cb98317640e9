#include "MovieHeader.h"

#include "ByteFields.h"
#include "DocumentFacts.h"

#include <QDateTime>
#include <bit>

using namespace ByteFields;

// So many pieces of a file are looked at; real ones have some hundred before their media.
static constexpr int mostPieces = 20'000;

static QByteArray bytesAt(const DocumentSource &source, qint64 at, qint64 length)
{
    return source.read(at, length).valueOr({});
}

// --- ISO base media

static void takeMovieHeader(QByteArrayView box, DocumentFacts &facts)
{
    const bool isLong = little<quint8>(box, 0) == 1;
    const quint64 created = isLong ? big<quint64>(box, 4) : big<quint32>(box, 4);
    const quint32 scale = big<quint32>(box, isLong ? 20 : 12);
    const quint64 duration = isLong ? big<quint64>(box, 24) : big<quint32>(box, 16);
    if (scale > 0 && duration > 0 && duration != (isLong ? ~quint64{0} : 0xFFFFFFFF))
        facts.setReal(DocumentFacts::duration, static_cast<double>(duration) / scale);
    constexpr quint64 epoch = 2'082'844'800; // seconds from 1904 to 1970
    if (created > epoch && created < epoch + 10'000'000'000)
        facts.setDate(DocumentFacts::created,
                      QDateTime::fromSecsSinceEpoch(static_cast<qint64>(created - epoch), Qt::UTC));
}

static void takeTrackHeader(QByteArrayView box, DocumentFacts &facts)
{
    const qint64 matrix = little<quint8>(box, 0) == 1 ? 52 : 40;
    const bool isTurned = big<quint32>(box, matrix) == 0 && big<quint32>(box, matrix + 4) != 0;
    facts.setPixelSize(big<quint32>(box, matrix + 36) >> 16, big<quint32>(box, matrix + 40) >> 16,
                       isTurned);
}

// Boxes lie one behind another; the contents of some are boxes again, which a walk meets when it
// steps over their head alone.
static bool readBoxes(const DocumentSource &source, DocumentFacts &facts)
{
    if (const QByteArray start = bytesAt(source, 4, 4);
        start != "ftyp" && start != "moov" && start != "mdat" && start != "wide" && start != "free")
        return false;
    qint64 at = 0;
    for (int i = 0; i < mostPieces && at + 8 <= source.size() && !source.mustStop(); ++i) {
        const QByteArray head = bytesAt(source, at, 16);
        const QByteArrayView type = part(head, 4, 4);
        const qint64 headSize = big<quint32>(head, 0) == 1 ? 16 : 8;
        qint64 size = headSize == 16 ? big<qint64>(head, 8) : qint64{big<quint32>(head, 0)};
        if (type == "moov" || type == "trak") {
            at += headSize;
            continue;
        }
        if (type == "mvhd")
            takeMovieHeader(bytesAt(source, at + headSize, 128), facts);
        else if (type == "tkhd")
            takeTrackHeader(bytesAt(source, at + headSize, 128), facts);
        if (size < headSize || size > source.size() - at)
            break; // 0: to the end of the file
        at += size;
    }
    return true;
}

// --- Matroska

namespace {

struct Element
{
    quint32 id = 0;
    qint64 size = 0; // -1: unknown
    qint64 head = 0; // bytes before the contents; 0: no element
};

Element elementAt(const DocumentSource &source, qint64 at)
{
    const QByteArray bytes = bytesAt(source, at, 12);
    const auto lengthAt = [&bytes](qint64 place) {
        return bytes.size() > place ? std::countl_zero(static_cast<quint8>(bytes[place])) + 1 : 9;
    };
    Element element;
    const int idLength = lengthAt(0);
    const int sizeLength = lengthAt(idLength);
    if (idLength > 4 || sizeLength > 8 || idLength + sizeLength > bytes.size())
        return {};
    for (int i = 0; i < idLength; ++i)
        element.id = element.id << 8 | static_cast<uchar>(bytes[i]);
    quint64 size = static_cast<uchar>(bytes[idLength]) & ((1U << (8 - sizeLength)) - 1);
    for (int i = 1; i < sizeLength; ++i)
        size = size << 8 | static_cast<uchar>(bytes[idLength + i]);
    const quint64 unknown = (quint64{1} << (7 * sizeLength)) - 1;
    element.size = size == unknown ? -1 : static_cast<qint64>(size);
    element.head = idLength + sizeLength;
    return element;
}

qint64 numberIn(QByteArrayView bytes)
{
    quint64 value = 0;
    for (const char byte : bytes.first(std::min<qsizetype>(bytes.size(), 8)))
        value = value << 8 | static_cast<uchar>(byte);
    return static_cast<qint64>(value);
}

double realIn(QByteArrayView bytes)
{
    return bytes.size() == 4 ? static_cast<double>(big<float>(bytes, 0)) : big<double>(bytes, 0);
}

class Matroska
{
public:
    Matroska(const DocumentSource &source, DocumentFacts &facts) : m_source(source), m_facts(facts)
    {
    }

    bool read()
    {
        if (bytesAt(m_source, 0, 4) != "\x1A\x45\xDF\xA3")
            return false;
        qint64 at = 0;
        for (int i = 0; i < mostPieces && at < m_source.size() && !m_source.mustStop(); ++i) {
            const Element element = elementAt(m_source, at);
            constexpr quint32 cluster = 0x1F43B675; // the media begins
            if (element.head == 0 || element.id == cluster)
                break;
            at += element.head;
            if (isContainer(element.id))
                continue;
            if (element.size < 0 || element.size > m_source.size() - at)
                break;
            take(element.id, at, element.size);
            at += element.size;
        }
        m_facts.setReal(DocumentFacts::duration, m_duration * m_scale / 1e9);
        m_facts.setPixelSize(m_width, m_height);
        return true;
    }

private:
    static bool isContainer(quint32 id)
    {
        return id == 0x18538067 || id == 0x1549A966 || id == 0x1654AE6B || id == 0xAE || id == 0xE0;
    }

    void take(quint32 id, qint64 at, qint64 size)
    {
        constexpr qint64 longest = 4096;
        const auto value = [&] { return bytesAt(m_source, at, std::min(size, longest)); };
        switch (id) {
        case 0x2AD7B1:
            m_scale = static_cast<double>(numberIn(value()));
            return;
        case 0x4489:
            m_duration = realIn(value());
            return;
        case 0x7BA9:
            return m_facts.setTitle(QString::fromUtf8(value()));
        case 0x5741:
            return m_facts.setText(DocumentFacts::creator, QString::fromUtf8(value()));
        case 0x4461: { // nanoseconds since 2001
            constexpr qint64 epoch = 978'307'200;
            return m_facts.setDate(
                DocumentFacts::created,
                QDateTime::fromSecsSinceEpoch(epoch + numberIn(value()) / 1'000'000'000, Qt::UTC));
        }
        case 0xB0:
            m_width = m_width > 0 ? m_width : numberIn(value());
            return;
        case 0xBA:
            m_height = m_height > 0 ? m_height : numberIn(value());
            return;
        default:
            return;
        }
    }

    const DocumentSource &m_source;
    DocumentFacts &m_facts;
    double m_scale = 1e6;
    double m_duration = 0;
    qint64 m_width = 0;
    qint64 m_height = 0;
};

} // namespace

// --- AVI

static bool readAvi(const DocumentSource &source, DocumentFacts &facts)
{
    const QByteArray start = bytesAt(source, 0, 12);
    if (!start.startsWith("RIFF") || !start.endsWith("AVI "))
        return false;
    qint64 at = 12;
    for (int i = 0; i < mostPieces && at + 8 <= source.size() && !source.mustStop(); ++i) {
        const QByteArray head = bytesAt(source, at, 12);
        const QByteArrayView type = part(head, 0, 4);
        const qint64 size = little<quint32>(head, 4);
        if (type == "LIST" && part(head, 8, 4) != "movi") {
            at += 12;
            continue;
        }
        const QByteArray value = bytesAt(source, at + 8, std::min<qint64>(size, 4096));
        if (type == "avih") {
            facts.setPixelSize(little<quint32>(value, 32), little<quint32>(value, 36));
            facts.setReal(DocumentFacts::duration, static_cast<double>(little<quint32>(value, 0)) *
                                                       1e-6 * little<quint32>(value, 16));
        } else if (type == "INAM") {
            facts.setTitle(QString::fromUtf8(value.constData()));
        } else if (type == "IART") {
            facts.addText(DocumentFacts::authors, QString::fromUtf8(value.constData()));
        }
        at += 8 + size + (size & 1);
    }
    return true;
}

bool MovieHeader::read(const DocumentSource &source, DocumentFacts &facts)
{
    return readBoxes(source, facts) || Matroska(source, facts).read() || readAvi(source, facts);
}
