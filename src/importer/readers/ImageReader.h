#pragma once

#include "DocumentReader.h"

// Pictures, camera raw files too: size, camera, dates, place, and what people wrote into them.
// Headers only: the size of a picture does not matter.
class ImageReader : public DocumentReader
{
public:
    void prepare() const override;
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
    std::optional<DocumentFailure> picture(const DocumentSource &source, int page, int pixels,
                                           QImage &image) const override;
};
