#pragma once

#include "DocumentReader.h"

// Archives: the names of what is in them. Nothing is taken out; of compressed streams only so much
// is unpacked as leads from one name to the next, up to a limit.
class ArchiveReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
};
