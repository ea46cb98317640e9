#pragma once

#include "DocumentReader.h"

// Rich Text Format: its text and its information group. The part of a package (".rtfd") that
// holds the text is such a file.
class RtfReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
};
