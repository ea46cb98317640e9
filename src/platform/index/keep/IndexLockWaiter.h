#pragma once

#include "XPFileDescriptor.h"
#include "XPMutex.h"

#include <condition_variable>
#include <functional>
#include <thread>

// Waits for the lock of the process that keeps the index, which the kernel gives when that process
// ends, however it ends.
//
// A thread of this object's own waits in flock(2); the destructor wakes it with a signal (SIGURG,
// which does nothing else) and joins it.
// Threads: constructor and destructor on one; `taken` is called on the waiting one, once, and has
// returned before the destructor does.
class IndexLockWaiter
{
public:
    using Taken = std::function<void(XPFileDescriptor lock)>;

    IndexLockWaiter(XPFileDescriptor lock, Taken taken);
    ~IndexLockWaiter();

private:
    void wait();
    bool isStopping() const;

    XPFileDescriptor m_lock; // the thread's
    const Taken m_taken;
    mutable XPMutex m_mutex;
    std::condition_variable_any m_ended;
    bool m_stopping XP_GUARDED_BY(m_mutex) = false;
    bool m_hasEnded XP_GUARDED_BY(m_mutex) = false;
    std::thread m_thread;
};
