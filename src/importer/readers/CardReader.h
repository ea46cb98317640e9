#pragma once

#include "DocumentReader.h"

// Address cards (".vcf"), and those that are property lists (".abcdp").
class CardReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
};
