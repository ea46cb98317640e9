#pragma once

#include "DocumentReader.h"

// Files that stand for an address: web locations and bookmarks (property lists), internet shortcuts
// (".url") and desktop entries.
class LinkReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
};
