#include "KarvexFileLock.h"

#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QHash>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/mman.h>
#include <unistd.h>

// A file in memory of this process: each opening of it through /proc is a lock owner of its own,
// as one of a real lock file is.
static int openPrivateFile()
{
    static const int memory = ::memfd_create("attribute-locks", MFD_CLOEXEC);
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(memory);
    qCWarning(xpLog) << "no lock file in the runtime folder: other processes are not kept out";
    return ::open(path.constData(), O_RDWR | O_CLOEXEC);
}

static int openLockFile()
{
    const QString folder = XPFolders::runtime();
    if (XPFolders::create(folder))
        return openPrivateFile();
    const QByteArray path = XPPath::encode(folder) + "/com.brindle.murn.attribute-locks";
    const int file =
        ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    return file >= 0 ? file : openPrivateFile();
}

namespace {

// The lock belongs to the open file description, so that each thread needs one of its own.
struct LockFile
{
    const int descriptor = openLockFile();
    LockFile() = default;
    LockFile(const LockFile &) = delete;
    LockFile &operator=(const LockFile &) = delete;
    ~LockFile() { ::close(descriptor); }
};

} // namespace

static bool setLock(short type, qint64 offset)
{
    static thread_local const LockFile file;
    struct flock range = {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = offset;
    range.l_len = 1;
    int result = 0;
    do
        result = ::fcntl(file.descriptor, F_OFD_SETLKW, &range);
    while (result != 0 && errno == EINTR);
    return result == 0;
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
    if (setLock(F_WRLCK, offset))
        m_offset = offset;
    else
        qCWarning(xpLog) << "an attribute lock failed:" << xpErrnoString(errno);
}

KarvexFileLock::~KarvexFileLock()
{
    if (m_offset >= 0)
        setLock(F_UNLCK, m_offset);
}
