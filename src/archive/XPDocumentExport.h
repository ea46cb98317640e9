#pragma once

#include "XPError.h"

#include <QStringList>
#include <functional>

// Writes documents, with everything that stands on them, to one archive for another machine or a
// file system without attributes (docs/formats.md).
//
// The archive appears under its name when it is whole, synced and was read back, and never over
// another file. A document that cannot be read is told of and left out; so is one that changes
// while it is read. Memory depends on the number of paths alone.
// Threads: any; blocking file calls.
class XPDocumentExport
{
public:
    struct Options
    {
        // Called before each document with the number of those that are through. False stops:
        // Cancelled, and nothing is left.
        std::function<bool(qint64 done)> progress;
        std::function<void(const QString &path, const XPError &error)> failed;
    };
    struct Result
    {
        std::optional<XPError> error; // there is no archive
        qint64 documents = 0;
        qint64 bytes = 0; // of their contents
        qint64 archiveSize = 0;
    };

    // The paths are files and packages; in the archive they have their places below the folder that
    // they have in common.
    static Result run(const QStringList &paths, const QString &archive, const Options &options);

    // The deepest folder that all of them lie in.
    static QString commonFolder(const QStringList &paths);
};
