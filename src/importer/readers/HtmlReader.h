#pragma once

#include "DocumentReader.h"

// HTML and XHTML pages: their text, title, author, keywords and description.
class HtmlReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
};
