#include "PictureDecoding.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QTransform>

static QSize fittedSize(const QSize &size, int pixels)
{
    const bool fits = size.width() <= pixels && size.height() <= pixels;
    return fits ? size : size.scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

std::optional<DocumentFailure> PictureDecoding::decode(QIODevice &device, int pixels, QImage &image)
{
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!reader.canRead())
        return DocumentFailure::Unsupported;
    const QSize size = reader.size();
    const bool isBits = reader.imageFormat() == QImage::Format_Mono ||
                        reader.imageFormat() == QImage::Format_MonoLSB;
    // Formats that cannot decode in a reduced size decode as a whole, whatever is asked for.
    const bool reduces = reader.format() == "jpeg" || reader.format() == "svg";
    if (size.isValid() && !reduces && qint64{size.width()} * size.height() > mostPixels)
        return DocumentFailure::TooLarge;
    if (size.isValid() && !isBits)
        reader.setScaledSize(fittedSize(size, pixels));
    if (!reader.read(&image))
        return DocumentFailure::Damaged;
    image = fitted(image, pixels);
    return {};
}

std::optional<DocumentFailure> PictureDecoding::decode(const QByteArray &bytes, int pixels,
                                                       QImage &image)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return decode(buffer, pixels, image);
}

QImage PictureDecoding::fitted(const QImage &image, int pixels)
{
    const QSize size = fittedSize(image.size(), pixels);
    if (size == image.size())
        return image;
    const QImage colours =
        image.depth() < 8 ? image.convertToFormat(QImage::Format_ARGB32_Premultiplied) : image;
    return colours.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage PictureDecoding::upright(const QImage &image, int orientation)
{
    QTransform turn;
    switch (orientation) {
    case 2:
        return image.mirrored(true, false);
    case 3:
        return image.mirrored(true, true);
    case 4:
        return image.mirrored(false, true);
    case 5:
        return image.mirrored(true, false).transformed(turn.rotate(270));
    case 6:
        return image.transformed(turn.rotate(90));
    case 7:
        return image.mirrored(true, false).transformed(turn.rotate(90));
    case 8:
        return image.transformed(turn.rotate(270));
    default:
        return image;
    }
}
