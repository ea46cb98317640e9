#pragma once

#include "XPError.h"

#include <QStringList>

// The desktop's list of recently used files, which its file choosers, launchers and shells show:
// "recently-used.xbel" in the user's data folder, in the format of the Desktop Bookmark
// Specification of freedesktop.org.
//
// The list is everybody's. It is read anew under the lock that other programs take too, what they
// wrote into it is kept, and it is replaced as a whole; one that does not parse is left alone.
// Where the user told GNOME or KDE not to remember files, nothing is written.
// Threads: any.
namespace XPRecentFiles {

// Files that Murn opened just now; on a thread of its own, which the end of the program waits for.
// Many calls in a row are written as one. What fails is logged.
void note(const QStringList &paths);

// The same at once. Blocking file calls. Folders are left out.
std::optional<XPError> add(const QStringList &paths);

} // namespace XPRecentFiles
