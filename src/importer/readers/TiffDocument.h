#pragma once

#include "DocumentSource.h"

#include <memory>
#include <tiffio.h>

// A TIFF file opened from its descriptor, for its pages.
// Threads: one at a time in the process (the library's error handlers are shared).
class TiffDocument
{
public:
    explicit TiffDocument(const DocumentSource &source);

    // Null when it is none.
    TIFF *tiff() const { return m_tiff.get(); }
    // Pages, counted to a limit. Moves tiff() to another page.
    int pages() const;

private:
    struct Place
    {
        const DocumentSource *source = nullptr;
        qint64 at = 0;
    };
    struct Closer
    {
        void operator()(TIFF *tiff) const { TIFFClose(tiff); }
    };

    Place m_place;
    std::unique_ptr<TIFF, Closer> m_tiff;
};
