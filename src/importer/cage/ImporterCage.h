#pragma once

#include "XPError.h"

#include <QByteArray>
#include <vector>

// Shuts this process in for good: afterwards it can compute, read descriptors that it is handed
// and answer over its socket, and nothing else. A document that takes the process over can waste
// time and lie about itself.
//
// - No new privileges, not traceable, no core file.
// - Landlock: no file can be opened but below the read-only folders; no TCP; no signals and no
//   abstract sockets out of the cage, as far as the kernel's version goes.
// - seccomp: a list of calls that are allowed; every other one fails with EPERM, as libraries probe
//   for calls that they can do without. Opening is on it for reading only, and only where there
//   are read-only folders and Landlock guards them. New threads are, new processes are not.
// - Memory: `memory` bytes of address space more than now. Descriptors: 32. Files grow no further.
//
// Where the kernel lacks Landlock nothing can be opened at all, as seccomp refuses it; where it
// lacks seccomp, Landlock alone holds and system calls are free; the answer says what is in force.
// Threads: the process has no thread yet but the main one, which calls this once.
namespace ImporterCage {

inline constexpr qint64 memory = qint64{512} << 20;

struct State
{
    int landlock = 0; // version of the kernel's interface; 0: none
    bool seccomp = false;
};

// The descriptors from `firstToClose` on are closed, those below it stay. An error: nothing holds
// for sure, the process must end.
XPResult<State> close(const std::vector<QByteArray> &readOnlyFolders, int firstToClose);

} // namespace ImporterCage
