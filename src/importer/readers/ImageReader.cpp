#include "ImageReader.h"

#include "DocumentFacts.h"
#include "ImageMetadata.h"
#include "PictureDecoding.h"
#include "XmpPacket.h"

#include <QIODevice>
#include <QImage>
#include <QImageReader>
#include <algorithm>

void ImageReader::prepare() const
{
    Exiv2::XmpParser::initialize();
    QImageReader::supportedImageFormats(); // loads the plugins
}

std::optional<DocumentFailure> ImageReader::read(const DocumentSource &source,
                                                 DocumentAnswer &answer) const
{
    DocumentFacts facts(answer);
    const auto image = ImageMetadata::open(source);
    if (image) {
        const int orientation = ImageMetadata::orientation(image->exifData());
        ImageMetadata::fill(image->iptcData(), facts);
        ImageMetadata::fill(image->exifData(), facts);
        const std::string &packet = image->xmpPacket();
        XmpPacket::read(QByteArrayView(packet.data(), static_cast<qsizetype>(packet.size())),
                        facts);
        facts.setText(DocumentFacts::description, QString::fromStdString(image->comment()));
        facts.setPixelSize(image->pixelWidth(), image->pixelHeight(),
                           ImageMetadata::isTurned(orientation));
    }
    if (answer.attributes.contains(DocumentFacts::pixelWidth))
        return {};
    const auto device = source.device();
    QImageReader header(device.get());
    header.setDecideFormatFromContent(true);
    const QSize size = header.size();
    if (size.isValid()) {
        const bool isTurned = header.transformation() & QImageIOHandler::TransformationRotate90;
        facts.setPixelSize(size.width(), size.height(), isTurned);
        return {};
    }
    // A format that nobody here knows is not therefore damaged.
    return image ? std::nullopt
                 : std::optional(header.canRead() || source.size() == 0 ||
                                         ImageMetadata::isKnown(source)
                                     ? DocumentFailure::Damaged
                                     : DocumentFailure::Unsupported);
}

// Of the previews that a camera put into its raw data, the smallest that is large enough, or else
// the largest.
static std::optional<DocumentFailure> decodePreview(const Exiv2::Image &image, int pixels,
                                                    QImage &picture)
{
    const Exiv2::PreviewManager manager(image);
    const auto previews = manager.getPreviewProperties(); // by size, the smallest first
    if (previews.empty())
        return DocumentFailure::Unsupported;
    const auto wanted = static_cast<size_t>(pixels);
    auto chosen = std::find_if(previews.begin(), previews.end(), [wanted](const auto &preview) {
        return std::max(preview.width_, preview.height_) >= wanted;
    });
    if (chosen == previews.end())
        --chosen;
    const Exiv2::PreviewImage preview = manager.getPreviewImage(*chosen);
    const auto *bytes = reinterpret_cast<const char *>(preview.pData());
    const auto failure = PictureDecoding::decode(
        QByteArray(bytes, static_cast<qsizetype>(preview.size())), pixels, picture);
    if (!failure)
        picture = PictureDecoding::upright(picture, ImageMetadata::orientation(image.exifData()));
    return failure;
}

std::optional<DocumentFailure> ImageReader::picture(const DocumentSource &source, int page,
                                                    int pixels, QImage &image) const
{
    if (page > 1)
        return DocumentFailure::Unsupported;
    const auto preview = [&] {
        const auto metadata = ImageMetadata::open(source);
        return metadata ? decodePreview(*metadata, pixels, image) : DocumentFailure::Unsupported;
    };
    // A camera's file looks like a TIFF that holds a tiny picture, or none that can be read.
    const bool isRaw = source.conformsTo(u"public.camera-raw-image");
    if (isRaw && !preview())
        return {};
    const auto device = source.device();
    const auto failure = PictureDecoding::decode(*device, pixels, image);
    return failure == DocumentFailure::Unsupported && !isRaw ? preview() : failure;
}
