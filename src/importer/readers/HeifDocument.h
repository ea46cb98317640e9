#pragma once

#include "DocumentSource.h"

#include <libheif/heif.h>
#include <memory>

// A HEIF file opened from its descriptor, for its facts and for its pictures.
// Threads: any; one object, one thread. The source must outlive it.
class HeifDocument
{
public:
    struct Freer
    {
        void operator()(heif_context *context) const { heif_context_free(context); }
        void operator()(heif_image_handle *handle) const { heif_image_handle_release(handle); }
    };

    static std::optional<DocumentFailure> open(const DocumentSource &source,
                                               HeifDocument &document);

    heif_context *context() const { return m_context.get(); }
    heif_image_handle *primary() const { return m_primary.get(); }
    int images() const { return heif_context_get_number_of_top_level_images(context()); }
    // The metadata blocks of one type ("Exif", or "mime" with XMP); empty: none.
    QByteArray metadata(const char *type) const;

private:
    struct Place
    {
        const DocumentSource *source = nullptr;
        qint64 at = 0;
    };

    std::unique_ptr<Place> m_place; // at one address: the library keeps it
    std::unique_ptr<heif_context, Freer> m_context;
    std::unique_ptr<heif_image_handle, Freer> m_primary;
};
