#pragma once

#include "DocumentReader.h"

// Text documents, workbooks and presentations of office programs before 2007 (from 1995 on), and
// stored messages of that family (".msg"). The container of an encrypted newer document is one of
// these too, and is said to be encrypted.
class OleReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;
};
