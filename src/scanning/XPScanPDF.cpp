#include "XPScanPDF.h"

#include "XPDocumentFile.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPQpdf.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QTemporaryFile>
#include <algorithm>
#include <deque>
#include <fcntl.h>
#include <future>
#include <map>
static constexpr double pointsPerPixel = 0.5; // 144 pixels an inch
static constexpr QSizeF mostPoints(581.4, 752.4);
static constexpr float losslessFrom = 0.9F;
// Decoded ones: half a gigabyte each at 1200 dpi.
static constexpr std::size_t pagesAtOnce = 3;

QSizeF xpPageSizeInPoints(QSize pixels)
{
    QSizeF size = QSizeF(pixels) * pointsPerPixel;
    if (size.width() > mostPoints.width() || size.height() > mostPoints.height())
        size *= std::min(mostPoints.width() / size.width(), mostPoints.height() / size.height());
    return size;
}

void NormalizeSizeAnyImage(QImage &image)
{
    static constexpr int perMetre = 2835; // 72 dots an inch
    image.setDotsPerMeterX(perMetre);
    image.setDotsPerMeterY(perMetre);
    image.setDevicePixelRatio(1);
}

QByteArray JPGDataFromNSImage(const QImage &image, float quality)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    const int percent = std::clamp(qRound(quality * 100), 0, 100);
    // JPEG knows no transparency: paper is white.
    const QImage opaque =
        image.hasAlphaChannel() ? image.convertToFormat(QImage::Format_RGB888) : image;
    return opaque.save(&buffer, "JPEG", percent) ? data : QByteArray();
}

// --- Pages

namespace {

// What goes into the file of one page.
struct Picture
{
    QSize size;
    int components = 3; // 1: grey
    int bits = 8;
    QByteArray data;
    bool isJpeg = false;

    bool isNull() const { return data.isEmpty(); }
};

} // namespace

static XPResult<QByteArray> readFile(const QString &path)
{
    const QByteArray bytes = XPPath::encode(path);
    const int descriptor = ::open(bytes.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return XPError::fromErrno(errno, path);
    QFile file;
    (void)file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    return file.readAll();
}

static Picture withoutLoss(const QImage &image)
{
    Picture picture{image.size(), 3, 8, {}, false};
    QImage plain;
    if (image.format() == QImage::Format_Mono || image.format() == QImage::Format_MonoLSB) {
        plain = image.convertToFormat(QImage::Format_Mono);
        // A set bit is white there.
        if (plain.colorCount() == 2 && qGray(plain.color(0)) > qGray(plain.color(1)))
            plain.invertPixels();
        picture.components = picture.bits = 1;
    } else if (image.isGrayscale()) {
        plain = image.convertToFormat(QImage::Format_Grayscale8);
        picture.components = 1;
    } else {
        plain = image.convertToFormat(QImage::Format_RGB888);
    }
    const qsizetype line = (qsizetype{plain.width()} * picture.components * picture.bits + 7) / 8;
    picture.data.reserve(line * plain.height());
    for (int y = 0; y < plain.height(); ++y)
        picture.data.append(reinterpret_cast<const char *>(plain.constScanLine(y)), line);
    return picture;
}

static Picture pictureOf(const QString &path, float quality)
{
    const auto bytes = readFile(path);
    if (!bytes)
        return {};
    QBuffer buffer;
    buffer.setData(*bytes);
    QImageReader reader(&buffer);
    reader.setAllocationLimit(1024); // MiB; a page of 1200 dpi has 500
    const bool isJpeg = reader.format() == "jpeg";
    const QImage image = reader.read();
    if (image.isNull())
        return {};
    if (quality < losslessFrom) {
        return {image.size(), image.isGrayscale() ? 1 : 3, 8, JPGDataFromNSImage(image, quality),
                true};
    }
    // Of four components the values may be inverted, which only the decoder knows.
    if (isJpeg &&
        (image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_Grayscale8))
        return {image.size(), image.format() == QImage::Format_RGB32 ? 3 : 1, 8, *bytes, true};
    return withoutLoss(image);
}

static QPDFObjectHandle pictureObject(QPDF &pdf, const Picture &picture)
{
    QPDFObjectHandle stream = QPDFObjectHandle::newStream(&pdf);
    QPDFObjectHandle dictionary = stream.getDict();
    dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Image"));
    dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(picture.size.width()));
    dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(picture.size.height()));
    dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(picture.bits));
    dictionary.replaceKey(
        "/ColorSpace",
        QPDFObjectHandle::newName(picture.components == 1 ? "/DeviceGray" : "/DeviceRGB"));
    return stream;
}

namespace {

// The encoded pages, on disk until the file is written: a long document does not fit in memory.
class Spool : public QPDFObjectHandle::StreamDataProvider
{
public:
    bool open() { return m_file.open(); }
    bool add(const QPDFObjectHandle &stream, const QByteArray &data)
    {
        m_places[stream.getObjGen()] = {m_file.size(), data.size()};
        return m_file.seek(m_file.size()) && m_file.write(data) == data.size();
    }

    void provideStreamData(QPDFObjGen const &object, Pipeline *pipeline) override
    {
        const auto [offset, size] = m_places.at(object);
        if (!m_file.seek(offset))
            throw std::runtime_error("spool");
        for (qint64 left = size; left > 0;) {
            const QByteArray piece = m_file.read(std::min<qint64>(left, 1 << 16));
            if (piece.isEmpty())
                throw std::runtime_error("spool");
            pipeline->write(reinterpret_cast<const unsigned char *>(piece.constData()),
                            static_cast<std::size_t>(piece.size()));
            left -= piece.size();
        }
        pipeline->finish();
    }

private:
    struct Place
    {
        qint64 offset, size;
    };
    QTemporaryFile m_file;
    std::map<QPDFObjGen, Place> m_places;
};

} // namespace

static QPDFObjectHandle numbers(std::initializer_list<double> values)
{
    QPDFObjectHandle array = QPDFObjectHandle::newArray();
    for (const double value : values)
        array.appendItem(QPDFObjectHandle::newReal(value, 3));
    return array;
}

static void addPage(QPDF &pdf, const QPDFObjectHandle &picture, QSizeF size)
{
    QPDFObjectHandle pictures = QPDFObjectHandle::newDictionary();
    pictures.replaceKey("/Im0", picture);
    QPDFObjectHandle resources = QPDFObjectHandle::newDictionary();
    resources.replaceKey("/XObject", pictures);
    const QByteArray draw = "q " + QByteArray::number(size.width(), 'f', 3) + " 0 0 " +
                            QByteArray::number(size.height(), 'f', 3) + " 0 0 cm /Im0 Do Q";
    QPDFObjectHandle page = pdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
    page.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
    page.replaceKey("/MediaBox", numbers({0, 0, size.width(), size.height()}));
    page.replaceKey("/Resources", resources);
    page.replaceKey("/Contents", QPDFObjectHandle::newStream(&pdf, draw.toStdString()));
    QPDFPageDocumentHelper(pdf).addPage(page, false);
}

// Answers how many pages went in; throws what qpdf throws, and XPError.
static int assemble(QPDF &pdf, const std::shared_ptr<Spool> &spool, const QStringList &pages,
                    float quality, const std::function<bool(int)> &progress)
{
    std::deque<std::future<Picture>> coming;
    qsizetype begun = 0;
    const auto begin = [&] {
        while (begun < pages.size() && coming.size() < pagesAtOnce)
            coming.push_back(std::async(std::launch::async, [path = pages[begun++], quality] {
                return pictureOf(path, quality);
            }));
    };
    int count = 0;
    for (qsizetype i = 0; i < pages.size(); ++i) {
        if (progress && !progress(static_cast<int>(i)))
            throw XPError::make(XPError::Kind::Cancelled, QStringLiteral("cancelled"));
        begin();
        const Picture picture = coming.front().get();
        coming.pop_front();
        begin();
        if (picture.isNull())
            continue;
        QPDFObjectHandle stream = pictureObject(pdf, picture);
        if (!spool->add(stream, picture.data))
            throw XPError::make(XPError::Kind::NoSpace, qtTrId("KPScanNoSpace"));
        stream.replaceStreamData(
            std::static_pointer_cast<QPDFObjectHandle::StreamDataProvider>(spool),
            picture.isJpeg ? QPDFObjectHandle::newName("/DCTDecode") : QPDFObjectHandle::newNull(),
            QPDFObjectHandle::newNull());
        addPage(pdf, stream, xpPageSizeInPoints(picture.size));
        ++count;
    }
    return count;
}

XPResult<int> ImageArrayToPDFDocument(const QStringList &pages, bool blackAndWhite, float quality,
                                      const QString &toPath,
                                      const std::function<bool(int)> &progress)
{
    if (pages.isEmpty())
        return 0;
    if (blackAndWhite)
        qCInfo(xpLog) << "This needs to have black and white conversion done";
    try {
        const auto spool = std::make_shared<Spool>();
        if (!spool->open())
            return XPError::make(XPError::Kind::NoSpace, qtTrId("KPScanNoSpace"));
        QPDF pdf;
        pdf.emptyPDF();
        const int count = assemble(pdf, spool, pages, quality, progress);
        if (count == 0)
            return 0;
        if (auto error = xpWritePDF(pdf, toPath))
            return *error;
        return count;
    } catch (const XPError &error) {
        return error;
    } catch (const std::exception &failure) {
        return XPError::make(XPError::Kind::Io, QString::fromLocal8Bit(failure.what()), toPath);
    }
}
