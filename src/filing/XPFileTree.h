#pragma once

#include "XPFileBytes.h"

#include <QByteArray>

// A file, link, pipe or folder with everything below it, by its name in an open folder: copied,
// compared and removed as one. Links are never followed, and nothing leads out of the tree.
// Any thread; blocking file calls. Functions return 0 or the errno.
namespace XPFileTree {

struct Copy
{
    bool attributesMayBeLost = false;
    XPFileBytes::Progress progress; // told the bytes of all files so far
    qint64 bytesDone = 0;
};

// Under a name that must be free. Everything is synced, and compared by size and attributes; the
// tree's topmost name is not synced yet. What was made by a failed call stays, for remove().
// ENOTSUP for devices and sockets; EILSEQ when the copy is not like the source.
int copy(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to, Copy &copy);

// Whether everything that is at `part` is, byte by byte and with its attributes, at `whole` too:
// EILSEQ if not.
int contains(int wholeFolder, const QByteArray &whole, int partFolder, const QByteArray &part,
             bool withAttributes);

// Never enters another volume (EXDEV). Nothing there is no error.
int remove(int folder, const QByteArray &name);

// Whether remove() would have the rights to, as far as one can tell before.
int mayRemove(int folder, const QByteArray &name);

} // namespace XPFileTree
