#include "PageFile.h"

#include "XPPath.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

// A page of 1200 dpi in colour has about 500 MB; far more than that is a driver gone wrong.
static constexpr qint64 mostBytes = qint64{3} << 30;

PageFile::PageFile(QByteArray path, const SANE_Parameters &page, int resolution)
    : m_path(std::move(path)), m_temporary(m_path + ".part"), m_page(page), m_resolution(resolution)
{
}

static bool isTiff(const QByteArray &path)
{
    return path.mid(path.lastIndexOf('.') + 1).toLower().startsWith("tif");
}

static int samples(const SANE_Parameters &page)
{
    return page.format == SANE_FRAME_RGB ? 3 : 1;
}

XPResult<std::unique_ptr<PageFile>> PageFile::begin(const QByteArray &path,
                                                    const SANE_Parameters &page, int resolution)
{
    if ((page.format != SANE_FRAME_RGB && page.format != SANE_FRAME_GRAY) ||
        (page.depth != 1 && page.depth != 8 && page.depth != 16) || page.pixels_per_line <= 0 ||
        page.bytes_per_line < (qint64{page.pixels_per_line} * page.depth * samples(page) + 7) / 8)
        return XPError::make(XPError::Kind::Unsupported,
                             QStringLiteral("the scanner sends pictures of an unknown kind"));
    std::unique_ptr<PageFile> file(new PageFile(path, page, resolution));
    if (!isTiff(path))
        return file;
    const int descriptor = ::open(file->m_temporary.constData(),
                                  O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0)
        return file->fault();
    file->m_tiff.reset(TIFFFdOpen(descriptor, file->m_temporary.constData(), "w"));
    TIFF *const tiff = file->m_tiff.get();
    if (!tiff) {
        ::close(descriptor);
        return file->fault();
    }
    const bool isColour = page.format == SANE_FRAME_RGB;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(page.pixels_per_line));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, page.depth);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples(page));
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    // In a bit a set one is black (SANE standard, section 3.2.1).
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 isColour          ? PHOTOMETRIC_RGB
                 : page.depth == 1 ? PHOTOMETRIC_MINISWHITE
                                   : PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 32);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(resolution));
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(resolution));
    return file;
}

PageFile::~PageFile()
{
    m_tiff.reset();
    ::unlink(m_temporary.constData());
}

XPError PageFile::fault() const
{
    return XPError::fromErrno(errno ? errno : EIO, XPPath::decode(m_path));
}

std::optional<XPError> PageFile::append(const char *bytes, qsizetype size)
{
    m_pending.append(bytes, size);
    const qsizetype each = m_page.bytes_per_line;
    qsizetype from = 0;
    for (; m_pending.size() - from >= each; from += each) {
        if (auto error = writeLine(m_pending.mid(from, each)))
            return error;
    }
    m_pending.remove(0, from);
    return {};
}

std::optional<XPError> PageFile::writeLine(QByteArray line)
{
    if ((qint64{m_lines} + 1) * line.size() > mostBytes)
        return XPError::make(XPError::Kind::TooLarge,
                             QStringLiteral("the scanner sends a page without an end"));
    errno = 0;
    if (!m_tiff)
        m_pixels.append(line);
    else if (TIFFWriteScanline(m_tiff.get(), line.data(), static_cast<uint32_t>(m_lines), 0) != 1)
        return fault();
    ++m_lines;
    return {};
}

static QImage imageOf(const QByteArray &pixels, const SANE_Parameters &page, int lines)
{
    const bool isColour = page.format == SANE_FRAME_RGB;
    const QImage::Format format = page.depth == 1 ? QImage::Format_Mono
                                  : isColour      ? QImage::Format_RGB888
                                                  : QImage::Format_Grayscale8;
    QImage image(page.pixels_per_line, lines, format);
    if (page.depth == 1)
        image.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    const int step = page.depth == 16 ? 2 : 1;
    for (int y = 0; y < lines; ++y) {
        const char *from = pixels.constData() + qsizetype{y} * page.bytes_per_line;
        uchar *to = image.scanLine(y);
        const int bytes =
            page.depth == 1 ? (page.pixels_per_line + 7) / 8 : page.pixels_per_line * samples(page);
        // Of 16 bits the upper ones, which come second on the machines we run on.
        for (int x = 0; x < bytes; ++x)
            to[x] = static_cast<uchar>(from[x * step + step - 1]);
    }
    return image;
}

std::optional<XPError> PageFile::finish()
{
    if (m_lines == 0)
        return XPError::make(XPError::Kind::Malformed,
                             QStringLiteral("the scanner sent an empty page"));
    errno = 0;
    if (m_tiff) {
        if (TIFFFlush(m_tiff.get()) != 1 || ::fsync(TIFFFileno(m_tiff.get())) != 0)
            return fault();
        m_tiff.reset();
    } else {
        QImage image = imageOf(m_pixels, m_page, m_lines);
        const int perMetre = static_cast<int>(m_resolution / 0.0254);
        image.setDotsPerMeterX(perMetre);
        image.setDotsPerMeterY(perMetre);
        const bool isPng = m_path.toLower().endsWith(".png");
        if (!image.save(QString::fromUtf8(m_temporary), isPng ? "PNG" : "JPEG", 95))
            return fault();
    }
    if (::rename(m_temporary.constData(), m_path.constData()) != 0)
        return fault();
    return {};
}
