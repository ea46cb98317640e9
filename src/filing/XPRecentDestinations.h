#pragma once

#include "PropertyValue.h"

#include <QStringList>

// The folders that documents were moved or copied to, in the setting "recentDestinationPaths": by
// path, the path and the date of last use. Threads: any; no file call.
class XPRecentDestinations
{
public:
    // Newest first.
    static QStringList paths();
    static void updatePrefsForRecentDestinations(const QString &path);
    // Without the oldest, while there are more than "maxDestinationsToRemember" (0 counts as 10).
    // An entry without a key is no destination, and stays.
    static PropertyValue::Dictionary
    removeExtraDestinations(PropertyValue::Dictionary destinations);

    static const QString key;        // "recentDestinationPaths"
    static const QString maximumKey; // "maxDestinationsToRemember"
};
