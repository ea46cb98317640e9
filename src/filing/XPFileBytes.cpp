#include "XPFileBytes.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/fs.h>
#include <memory>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

// Bytes between two questions whether to go on, and those that pass through our memory at once.
static constexpr qint64 piece = 64 << 20;
static constexpr size_t bufferSize = 256 << 10;

namespace {

struct Copy
{
    int from;
    int to;
    const XPFileBytes::Progress &progress;
    bool inKernel = true; // copy_file_range works between these two
    std::unique_ptr<char[]> buffer;
    qint64 sinceAsked = 0;
};

} // namespace

static int writeAll(int file, const char *bytes, qint64 size, off_t at)
{
    while (size > 0) {
        const ssize_t done = ::pwrite(file, bytes, static_cast<size_t>(size), at);
        if (done < 0 && errno == EINTR)
            continue;
        if (done <= 0)
            return done < 0 ? errno : EIO;
        bytes += done;
        size -= done;
        at += done;
    }
    return 0;
}

static ssize_t readSome(int file, char *buffer, size_t size, off_t at)
{
    ssize_t got = 0;
    do
        got = ::pread(file, buffer, size, at);
    while (got < 0 && errno == EINTR);
    return got;
}

// What means "not between these two", where plain reading and writing still may.
static bool isNoWay(int error)
{
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP ||
           error == EBADF || error == EPERM || error == ETXTBSY;
}

// Copies some bytes at `at` and says how many in `done`: 0 when the file ends here.
static int copySome(Copy &copy, off_t at, qint64 size, qint64 &done)
{
    if (copy.inKernel) {
        off_t from = at;
        off_t to = at;
        const auto most = static_cast<size_t>(std::min(size, piece));
        done = ::copy_file_range(copy.from, &from, copy.to, &to, most, 0);
        if (done > 0 || (done < 0 && errno == EINTR)) {
            done = std::max<qint64>(done, 0);
            return 0;
        }
        if (done < 0 && !isNoWay(errno))
            return errno;
        copy.inKernel = false; // 0: some file systems know no size; reading finds the end
    }
    if (!copy.buffer)
        copy.buffer = std::make_unique<char[]>(bufferSize);
    const auto most = static_cast<size_t>(std::min<qint64>(size, bufferSize));
    done = readSome(copy.from, copy.buffer.get(), most, at);
    return done < 0 ? errno : writeAll(copy.to, copy.buffer.get(), done, at);
}

static int copyRange(Copy &copy, off_t at, off_t end)
{
    while (at < end) {
        qint64 done = 0;
        const bool wasInKernel = copy.inKernel;
        if (const int error = copySome(copy, at, end - at, done))
            return error;
        if (done == 0 && !wasInKernel)
            return 0; // shorter than it was: the caller sees it by the size
        at += done;
        copy.sinceAsked += done;
        if (copy.sinceAsked < piece && at < end)
            continue;
        copy.sinceAsked = 0;
        if (copy.progress && !copy.progress(at))
            return ECANCELED;
    }
    return 0;
}

int XPFileBytes::copy(int from, int to, qint64 size, const Progress &progress)
{
    if (size > 0 && ::ioctl(to, FICLONE, from) == 0)
        return 0;
    Copy copy = {from, to, progress, true, {}, 0};
    for (off_t at = 0; at < size;) {
        off_t data = ::lseek(from, at, SEEK_DATA);
        if (data < 0 && errno == ENXIO)
            break; // only a hole follows
        off_t hole = data < 0 ? size : ::lseek(from, data, SEEK_HOLE);
        if (data < 0 && errno != EINVAL)
            return errno;
        data = std::max<off_t>(data, at);
        hole = hole < 0 ? size : std::min<off_t>(hole, size);
        if (const int error = copyRange(copy, data, hole))
            return error;
        at = std::max(hole, data);
    }
    // A hole at the end. Some drivers of disks for cameras refuse to set the length that is there.
    struct stat written = {};
    if (::fstat(to, &written) == 0 && written.st_size == size)
        return 0;
    return ::ftruncate(to, size) == 0 ? 0 : errno;
}

int XPFileBytes::compare(int one, int other)
{
    const auto buffers = std::make_unique<char[]>(2 * bufferSize);
    char *const first = buffers.get();
    char *const second = first + bufferSize;
    for (off_t at = 0;;) {
        const ssize_t got = readSome(one, first, bufferSize, at);
        if (got < 0)
            return errno;
        for (ssize_t have = 0; have < std::max<ssize_t>(got, 1);) {
            const auto most = static_cast<size_t>(std::max<ssize_t>(got - have, 1));
            const ssize_t more = readSome(other, second + have, most, at + have);
            if (more < 0)
                return errno;
            if (got == 0)
                return more == 0 ? 0 : EILSEQ;
            if (more == 0)
                return EILSEQ;
            have += more;
        }
        if (std::memcmp(first, second, static_cast<size_t>(got)) != 0)
            return EILSEQ;
        at += got;
    }
}
