#include "HeifDocument.h"

#include <algorithm>

std::optional<DocumentFailure> HeifDocument::open(const DocumentSource &source,
                                                  HeifDocument &document)
{
    static const heif_reader functions = {
        1, [](void *data) -> int64_t { return static_cast<Place *>(data)->at; },
        [](void *to, size_t size, void *data) {
            auto &place = *static_cast<Place *>(data);
            const auto wanted = static_cast<qsizetype>(size);
            const QByteArray bytes = place.source->read(place.at, wanted).valueOr({});
            std::copy(bytes.begin(), bytes.end(), static_cast<char *>(to));
            place.at += bytes.size();
            return bytes.size() == wanted ? 0 : 1;
        },
        [](int64_t position, void *data) {
            auto &place = *static_cast<Place *>(data);
            if (position < 0 || position > place.source->size())
                return 1;
            place.at = position;
            return 0;
        },
        [](int64_t size, void *data) {
            return size <= static_cast<Place *>(data)->source->size()
                       ? heif_reader_grow_status_size_reached
                       : heif_reader_grow_status_size_beyond_eof;
        }};
    document.m_place = std::make_unique<Place>(Place{&source, 0});
    document.m_context.reset(heif_context_alloc());
    const heif_error error = heif_context_read_from_reader(document.m_context.get(), &functions,
                                                           document.m_place.get(), nullptr);
    heif_image_handle *primary = nullptr;
    if (error.code != heif_error_Ok ||
        heif_context_get_primary_image_handle(document.m_context.get(), &primary).code !=
            heif_error_Ok)
        return error.code == heif_error_Unsupported_filetype ? DocumentFailure::Unsupported
                                                             : DocumentFailure::Damaged;
    document.m_primary.reset(primary);
    return {};
}

QByteArray HeifDocument::metadata(const char *type) const
{
    constexpr size_t longest = 16 << 20;
    heif_item_id id = 0;
    if (heif_image_handle_get_list_of_metadata_block_IDs(primary(), type, &id, 1) < 1)
        return {};
    const size_t size = heif_image_handle_get_metadata_size(primary(), id);
    if (size == 0 || size > longest)
        return {};
    QByteArray bytes(static_cast<qsizetype>(size), '\0');
    if (heif_image_handle_get_metadata(primary(), id, bytes.data()).code != heif_error_Ok)
        return {};
    return bytes;
}
