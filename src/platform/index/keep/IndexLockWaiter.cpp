#include "IndexLockWaiter.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <sys/file.h>

// A call that is waiting returns with EINTR where a handler is installed that restarts nothing.
static void letTheSignalInterrupt()
{
    static const bool isInstalled = [] {
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        return ::sigaction(SIGURG, &action, nullptr) == 0;
    }();
    (void)isInstalled;
}

IndexLockWaiter::IndexLockWaiter(XPFileDescriptor lock, Taken taken)
    : m_lock(std::move(lock)), m_taken(std::move(taken))
{
    letTheSignalInterrupt();
    m_thread = std::thread([this] {
        wait();
        const XPLocker locker(m_mutex);
        m_hasEnded = true;
        m_ended.notify_all();
    });
}

IndexLockWaiter::~IndexLockWaiter()
{
    {
        XPLocker locker(m_mutex);
        m_stopping = true;
        // The thread may be just about to wait: until it has ended it is woken again.
        while (!m_hasEnded) {
            ::pthread_kill(m_thread.native_handle(), SIGURG);
            m_ended.wait_for(locker, std::chrono::milliseconds(10));
        }
    }
    m_thread.join();
}

bool IndexLockWaiter::isStopping() const
{
    const XPLocker locker(m_mutex);
    return m_stopping;
}

void IndexLockWaiter::wait()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGURG);
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    while (!isStopping()) {
        if (::flock(m_lock.get(), LOCK_EX) == 0) {
            if (!isStopping())
                m_taken(std::move(m_lock));
            return;
        }
        if (errno != EINTR)
            return;
    }
}
