#pragma once

#include "DocumentReader.h"

// Drawings in SVG, also compressed (".svgz"): title, description, the texts in them, the size.
class SvgReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
    std::optional<DocumentFailure> picture(const DocumentSource &source, int page, int pixels,
                                           QImage &image) const override;
};
