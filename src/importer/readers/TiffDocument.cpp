#include "TiffDocument.h"

#include <cstring>

TiffDocument::TiffDocument(const DocumentSource &source) : m_place{&source, 0}
{
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    const TIFFReadWriteProc read = [](thandle_t data, void *to, tmsize_t size) -> tmsize_t {
        auto &place = *static_cast<Place *>(data);
        const QByteArray bytes = place.source->read(place.at, size).valueOr({});
        std::memcpy(to, bytes.constData(), static_cast<size_t>(bytes.size()));
        place.at += bytes.size();
        return bytes.size();
    };
    const TIFFReadWriteProc write = [](thandle_t, void *, tmsize_t) -> tmsize_t { return -1; };
    const TIFFSeekProc seek = [](thandle_t data, toff_t offset, int from) -> toff_t {
        auto &place = *static_cast<Place *>(data);
        const qint64 base = from == SEEK_SET   ? 0
                            : from == SEEK_CUR ? place.at
                                               : place.source->size();
        qint64 to = 0;
        if (__builtin_add_overflow(base, static_cast<qint64>(offset), &to) || to < 0)
            return static_cast<toff_t>(-1);
        place.at = to;
        return static_cast<toff_t>(to);
    };
    const TIFFCloseProc close = [](thandle_t) { return 0; };
    const TIFFSizeProc size = [](thandle_t data) -> toff_t {
        return static_cast<toff_t>(static_cast<Place *>(data)->source->size());
    };
    m_tiff.reset(
        TIFFClientOpen("", "rm", &m_place, read, write, seek, close, size, nullptr, nullptr));
}

int TiffDocument::pages() const
{
    constexpr int mostPages = 10'000; // the list of pages may lead back into itself
    int pages = 1;
    while (pages < mostPages && !m_place.source->mustStop() && TIFFReadDirectory(tiff()))
        ++pages;
    return pages;
}
