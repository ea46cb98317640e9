#pragma once

#include "XPError.h"

// The desktop's trash, as file managers know it (freedesktop.org trash specification 1.0): the home
// folder's, else that of the file's volume. Files can be put back from there.
// Any thread; blocking file calls, none of which copies a file.
namespace XPTrash {

// Moves a file, folder or link there, and answers where it is now. `knownAs` is the path that the
// trash tells, and the name it shows, of a file that lay under another one for a moment; empty:
// its own. Where no trash takes the file it stays where it is and the error says why; nothing is
// ever deleted instead. NotFound when there is no such file.
XPResult<QString> move(const QString &path, const QString &knownAs = {});

// Moves what is in a trash, as move() answered it, to a path that must be free (EEXIST), whose
// folder is made when it is gone.
std::optional<XPError> putBack(const QString &inTrash, const QString &path);

// The trash folder that takes the path, made when missing: the home's on the same file system,
// else that of the path's volume. Unsupported when that volume keeps none.
XPResult<QString> folderFor(const QString &path);

// A free place in a trash, with the note that tells where the file was: for whoever moves it there
// with other rights. release() takes the note away again.
XPResult<QString> reserve(const QString &trash, const QString &path);
void release(const QString &inTrash);

} // namespace XPTrash
