#pragma once

#include <mutex>

// Locks that clang can check (`analyse` preset); plain std::mutex for every other compiler.
//
// Data names its lock (XP_GUARDED_BY), functions name what they need (XP_REQUIRES) or must not
// hold (XP_EXCLUDES). Calls that belong to the main thread require the role `xpGuiThread`; a
// function that Qt calls there opens with xpGuiThread.assertHere().
#if defined(__clang__)
#define XP_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define XP_THREAD_ATTRIBUTE(x)
#endif

#define XP_CAPABILITY(x) XP_THREAD_ATTRIBUTE(capability(x))
#define XP_SCOPED_CAPABILITY XP_THREAD_ATTRIBUTE(scoped_lockable)
#define XP_GUARDED_BY(x) XP_THREAD_ATTRIBUTE(guarded_by(x))
#define XP_REQUIRES(...) XP_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define XP_ACQUIRE(...) XP_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define XP_RELEASE(...) XP_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
#define XP_EXCLUDES(...) XP_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))
#define XP_ASSERT_CAPABILITY(x) XP_THREAD_ATTRIBUTE(assert_capability(x))

class XP_CAPABILITY("mutex") XPMutex
{
public:
    void lock() XP_ACQUIRE() { m_mutex.lock(); }
    void unlock() XP_RELEASE() { m_mutex.unlock(); }

private:
    std::mutex m_mutex;
};

// Holds an XPMutex for a scope. Works with std::condition_variable_any through lock()/unlock().
class XP_SCOPED_CAPABILITY XPLocker
{
public:
    explicit XPLocker(XPMutex &mutex) XP_ACQUIRE(mutex) : m_mutex(mutex) { m_mutex.lock(); }
    ~XPLocker() XP_RELEASE()
    {
        if (m_held)
            m_mutex.unlock();
    }
    XPLocker(const XPLocker &) = delete;
    XPLocker &operator=(const XPLocker &) = delete;

    void lock() XP_ACQUIRE()
    {
        m_mutex.lock();
        m_held = true;
    }
    void unlock() XP_RELEASE()
    {
        m_held = false;
        m_mutex.unlock();
    }

private:
    XPMutex &m_mutex;
    bool m_held = true;
};

// The main thread as a role: no lock, a promise that the caller is on that thread.
class XP_CAPABILITY("role") XPThreadRole
{
public:
    // Asserts (debug builds) that this is the thread of QCoreApplication.
    void assertHere() const XP_ASSERT_CAPABILITY(this);
};

extern const XPThreadRole xpGuiThread;
