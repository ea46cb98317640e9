#pragma once

#include "IndexRecord.h"

#include <stop_token>

// Finds the text and the metadata inside files of some types. The index has one for text files;
// others hand the work to a process of their own.
//
// Threads: called on one thread only, at idle priority. Takes no lock that others need for long.
// Never throws.
class IndexImporter
{
public:
    struct Content
    {
        QByteArray text; // UTF-8, cut to the index's limit; empty: none to be had
        IndexRecord::Attributes attributes; // "kMDItemTitle", "kMDItemNumberOfPages", …
        // The state of the file that was read, as it was before reading and after.
        qint64 modified = 0;
        qint64 size = 0;
    };

    virtual ~IndexImporter() = default;
    // Asked once for each type.
    virtual bool accepts(const QString &type) const = 0;
    // An error means that the file cannot be read now; it is tried again when it changes and at
    // the next start. `stop`: give up soon, with any error.
    virtual XPResult<Content> import(const QByteArray &path, const QString &type,
                                     const std::stop_token &stop) = 0;
};

// Plain text, Markdown and source code, read directly: up to 1 MiB, as UTF-8 or, by its mark,
// UTF-16 or UTF-32; bytes that are no UTF-8 count as Latin-1. A file that holds zero bytes or many
// control characters is no text. The first heading of a Markdown file is its title.
class IndexPlainTextImporter : public IndexImporter
{
public:
    static constexpr qsizetype maximumBytes = 1 << 20;

    bool accepts(const QString &type) const override;
    XPResult<Content> import(const QByteArray &path, const QString &type,
                             const std::stop_token &stop) override;

    // The bytes of a file's start as UTF-8; empty when they are no text. `cut`: the file goes on.
    static QByteArray decoded(const QByteArray &bytes, bool cut);
};
