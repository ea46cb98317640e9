#include "KarvexFileLock.h"

#include "XPError.h"
#include "XPFileInfo.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QHash>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

// Not $TMPDIR, nor a folder of the session or the home: they differ with the environment, and the
// runtime folder goes when the user logs out while a job of cron still runs.
static QByteArray lockPath()
{
    return "/tmp/com.brindle.murn-" + QByteArray::number(::geteuid()) + ".attribute-locks";
}

QString KarvexFileLock::path()
{
    return XPPath::decode(lockPath());
}

// A file in memory of this process: each opening of it through /proc is a lock owner of its own,
// as one of a real lock file is.
static int openPrivateFile()
{
    static const int memory = [] {
        qCWarning(xpLog) << "no lock file can be had: other processes are not kept out";
        return ::memfd_create("attribute-locks", MFD_CLOEXEC);
    }();
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(memory);
    return ::open(path.constData(), O_RDWR | O_CLOEXEC);
}

// One that another user put there is no use: he could keep us waiting.
static bool isOurs(int file)
{
    struct stat info = {};
    return ::fstat(file, &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == ::geteuid();
}

namespace {

// The lock belongs to the open file description, so that each thread needs one of its own.
class LockFile
{
public:
    LockFile() = default;
    LockFile(const LockFile &) = delete;
    LockFile &operator=(const LockFile &) = delete;
    ~LockFile() { close(); }

    bool lock(qint64 offset)
    {
        do {
            if (m_held == 0 && isDeleted())
                close();
            if (m_file < 0)
                open();
            if (!set(F_WRLCK, offset))
                return false;
        } while (m_held == 0 && isDeleted());
        ++m_held;
        return true;
    }
    void unlock(qint64 offset)
    {
        set(F_UNLCK, offset);
        --m_held;
    }
    bool isHeld() const { return m_held > 0; }

private:
    void open()
    {
        m_file = ::open(lockPath().constData(),
                        O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR);
        m_isPrivate = m_file < 0 || !isOurs(m_file);
        if (!m_isPrivate)
            return;
        close();
        m_file = openPrivateFile();
    }
    // By whoever tidies up in temporary folders: others would lock another file then.
    bool isDeleted() const
    {
        struct stat info = {};
        return m_file >= 0 && !m_isPrivate && ::fstat(m_file, &info) == 0 && info.st_nlink == 0;
    }
    bool set(short type, qint64 offset) const
    {
        struct flock range = {};
        range.l_type = type;
        range.l_whence = SEEK_SET;
        range.l_start = offset;
        range.l_len = 1;
        int result = 0;
        do
            result = ::fcntl(m_file, F_OFD_SETLKW, &range);
        while (result != 0 && errno == EINTR);
        return result == 0;
    }
    void close()
    {
        if (m_file >= 0)
            ::close(m_file);
        m_file = -1;
    }

    int m_file = -1;
    bool m_isPrivate = false;
    int m_held = 0; // they would all go with the descriptor
};

} // namespace

static LockFile &lockFile()
{
    static thread_local LockFile file;
    return file;
}

// The bits of a number spread over all of it (the finaliser of SplitMix64), as inodes of one
// folder are neighbours and devices differ in high bits.
static quint64 mixed(quint64 x)
{
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9U;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebU;
    return x ^ (x >> 31);
}

KarvexFileLock::KarvexFileLock(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    if (info)
        lock(mixed(info->inode ^ mixed(info->device)));
}

KarvexFileLock::KarvexFileLock(quint64 hash)
{
    lock(hash);
}

KarvexFileLock KarvexFileLock::named(const QString &name)
{
    return KarvexFileLock(quint64{qHash(name, 0)});
}

void KarvexFileLock::lock(quint64 hash)
{
    const auto offset = static_cast<qint64>(hash & quint64{std::numeric_limits<qint64>::max() - 1});
    if (lockFile().lock(offset))
        m_offset = offset;
    else
        qCWarning(xpLog) << "an attribute lock failed:" << xpErrnoString(errno);
}

KarvexFileLock::~KarvexFileLock()
{
    if (m_offset >= 0)
        lockFile().unlock(m_offset);
}

bool KarvexFileLock::isHeldByThisThread()
{
    return lockFile().isHeld();
}
