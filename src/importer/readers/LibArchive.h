#pragma once

#include "XPError.h"

#include <QByteArray>
#include <memory>

struct archive;
class DocumentSource;

// An archive opened over a document's descriptor. Nothing is ever extracted to a disk.
// Threads: any; one object, one thread.
namespace LibArchive {

enum class Formats {
    Zip, // by its directory at the end
    Any, // every format and compression of the library but those that run a program
};

struct Closer
{
    void operator()(archive *open) const;
};
using Handle = std::unique_ptr<archive, Closer>;

// Null when the file is none of the formats.
Handle open(const DocumentSource &source, Formats formats);

// A file that is packed alone (".gz" and the like), unpacked; Kind::TooLarge when there is more
// than `limit` in it.
XPResult<QByteArray> decompressed(const DocumentSource &source, qsizetype limit);

} // namespace LibArchive
