#pragma once

#include <QByteArray>

// Which files a library shows at all, judged by the bytes of their path alone.
//
// The rules name folders as they are found on disks that come from elsewhere ("/.Trashes/",
// "/Library/…") and their counterparts here: the desktop's trash folders, $XDG_CACHE_HOME,
// $XDG_DATA_HOME and $XDG_CONFIG_HOME. The user's folders are asked for once per process.
// Threads: any. No file call.
namespace KPPathFilters {

// In a trash folder, of the home or of a volume.
bool isInTrash(QByteArrayView path);

// Whether the path may be shown where everything is asked for. False for no path.
bool passesExcludePaths(QByteArrayView path);

// Whether a metadata query may show it. False for no path.
bool passesMDQueryExcludePaths(QByteArrayView path);

// Both at once, for a million paths.
struct Passes
{
    bool excludePaths = true;
    bool mdQueryExcludePaths = true;
};
Passes passes(QByteArrayView path);

} // namespace KPPathFilters
