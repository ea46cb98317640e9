#pragma once

#include "XPError.h"
#include "XPMutex.h"

#include <QString>

// The actions in the menus of GNOME's file manager: scripts in a folder of the user's, which only
// the user can have put there. Other file managers find theirs where the package lays them.
namespace KPWorkflows {

// Whether there are scripts to install, and a file manager that would show them.
bool isPossible();
// Puts them there off the main thread, and tells what came of it.
void installWorkflows() XP_REQUIRES(xpGuiThread);

// One of them: nothing where the same is there already; another one of its name goes to the trash.
// Any thread; blocking file calls.
std::optional<XPError> installOne(const QString &script, const QString &target);

} // namespace KPWorkflows
