#pragma once

#include "DocumentReader.h"

// TIFF pictures and faxes: what ImageReader finds, and how many pages there are.
class TiffReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
    std::optional<DocumentFailure> picture(const DocumentSource &source, int page, int pixels,
                                           QImage &image) const override;
};
