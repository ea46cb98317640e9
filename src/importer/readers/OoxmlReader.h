#pragma once

#include "DocumentReader.h"

// Office Open XML (ECMA-376): text documents, workbooks and presentations with their templates
// and macro variants. Body, headers, footers, notes and comments; the cells of every sheet; the
// slides in the order in which they are shown, each with its notes; the properties.
class OoxmlReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
    std::optional<DocumentFailure> picture(const DocumentSource &source, int page, int pixels,
                                           QImage &image) const override;
};
