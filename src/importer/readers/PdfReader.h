#pragma once

#include "DocumentReader.h"

// Portable Document Format (ISO 32000): the text, a page after the other, and the properties.
class PdfReader : public DocumentReader
{
public:
    std::vector<QByteArray> readOnlyFolders() const override;
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
    std::optional<DocumentFailure> picture(const DocumentSource &source, int page, int pixels,
                                           QImage &image) const override;
};
