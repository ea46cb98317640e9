#pragma once

#include "IndexRecord.h"

// Finds the text and the metadata inside a file. The index has one for text files; others hand
// the work to a process of their own.
// Threads: called on the content thread only; may take long. Never throws.
class IndexImporter
{
public:
    struct Content
    {
        QString text;                       // cut to the index's limit
        IndexRecord::Attributes attributes; // "kMDItemTitle", "kMDItemNumberOfPages", …
    };

    virtual ~IndexImporter() = default;
    virtual bool accepts(const QString &type) const = 0;
    // An error means that nothing can be had from this file as it is; it is tried again when it
    // changes.
    virtual XPResult<Content> import(const QByteArray &path, const QString &type) = 0;
};

// Plain text, Markdown and source code, read directly: up to 1 MiB, as UTF-8 or, by its mark,
// UTF-16; bytes that are no UTF-8 count as Latin-1, and a file that holds zero bytes as no text.
// The first heading of a Markdown file is its title.
class IndexPlainTextImporter : public IndexImporter
{
public:
    static constexpr qsizetype maximumBytes = 1 << 20;

    bool accepts(const QString &type) const override;
    XPResult<Content> import(const QByteArray &path, const QString &type) override;
};
