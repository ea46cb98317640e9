#include "HeifReader.h"

#include "ByteFields.h"
#include "DocumentFacts.h"
#include "HeifDocument.h"
#include "ImageMetadata.h"
#include "XmpPacket.h"

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
