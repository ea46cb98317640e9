#pragma once

#include "XPError.h"

// The desktop's trash, as file managers know it (freedesktop.org trash specification): the home
// folder's, else that of the file's volume. Files can be put back from there.
// Any thread; blocking file calls, none of which copies a file.
namespace XPTrash {

// Moves a file, folder or link there. Where that is impossible the file stays where it is and the
// error says why; nothing is ever deleted instead. NotFound when there is no such file.
std::optional<XPError> move(const QString &path);

} // namespace XPTrash
