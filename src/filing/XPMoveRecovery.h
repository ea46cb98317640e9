#pragma once

#include <QStringList>

// Puts right what a process that died in the middle of a move, a copy or a replacement left
// behind, by its notes (XPMoveJournal).
//
// An unfinished copy goes. A move whose copy is in its place is finished, after source and copy
// were compared byte by byte; a replaced file goes to the trash when the new one is there and back
// to its name when it is not. What is not surely so is left under a name that people see. Threads:
// any, once at the start; blocking file calls.
namespace XPMoveRecovery {

// What was done, a line each, for the log.
QStringList run();

} // namespace XPMoveRecovery
