#pragma once

#include "XPError.h"

#include <QStringList>

// Whether a folder can hold what files carry besides their bytes (tags, rating, access lists): to
// be asked before files are moved or copied there, so that nobody loses them unasked. Threads: any;
// blocking file calls, some for each file.
namespace XPAttributeRoom {

// Those of the paths that would lose something in the folder, found by trying on a file without a
// name. None on the folder's own file system. Fails where the folder takes no files at all.
XPResult<QStringList> wouldLose(const QStringList &paths, const QString &folder);

} // namespace XPAttributeRoom
