#pragma once

#include "XPError.h"
#include "XPMutex.h"

#include <QString>
#include <functional>

// The trash for files, also for those that only an administrator may move.

// The trash folder that takes the path: the home's where a rename gets there, else that of the
// path's volume (freedesktop.org trash specification), made when missing. Unsupported when that
// volume keeps none. Any thread; blocking file calls.
XPResult<QString> TrashFolderForPath(const QString &path);

// Asks for administrator's rights to move the file to the trash; where that cannot be, confirms
// and removes it for good. Nothing happens to the home folder and to what does not exist. Main
// thread; `done` comes there, with Cancelled when the user said no.
void AuthenticatedMoveToTrash(const QString &path,
                              const std::function<void(std::optional<XPError>)> &done)
    XP_REQUIRES(xpGuiThread);
