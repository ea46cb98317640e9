#include "XPVolumes.h"

#include "XPFileDescriptor.h"
#include "XPMountTable.h"
#include "XPMutex.h"

#include <atomic>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <poll.h>

using Table = std::shared_ptr<const XPMountTable>;

// A new mount is noticed after this at the latest.
static constexpr qint64 checkEveryMs = 100;

// Milliseconds of a clock that costs no system call.
static qint64 coarseNow()
{
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1'000'000;
}

namespace {

// The mount table of this process, read anew when the kernel says that it changed.
class LiveTable
{
public:
    static LiveTable &instance()
    {
        static auto &table = *new LiveTable;
        return table;
    }

    // Each thread keeps the table that it saw last, so that the usual question takes no lock.
    const XPMountTable &current() XP_EXCLUDES(m_mutex)
    {
        thread_local Table table;
        thread_local quint64 generation = 0;
        const qint64 now = coarseNow();
        // Nothing read yet: another thread may be at it, and its table is waited for.
        if (now >= m_nextCheck.load(std::memory_order_relaxed) ||
            m_generation.load(std::memory_order_acquire) == 0)
            check(now);
        if (const quint64 newest = m_generation.load(std::memory_order_acquire);
            generation != newest) {
            const XPLocker locker(m_mutex);
            table = m_table;
            generation = newest;
        }
        return *table;
    }

    void lookAgain() { m_nextCheck.store(0, std::memory_order_relaxed); }

private:
    LiveTable() : m_file(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {}

    void check(qint64 now) XP_EXCLUDES(m_mutex)
    {
        const XPLocker locker(m_mutex);
        m_nextCheck.store(now + checkEveryMs, std::memory_order_relaxed);
        if (m_table && !hasChanged())
            return;
        m_table = std::make_shared<const XPMountTable>(XPMountTable::parse(readAll()));
        m_generation.fetch_add(1, std::memory_order_release);
    }

    // The kernel flags the open file once per change of the table (proc(5)).
    bool hasChanged() const XP_REQUIRES(m_mutex)
    {
        pollfd file = {m_file.get(), POLLPRI, 0};
        return ::poll(&file, 1, 0) > 0 && (file.revents & (POLLPRI | POLLERR)) != 0;
    }

    QByteArray readAll() const XP_REQUIRES(m_mutex)
    {
        QByteArray text;
        char buffer[16384];
        ssize_t got = 0;
        while ((got = ::pread(m_file.get(), buffer, sizeof buffer, text.size())) > 0)
            text.append(buffer, got);
        return text;
    }

    std::atomic<qint64> m_nextCheck = 0;
    std::atomic<quint64> m_generation = 0; // 0: nothing read yet
    XPMutex m_mutex; // held over calls on /proc, which never wait for a volume
    Table m_table XP_GUARDED_BY(m_mutex);
    const XPFileDescriptor m_file;
};

} // namespace

XPVolumes::Volume XPVolumes::volumeOf(const QString &path)
{
    return LiveTable::instance().current().volumeOf(path);
}

bool XPVolumes::isOnSlowVolume(const QString &path)
{
    return LiveTable::instance().current().volumeOf(path).slow;
}

QStringList XPVolumes::mountPoints()
{
    return LiveTable::instance().current().mountPoints();
}

void XPVolumes::lookAgain()
{
    LiveTable::instance().lookAgain();
}
