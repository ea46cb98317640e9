#pragma once

#include <QString>

// The well-known folders of the user, by the XDG base directory and user directory
// specifications of freedesktop.org. Paths are absolute and may not exist. Any thread;
// the environment is read at each call, user-dirs.dirs too.
namespace XPFolders {

QString home();
QString documents();
QString desktop();
QString downloads();

QString configuration();      // $XDG_CONFIG_HOME
QString applicationSupport(); // $XDG_DATA_HOME: the base that programs make folders in
QString caches();             // $XDG_CACHE_HOME
QString runtime();            // $XDG_RUNTIME_DIR, or a private folder in the caches
QString trash();              // the home trash: $XDG_DATA_HOME/Trash

// "~" and "~/…" replaced by the home folder; anything else unchanged.
QString expandTilde(const QString &path);

} // namespace XPFolders
