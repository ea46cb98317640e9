#pragma once

#include "XPError.h"
#include "XPMutex.h"

#include <QString>
#include <functional>

// The trash for files, also for those that only an administrator may move.

// As XPTrash::move(). Any thread; blocking file calls.
XPResult<QString> MoveFileToTrash(const QString &path);

// The trash folder that takes the path, made when missing: the home's on the same file system, else
// that of the path's volume. Unsupported when that volume keeps none. Any thread; blocking file
// calls.
XPResult<QString> TrashFolderForPath(const QString &path);

// Asks for administrator's rights to move the file to the trash; where that cannot be, confirms
// and removes it for good. Nothing happens to the home folder and to what does not exist. Main
// thread; `done` comes there, with Cancelled when the user said no.
void AuthenticatedMoveToTrash(const QString &path,
                              const std::function<void(std::optional<XPError>)> &done)
    XP_REQUIRES(xpGuiThread);
