#pragma once

#include "DocumentReader.h"

// Audio and video: title, artist, album, duration, and the size of the picture.
class MediaReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
    std::optional<DocumentFailure> picture(const DocumentSource &source, int page, int pixels,
                                           QImage &image) const override;
};
