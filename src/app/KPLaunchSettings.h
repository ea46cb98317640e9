#pragma once

#include "PropertyValue.h"

// What the program's start and its orderly end do to the settings: marks that tell a start after a
// crash and the very first one, and those choices that never outlive a session.
// Threads: main.
namespace KPLaunchSettings {

// Before anything reads a setting: registers the factory values (XPFactorySettings), hides the
// bookmarks panel and the loupe, and sees that the tag cloud has a source.
void setupDefaults();
// The two colours of the library as they come from the factory, by their keys.
const PropertyValue::Dictionary &colourDefaultsDictionary();
void revertColours();

// This is the first start of this user, or none before ended in an orderly way.
bool isFirstLaunch();
// From here to the orderly end the settings say that the program runs; on the disk too. Whether
// the last run ended without saying so is deliberately not asked.
void markRunning();
// Each start that came as far as showing its window. How many there were, this one included.
qint64 countLaunch(); // "launchCount"
// Ends that were orderly.
void countEnd(); // "KPNumTimesLaunched"
void markEnded();

} // namespace KPLaunchSettings
