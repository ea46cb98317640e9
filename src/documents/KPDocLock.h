#pragma once

#include "XPMutex.h"

#include <atomic>

// A lock of four bytes, for a record of which there are a million: a mutex would be a third of
// it. Held for a few copies only; waiting sleeps.
class XP_CAPABILITY("mutex") KPDocLock
{
public:
    void lock() XP_ACQUIRE()
    {
        while (m_taken.exchange(1, std::memory_order_acquire) != 0)
            m_taken.wait(1, std::memory_order_relaxed);
    }
    void unlock() XP_RELEASE()
    {
        m_taken.store(0, std::memory_order_release);
        m_taken.notify_one();
    }

private:
    std::atomic<int> m_taken = 0;
};

// Holds one for a scope.
class XP_SCOPED_CAPABILITY KPDocLocker
{
public:
    explicit KPDocLocker(KPDocLock &held) XP_ACQUIRE(held) : m_lock(held) { m_lock.lock(); }
    ~KPDocLocker() XP_RELEASE() { m_lock.unlock(); }
    KPDocLocker(const KPDocLocker &) = delete;
    KPDocLocker &operator=(const KPDocLocker &) = delete;

private:
    KPDocLock &m_lock;
};
