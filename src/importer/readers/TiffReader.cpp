#include "TiffReader.h"

#include "DocumentFacts.h"
#include "ImageReader.h"
#include "PictureDecoding.h"
#include "TiffDocument.h"

#include <QImage>
#include <algorithm>

std::optional<DocumentFailure> TiffReader::read(const DocumentSource &source,
                                                DocumentAnswer &answer) const
{
    const TiffDocument document(source);
    if (!document.tiff())
        return DocumentFailure::Damaged;
    std::ignore = ImageReader().read(source, answer); // the pages are there all the same
    DocumentFacts facts(answer);
    quint32 width = 0;
    quint32 height = 0;
    if (TIFFGetField(document.tiff(), TIFFTAG_IMAGEWIDTH, &width) &&
        TIFFGetField(document.tiff(), TIFFTAG_IMAGELENGTH, &height))
        facts.setPixelSize(width, height);
    answer.pages = document.pages();
    return {};
}

std::optional<DocumentFailure> TiffReader::picture(const DocumentSource &source, int page,
                                                   int pixels, QImage &image) const
{
    const TiffDocument document(source);
    TIFF *tiff = document.tiff();
    if (!tiff)
        return DocumentFailure::Damaged;
    if (!TIFFSetDirectory(tiff, static_cast<tdir_t>(page - 1)))
        return DocumentFailure::Unsupported;
    quint32 width = 0;
    quint32 height = 0;
    quint16 orientation = ORIENTATION_TOPLEFT;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ORIENTATION, &orientation);
    if (width == 0 || height == 0)
        return DocumentFailure::Damaged;
    if (qint64{width} * height > PictureDecoding::mostPixels)
        return DocumentFailure::TooLarge;
    // The library's packed pixels are bytes in the order red, green, blue, alpha. Asked for the
    // orientation that the page has, it turns nothing.
    QImage whole(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGBA8888);
    if (whole.isNull())
        return DocumentFailure::TooLarge;
    if (!TIFFReadRGBAImageOriented(tiff, width, height, reinterpret_cast<quint32 *>(whole.bits()),
                                   orientation, 0))
        return DocumentFailure::Damaged;
    // Faxes have pixels that are higher than wide.
    float across = 0;
    float down = 0;
    if (TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &across) &&
        TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &down) && across > down * 1.2F && down > 0)
        whole =
            whole.scaled(std::max(1, static_cast<int>(static_cast<float>(width) * down / across)),
                         static_cast<int>(height), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    image = PictureDecoding::upright(PictureDecoding::fitted(whole, pixels), orientation);
    return {};
}
