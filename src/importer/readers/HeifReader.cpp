#include "HeifReader.h"

#include "ByteFields.h"
#include "DocumentFacts.h"
#include "HeifDocument.h"
#include "ImageMetadata.h"
#include "PictureDecoding.h"
#include "XmpPacket.h"

#include <QImage>
#include <memory>
#include <vector>

// Four bytes say how far behind them the TIFF header of the EXIF data begins.
static void readExif(const QByteArray &block, DocumentFacts &facts)
{
    const qint64 start = 4 + qint64{ByteFields::big<quint32>(block, 0)};
    const QByteArrayView bytes = ByteFields::part(block, start, block.size());
    if (bytes.isEmpty())
        return;
    Exiv2::ExifData exif;
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    try {
        Exiv2::ExifParser::decode(exif, reinterpret_cast<const Exiv2::byte *>(bytes.data()),
                                  static_cast<uint32_t>(bytes.size()));
        ImageMetadata::fill(exif, facts);
    } catch (const Exiv2::AnyError &) { // broken metadata say nothing about the picture
        return;
    }
}

std::optional<DocumentFailure> HeifReader::read(const DocumentSource &source,
                                                DocumentAnswer &answer) const
{
    HeifDocument document;
    if (const auto failure = HeifDocument::open(source, document))
        return failure;
    DocumentFacts facts(answer);
    readExif(document.metadata("Exif"), facts);
    XmpPacket::read(document.metadata("mime"), facts);
    // The library's size is that of the picture shown upright.
    facts.setPixelSize(heif_image_handle_get_width(document.primary()),
                       heif_image_handle_get_height(document.primary()));
    if (document.images() > 1)
        answer.pages = document.images();
    return {};
}

std::optional<DocumentFailure> HeifReader::picture(const DocumentSource &source, int page,
                                                   int pixels, QImage &image) const
{
    HeifDocument document;
    if (const auto failure = HeifDocument::open(source, document))
        return failure;
    if (page > document.images())
        return DocumentFailure::Unsupported;
    std::unique_ptr<heif_image_handle, HeifDocument::Freer> other;
    heif_image_handle *handle = document.primary();
    if (page > 1) {
        std::vector<heif_item_id> ids(static_cast<size_t>(document.images()));
        heif_context_get_list_of_top_level_image_IDs(document.context(), ids.data(),
                                                     document.images());
        heif_context_get_image_handle(document.context(), ids[static_cast<size_t>(page - 1)],
                                      &handle);
        other.reset(handle);
    }
    const int width = handle ? heif_image_handle_get_width(handle) : 0;
    const int height = handle ? heif_image_handle_get_height(handle) : 0;
    if (width <= 0 || height <= 0)
        return DocumentFailure::Damaged;
    if (qint64{width} * height > PictureDecoding::mostPixels)
        return DocumentFailure::TooLarge;
    heif_image *decoded = nullptr; // upright, as the library turns it
    if (heif_decode_image(handle, &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA,
                          nullptr)
            .code != heif_error_Ok)
        return DocumentFailure::Damaged;
    const std::unique_ptr<heif_image, void (*)(const heif_image *)> owner(decoded,
                                                                          heif_image_release);
    int line = 0;
    const uint8_t *bytes = heif_image_get_plane_readonly(decoded, heif_channel_interleaved, &line);
    if (!bytes)
        return DocumentFailure::Damaged;
    const QImage whole(bytes, heif_image_get_width(decoded, heif_channel_interleaved),
                       heif_image_get_height(decoded, heif_channel_interleaved), line,
                       QImage::Format_RGBA8888);
    image = PictureDecoding::fitted(whole, pixels).copy();
    return {};
}
