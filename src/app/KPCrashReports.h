#pragma once

#include <QStringList>

// The reports of crashes that lie on this machine (KPCrashHandler writes them). They are the
// user's: he may look at them and send one himself; the program sends nothing.
//
// Threads: any; blocking file calls on a small folder.
namespace KPCrashReports {

QString folder(); // in the program's support folder
// All, oldest first.
QStringList all();
// Those that nobody was told of yet. Told once: afterwards there are none until the next crash.
QStringList takeNew();
// Older ones are removed when there are more than this.
constexpr qsizetype mostKept = 20;

} // namespace KPCrashReports
