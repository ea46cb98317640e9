#pragma once

#include <QByteArrayView>
#include <functional>

// The names in a folder, as bytes. Any thread; blocking file calls.
namespace XPFolderNames {

// Calls `take` for each name but "." and ".." until it answers false. Returns 0, or the errno of
// a reading that failed: the names are not all then. `folder` is an open folder (AT_FDCWD: none)
// and `path` one relative to it; a link in the last place is not followed.
int forEach(int folder, const char *path, const std::function<bool(QByteArrayView)> &take);

} // namespace XPFolderNames
