#pragma once

#include "XPError.h"

// Renaming that never replaces: where the new name is taken, nothing happens.
// Any thread; blocking file calls.
namespace XPRename {

// Both paths on one file system; a link is renamed itself. NotPermitted, NoSpace and so on as the
// system says; EEXIST (Kind::Io) when the name is taken, EXDEV across file systems. Where the file
// system has no such call, a second name is made first, so that two renames to one name still
// cannot both succeed.
std::optional<XPError> toFreeName(const QString &from, const QString &to);

// The same for the bytes of paths: 0, or the errno.
int toFreeName(const char *from, const char *to);

// The same for names in open folders (AT_FDCWD: none).
int toFreeNameAt(int fromFolder, const char *from, int toFolder, const char *to);

} // namespace XPRename
