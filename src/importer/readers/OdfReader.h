#pragma once

#include "DocumentReader.h"

// OpenDocument (ISO/IEC 26300): texts, sheets, presentations and drawings, packed or as one flat
// XML file. Body with notes and comments, headers and footers, the properties.
class OdfReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
    std::optional<DocumentFailure> picture(const DocumentSource &source, int page, int pixels,
                                           QImage &image) const override;
};
