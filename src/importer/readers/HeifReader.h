#pragma once

#include "DocumentReader.h"

// HEIF, HEIC and AVIF pictures: the size of the main picture, how many there are, and what stands
// in their metadata.
class HeifReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
    std::optional<DocumentFailure> picture(const DocumentSource &source, int page, int pixels,
                                           QImage &image) const override;
};
