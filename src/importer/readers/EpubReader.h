#pragma once

#include "DocumentReader.h"

// Books in EPUB 2 and 3: the chapters in reading order and what the package document says.
class EpubReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
    std::optional<DocumentFailure> picture(const DocumentSource &source, int page, int pixels,
                                           QImage &image) const override;
};
