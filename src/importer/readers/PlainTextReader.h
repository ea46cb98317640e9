#pragma once

#include "DocumentReader.h"

// Plain text, Markdown and source code: as UTF-8 or, by its mark, UTF-16 or UTF-32; bytes that are
// no UTF-8 count as Latin-1. A file that holds zero bytes or many control characters is no text:
// its answer is empty, without a failure. The first heading of a Markdown file is its title.
class PlainTextReader : public DocumentReader
{
public:
    std::optional<DocumentFailure> read(const DocumentSource &source,
                                        DocumentAnswer &answer) const override;

    // The bytes of a file's start as UTF-8; empty when they are no text. `cut`: the file goes on.
    static QByteArray decoded(const QByteArray &bytes, bool cut);
};
