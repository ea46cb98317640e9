#include "ImageMetadata.h"

#include "DocumentFacts.h"
#include "TextDecoding.h"

#include <QDateTime>
#include <cstring>

namespace {

// exiv2's view of the descriptor. Formats that it reads as a whole (TIFF and what is built on
// it) are copied to memory, as the file may shrink under a mapping.
class SourceIo : public Exiv2::BasicIo
{
public:
    explicit SourceIo(const DocumentSource &source) : m_source(source) {}

    int open() override
    {
        m_at = 0;
        m_isAtEnd = false;
        return 0;
    }
    int close() override { return 0; }
    long write(const Exiv2::byte *, long) override { return 0; }
    long write(BasicIo &) override { return 0; }
    int putb(Exiv2::byte) override { return EOF; }
    Exiv2::DataBuf read(long count) override
    {
        const auto bytes = take(count);
        return {reinterpret_cast<const Exiv2::byte *>(bytes.constData()),
                static_cast<long>(bytes.size())};
    }
    long read(Exiv2::byte *to, long count) override
    {
        const auto bytes = take(count);
        std::memcpy(to, bytes.constData(), static_cast<size_t>(bytes.size()));
        return static_cast<long>(bytes.size());
    }
    int getb() override
    {
        const auto bytes = take(1);
        return bytes.isEmpty() ? EOF : static_cast<uchar>(bytes[0]);
    }
    void transfer(BasicIo &) override {}
    int seek(int64_t offset, Position from) override
    {
        const qint64 base = from == beg ? 0 : from == cur ? m_at : m_source.size();
        // A sum that overflows comes from a hostile file; it is refused like any other.
        qint64 to = 0;
        if (__builtin_add_overflow(base, qint64{offset}, &to) || to < 0 || to > m_source.size())
            return 1;
        m_at = to;
        m_isAtEnd = false;
        return 0;
    }
    Exiv2::byte *mmap(bool) override
    {
        constexpr qsizetype longest = 128 << 20;
        if (m_all.isEmpty())
            m_all = m_source.readAll(longest).valueOr({});
        if (m_all.size() != m_source.size())
            throw Exiv2::Error(Exiv2::kerMallocFailed);
        return reinterpret_cast<Exiv2::byte *>(m_all.data());
    }
    int munmap() override { return 0; }
    long tell() const override { return m_at; }
    size_t size() const override { return static_cast<size_t>(m_source.size()); }
    bool isopen() const override { return true; }
    int error() const override { return 0; }
    bool eof() const override { return m_isAtEnd; }
    std::string path() const override { return {}; }

private:
    QByteArray take(long count)
    {
        QByteArray bytes = m_source.read(m_at, count).valueOr({});
        m_at += bytes.size();
        m_isAtEnd = bytes.size() < count;
        return bytes;
    }

    const DocumentSource &m_source;
    qint64 m_at = 0;
    bool m_isAtEnd = false;
    QByteArray m_all;
};

} // namespace

std::unique_ptr<Exiv2::Image> ImageMetadata::open(const DocumentSource &source)
{
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    try {
// exiv2 0.27 takes the object in the pointer type that the language has given up.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
        auto image = Exiv2::ImageFactory::open(Exiv2::BasicIo::AutoPtr(new SourceIo(source)));
#pragma GCC diagnostic pop
        if (!image.get())
            return {};
        std::unique_ptr<Exiv2::Image> kept(image.release());
        kept->readMetadata();
        return kept;
    } catch (const Exiv2::AnyError &) { // its way to say that the file is broken
        return {};
    }
}

bool ImageMetadata::isKnown(const DocumentSource &source)
{
    try {
        SourceIo io(source);
        return Exiv2::ImageFactory::getType(io) != Exiv2::ImageType::none;
    } catch (const Exiv2::AnyError &) {
        return false;
    }
}

// --- EXIF

static QString textOf(const Exiv2::ExifData &exif, const char *key)
{
    const auto found = exif.findKey(Exiv2::ExifKey(key));
    if (found == exif.end() || found->size() > (64 << 10))
        return {};
    const std::string text = found->toString();
    QByteArray bytes(text.data(), static_cast<qsizetype>(text.size()));
    if (const qsizetype end = bytes.indexOf('\0'); end >= 0)
        bytes.truncate(end);
    return TextDecoding::detect(bytes);
}

// The fields that one system writes hold UTF-16 as bytes.
static QString wideTextOf(const Exiv2::ExifData &exif, const char *key)
{
    const auto found = exif.findKey(Exiv2::ExifKey(key));
    if (found == exif.end() || found->size() > (64 << 10))
        return {};
    QByteArray bytes(found->size(), '\0');
    found->copy(reinterpret_cast<Exiv2::byte *>(bytes.data()), Exiv2::littleEndian);
    QString text;
    for (qsizetype at = 0; at + 1 < bytes.size(); at += 2) {
        const auto unit = static_cast<char16_t>(static_cast<uchar>(bytes[at]) |
                                                static_cast<uchar>(bytes[at + 1]) << 8);
        if (unit == 0)
            break;
        text += QChar(unit);
    }
    return text;
}

static double numberOf(const Exiv2::ExifData &exif, const char *key, long n = 0)
{
    const auto found = exif.findKey(Exiv2::ExifKey(key));
    if (found == exif.end() || n >= found->count())
        return 0;
    const Exiv2::Rational value = found->toRational(n);
    return value.second == 0 ? 0 : static_cast<double>(value.first) / value.second;
}

int ImageMetadata::orientation(const Exiv2::ExifData &exif)
{
    const auto found = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    const long value = found == exif.end() || found->count() == 0 ? 1 : found->toLong();
    return value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
}

bool ImageMetadata::isTurned(int orientation)
{
    return orientation >= 5;
}

// "2024:03:02 18:22:07", with a zone in a field of its own since EXIF 2.31.
static QDateTime dateOf(const Exiv2::ExifData &exif, const char *key, const char *zoneKey)
{
    const QString date = textOf(exif, key).trimmed();
    const QString zone = zoneKey ? textOf(exif, zoneKey).trimmed() : QString();
    QDateTime local = QDateTime::fromString(date, QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    if (zone.isEmpty() || !local.isValid())
        return local;
    const QDateTime zoned = QDateTime::fromString(local.toString(Qt::ISODate) + zone, Qt::ISODate);
    return zoned.isValid() ? zoned : local;
}

static void fillPlace(const Exiv2::ExifData &exif, DocumentFacts &facts)
{
    const auto degrees = [&exif](const char *key) {
        return numberOf(exif, key, 0) + numberOf(exif, key, 1) / 60 + numberOf(exif, key, 2) / 3600;
    };
    if (exif.findKey(Exiv2::ExifKey("Exif.GPSInfo.GPSLatitude")) == exif.end() ||
        exif.findKey(Exiv2::ExifKey("Exif.GPSInfo.GPSLongitude")) == exif.end())
        return;
    const bool isSouth = textOf(exif, "Exif.GPSInfo.GPSLatitudeRef").startsWith(u'S');
    const bool isWest = textOf(exif, "Exif.GPSInfo.GPSLongitudeRef").startsWith(u'W');
    const double latitude = degrees("Exif.GPSInfo.GPSLatitude");
    const double longitude = degrees("Exif.GPSInfo.GPSLongitude");
    facts.setReal(QStringLiteral("kMDItemLatitude"), isSouth ? -latitude : latitude);
    facts.setReal(QStringLiteral("kMDItemLongitude"), isWest ? -longitude : longitude);
}

static void fillCamera(const Exiv2::ExifData &exif, DocumentFacts &facts)
{
    const auto number = [&](const char *name, const char *key) {
        if (const double value = numberOf(exif, key); value > 0)
            facts.setReal(QString::fromLatin1(name), value);
    };
    facts.setText(QStringLiteral("kMDItemAcquisitionMake"), textOf(exif, "Exif.Image.Make"));
    facts.setText(QStringLiteral("kMDItemAcquisitionModel"), textOf(exif, "Exif.Image.Model"));
    facts.setText(QStringLiteral("kMDItemLensModel"), textOf(exif, "Exif.Photo.LensModel"));
    number("kMDItemExposureTimeSeconds", "Exif.Photo.ExposureTime");
    number("kMDItemFNumber", "Exif.Photo.FNumber");
    number("kMDItemFocalLength", "Exif.Photo.FocalLength");
    number("kMDItemISOSpeed", "Exif.Photo.ISOSpeedRatings");
}

void ImageMetadata::fill(const Exiv2::ExifData &exif, DocumentFacts &facts)
{
    facts.setTitle(wideTextOf(exif, "Exif.Image.XPTitle"));
    facts.setText(DocumentFacts::description, textOf(exif, "Exif.Image.ImageDescription"));
    facts.addList(DocumentFacts::authors, textOf(exif, "Exif.Image.Artist"));
    facts.addList(DocumentFacts::keywords, wideTextOf(exif, "Exif.Image.XPKeywords"));
    facts.setText(DocumentFacts::copyright, textOf(exif, "Exif.Image.Copyright"));
    facts.setText(DocumentFacts::creator, textOf(exif, "Exif.Image.Software"));
    facts.setDate(DocumentFacts::created,
                  dateOf(exif, "Exif.Photo.DateTimeOriginal", "Exif.Photo.OffsetTimeOriginal"));
    facts.setDate(DocumentFacts::created, dateOf(exif, "Exif.Photo.DateTimeDigitized", nullptr));
    fillCamera(exif, facts);
    fillPlace(exif, facts);
}

// --- IPTC

void ImageMetadata::fill(const Exiv2::IptcData &iptc, DocumentFacts &facts)
{
    constexpr int mostRecords = 2000;
    const char *charset = iptc.detectCharset();
    const bool isUtf8 = charset && std::strcmp(charset, "UTF-8") == 0;
    int records = 0;
    for (const Exiv2::Iptcdatum &datum : iptc) {
        if (++records > mostRecords)
            return;
        if (datum.groupName() != "Application2")
            continue;
        const std::string value = datum.toString();
        const QByteArrayView bytes(value.data(), static_cast<qsizetype>(value.size()));
        const QString text = isUtf8 ? QString::fromUtf8(bytes) : TextDecoding::detect(bytes);
        const std::string name = datum.tagName();
        if (name == "ObjectName")
            facts.setTitle(text);
        else if (name == "Caption")
            facts.setText(DocumentFacts::description, text);
        else if (name == "Byline")
            facts.addText(DocumentFacts::authors, text);
        else if (name == "Keywords")
            facts.addText(DocumentFacts::keywords, text);
        else if (name == "Copyright")
            facts.setText(DocumentFacts::copyright, text);
        else if (name == "Headline")
            facts.setText(QStringLiteral("kMDItemHeadline"), text);
        else if (name == "City")
            facts.setText(QStringLiteral("kMDItemCity"), text);
        else if (name == "CountryName")
            facts.setText(QStringLiteral("kMDItemCountry"), text);
        else if (name == "DateCreated") // days alone; EXIF's is better, where it stands
            facts.setIsoDate(DocumentFacts::created, text);
    }
}
