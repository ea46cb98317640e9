#pragma once

// The number on the program's icon in the dock or task bar: the signal
// com.canonical.Unity.LauncherEntry.Update, which the docks of several desktops follow. Nobody
// answers, so whether one does is not known. Threads: main.
namespace XPLauncherBadge {

// 0 takes the number away.
void show(int number);

} // namespace XPLauncherBadge
