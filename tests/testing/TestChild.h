#pragma once

#include <functional>
#include <sys/types.h>

// Runs `work` in a process of its own (forked, on a thread of its own there, so that nothing that
// belongs to a thread is shared) and returns its process id at once. Failed expectations in it
// print as usual and make the exit status 1.
pid_t startChild(const std::function<void()> &work);

// Waits for it: its exit status, or minus the signal that ended it.
int waitForChild(pid_t child);

// Both.
int runChild(const std::function<void()> &work);

// In a child of root: rights dropped for good to a user who owns nothing.
void becomeNobody();

// In a child of root: mounts of its own, gone with the process. False where that is refused.
bool havePrivateMounts();
