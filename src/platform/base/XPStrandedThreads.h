#pragma once

#include <functional>
#include <thread>

// Threads that a file call may hold for ever (a network that is gone), so that their owner cannot
// wait for their end. They are kept here and joined once they have ended; what still hangs when
// the process ends, ends with it.
// Threads: any.
namespace XPStrandedThreads {

// `hasEnded` says, without waiting, whether the thread does nothing any more but return.
void adopt(std::thread thread, std::function<bool()> hasEnded);

} // namespace XPStrandedThreads
