#pragma once

#include <QtGlobal>
#include <functional>

// The bytes of open files. Any thread; blocking file calls. Functions return 0 or the errno.
namespace XPFileBytes {

// Called with the bytes copied so far; false stops the copy with ECANCELED.
using Progress = std::function<bool(qint64)>;

// Copies a whole file into a new, empty one. The blocks are shared where the file system can do
// that, and holes stay holes.
int copy(int from, int to, qint64 size, const Progress &progress);

// EILSEQ when the files differ.
int compare(int one, int other);

} // namespace XPFileBytes
