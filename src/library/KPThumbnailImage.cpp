#include "KPThumbnailImage.h"

#include "XPPath.h"

#include <QFile>
#include <QImageReader>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static constexpr qint64 maximumFileSize = 512LL << 20;
static constexpr qint64 maximumPixels = 120'000'000; // larger than any camera's, 480 MB decoded
static constexpr int maximumMegabytes = 512;

// Formats as QImageReader names them. SVG is not among them: it can refer to other files and
// take for ever; nor are formats that only ever occur in attacks.
static constexpr std::array<const char *, 6> formats{"jpeg", "png", "gif", "bmp", "webp", "tiff"};

bool kpMayHaveThumbnail(const QString &extension)
{
    static const QStringList extensions{
        QStringLiteral("jpg"),  QStringLiteral("jpeg"), QStringLiteral("jpe"),
        QStringLiteral("png"),  QStringLiteral("gif"),  QStringLiteral("bmp"),
        QStringLiteral("webp"), QStringLiteral("tif"),  QStringLiteral("tiff")};
    return extensions.contains(extension, Qt::CaseInsensitive);
}

// O_NONBLOCK: a pipe of that name must not hold us up before it is recognised.
static int openRegularFile(const QString &path)
{
    const QByteArray name = XPPath::encode(path);
    const int descriptor =
        name.isEmpty() ? -1
                       : ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    struct stat status = {};
    if (descriptor >= 0 && ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_size <= maximumFileSize)
        return descriptor;
    if (descriptor >= 0)
        ::close(descriptor);
    return -1;
}

// The size that the decoder is asked for: it turns the picture afterwards, so a square will do.
static QSize decodedSize(const QSize &full, int side)
{
    return full.width() > side || full.height() > side
               ? full.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1})
               : full;
}

static QImage read(QImageReader &reader, int side)
{
    QImageReader::setAllocationLimit(maximumMegabytes);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    if (std::find(formats.begin(), formats.end(), format) == formats.end())
        return {};
    const QSize full = reader.size();
    if (!full.isValid() || full.isEmpty() || qint64(full.width()) * full.height() > maximumPixels)
        return {};
    reader.setScaledSize(decodedSize(full, side));
    return reader.read();
}

QImage kpThumbnailImage(const QString &path, int side)
{
    const int descriptor = openRegularFile(path);
    if (descriptor < 0)
        return {};
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return {};
    }
    QImageReader reader(&file);
    const QImage image = read(reader, side);
    return image.isNull()
               ? image
               : image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                               : QImage::Format_RGB32);
}
