#pragma once

#include "XPError.h"

#include <QString>

// The well-known folders of the user, by the XDG base directory and user directory
// specifications of freedesktop.org. Paths are absolute and may not exist. Any thread;
// the environment is read at each call, user-dirs.dirs too. A variable whose value is no
// absolute path counts as not set, as those specifications ask.
namespace XPFolders {

QString home(); // $HOME, else what the user database says
QString documents();
QString desktop();
QString downloads();
QString pictures();
QString videos();

QString configuration();      // $XDG_CONFIG_HOME
QString applicationSupport(); // $XDG_DATA_HOME: the base that programs make folders in
QString caches();             // $XDG_CACHE_HOME
// The program's own folders in these two.
QString ourApplicationSupport();
QString ourCaches();
QString trash(); // the home trash: $XDG_DATA_HOME/Trash

// "~" and "~/…" replaced by the home folder; anything else unchanged.
QString expandTilde(const QString &path);
// The other way: a path in the home folder as "~/…", the form that settings keep.
QString abbreviateWithTilde(const QString &path);

// The folder behind a path, absolute and with no link on its way: what an index knows it by.
// Fails when there is none; the error carries the absolute path. Blocking file calls.
XPResult<QString> realFolder(const QString &path);

// Makes the folder and those missing above it (0700). One that exists is no error.
std::optional<XPError> create(const QString &folder);

} // namespace XPFolders
