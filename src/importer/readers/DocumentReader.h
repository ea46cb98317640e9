#pragma once

#include "DocumentSource.h"

#include <vector>

class QImage;

// Reads one format of foreign documents.
//
// A new format is one class of this kind in a file of its own and one row in DocumentReaders.cpp.
// It runs in the cage: opening files, running programs, the network and writing are refused with
// an errno, memory ends at 512 MiB (std::bad_alloc). An exception that comes out counts as
// Damaged, bad_alloc as TooLarge; a reader need not catch its library's. One object serves all
// files of the worker's life, so it keeps nothing of one for the next.
// Threads: the worker's main thread.
class DocumentReader
{
public:
    DocumentReader() = default;
    virtual ~DocumentReader() = default;
    DocumentReader(const DocumentReader &) = delete;
    DocumentReader &operator=(const DocumentReader &) = delete;

    // Before the cage is closed, once: load what the library would look for on the disk later
    // (plugins, fonts, character sets).
    virtual void prepare() const {}
    // System folders, without anything of the user's, that the library opens while it reads (fonts
    // that documents name). They stay readable in the cage where the kernel can see to it that
    // they alone do, and cannot be counted on elsewhere.
    virtual std::vector<QByteArray> readOnlyFolders() const { return {}; }

    // Fills `answer` as far as it gets. Nothing: all of it could be read (mustStop() and a full
    // text are no failures).
    virtual std::optional<DocumentFailure> read(const DocumentSource &source,
                                                DocumentAnswer &answer) const = 0;

    // Page `page`, from 1, upright, its longer side at most `pixels` (device pixels) and as near to
    // it as the format allows without blowing up what is smaller. Unsupported: no pictures here.
    virtual std::optional<DocumentFailure> picture(const DocumentSource &source, int page,
                                                   int pixels, QImage &image) const;
};
