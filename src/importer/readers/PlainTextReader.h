#pragma once

#include "DocumentReader.h"

// Plain text in any usual encoding, Markdown, source code, tables of separated values. A file that
// holds zero bytes or many control characters is no text: its answer is empty, without a failure.
// The first heading of a Markdown file is its title.
class PlainTextReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
};
