#include "ImageReader.h"

#include "DocumentFacts.h"
#include "ImageMetadata.h"
#include "XmpPacket.h"

#include <QIODevice>
#include <QImageReader>

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
                 : std::optional(header.canRead() || source.size() == 0
                                     ? DocumentFailure::Damaged
                                     : DocumentFailure::Unsupported);
}
