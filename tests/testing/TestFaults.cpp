#include "TestFaults.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/limits.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Run
{
    TestFaults::Plan plan;
    std::atomic<int> count = 0;
    std::atomic<bool> isMet = false;
    QByteArray failed;
};

// The file of a call: a name in an open folder, or an open file alone.
struct Where
{
    int folder;
    const char *name;
};

} // namespace

static std::atomic<Run *> current = nullptr;
static Run last;

// The bare system call: the library's would pass through here again.
static QByteArray pathOfFile(int file)
{
    char path[PATH_MAX];
    const QByteArray link = file == AT_FDCWD
                                ? QByteArray("/proc/self/cwd")
                                : QByteArray("/proc/self/fd/") + QByteArray::number(file);
    const long size = ::syscall(SYS_readlinkat, AT_FDCWD, link.constData(), path, sizeof path);
    return size > 0 ? QByteArray(path, static_cast<qsizetype>(size)) : QByteArray();
}

static QByteArray pathOf(const Where &where)
{
    if (where.name == nullptr)
        return pathOfFile(where.folder);
    if (*where.name == '/')
        return where.name;
    return pathOfFile(where.folder) + '/' + where.name;
}

static bool isWatched(const Run &run, const QByteArray &path)
{
    for (const QByteArray &folder : run.plan.folders) {
        if (path.startsWith(folder) && (path.size() == folder.size() || path[folder.size()] == '/'))
            return true;
    }
    return false;
}

// The errno that this call is to fail with, or 0.
static int meet(const char *call, bool changes, const Where &where)
{
    Run *const run = current.load();
    if (run == nullptr)
        return 0;
    const int before = errno;
    const QByteArray path = pathOf(where);
    errno = before;
    if (!isWatched(*run, path))
        return 0;
    const int number = run->count++;
    const bool isHere = number == run->plan.at;
    const bool isAfter = run->plan.isLasting && run->isMet && changes;
    if (!isHere && !isAfter)
        return 0;
    if (run->plan.dies)
        ::kill(::getpid(), SIGKILL);
    if (isHere) {
        run->isMet = true;
        run->failed = QByteArray(call) + ' ' + path;
    }
    return run->plan.error;
}

bool TestFaults::run(const Plan &plan, const std::function<void()> &work)
{
    last.plan = plan;
    last.count = 0;
    last.isMet = false;
    last.failed.clear();
    current = &last;
    work();
    current = nullptr;
    return last.isMet;
}

int TestFaults::calls()
{
    return last.count;
}

QByteArray TestFaults::failedPlace()
{
    const QByteArrayList words = {last.failed.left(last.failed.indexOf(' ')),
                                  last.failed.mid(last.failed.indexOf(' ') + 1)};
    qsizetype folder = 0;
    while (folder < last.plan.folders.size() && !words[1].startsWith(last.plan.folders[folder]))
        ++folder;
    return words[0] + ' ' + QByteArray::number(folder);
}

bool TestFaults::Errors::tryNext(const std::function<bool(int at, int error)> &once)
{
    const auto at = static_cast<size_t>(m_at++);
    const int first = m_errors[at % m_errors.size()];
    if (!once(static_cast<int>(at), first))
        return false;
    const QByteArray place = failedPlace();
    m_tried.emplace(place, first);
    for (const int error : m_errors) {
        if (m_tried.emplace(place, error).second)
            once(static_cast<int>(at), error);
    }
    return true;
}

QByteArray TestFaults::failed()
{
    return last.failed;
}

// A function of another name here, as the headers declare the library's in their own way.
// NOLINTBEGIN(bugprone-macro-parentheses): types and lists of parameters
#define INTERPOSE(type, call, changes, where, parameters, arguments)                               \
    extern "C" type test_##call parameters __asm__(#call);                                         \
    extern "C" type test_##call parameters                                                         \
    {                                                                                              \
        using Real = type(*) parameters;                                                           \
        static const auto real = reinterpret_cast<Real>(::dlsym(RTLD_NEXT, #call));                \
        if (const int error = meet(#call, changes, Where where)) {                                 \
            errno = error;                                                                         \
            return -1;                                                                             \
        }                                                                                          \
        return real arguments;                                                                     \
    }
// NOLINTEND(bugprone-macro-parentheses)

static constexpr int here = AT_FDCWD;

INTERPOSE(int, open, (flags & O_CREAT) != 0, ({here, p}), (const char *p, int flags, mode_t m),
          (p, flags, m))
INTERPOSE(int, open64, (flags & O_CREAT) != 0, ({here, p}), (const char *p, int flags, mode_t m),
          (p, flags, m))
INTERPOSE(int, openat, (flags & O_CREAT) != 0, ({d, p}),
          (int d, const char *p, int flags, mode_t m), (d, p, flags, m))
INTERPOSE(int, openat64, (flags & O_CREAT) != 0, ({d, p}),
          (int d, const char *p, int flags, mode_t m), (d, p, flags, m))
INTERPOSE(int, renameat2, true, ({d, p}),
          (int d, const char *p, int e, const char *q, unsigned flags), (d, p, e, q, flags))
INTERPOSE(int, renameat, true, ({d, p}), (int d, const char *p, int e, const char *q), (d, p, e, q))
INTERPOSE(int, rename, true, ({here, p}), (const char *p, const char *q), (p, q))
INTERPOSE(int, link, true, ({here, p}), (const char *p, const char *q), (p, q))
INTERPOSE(int, linkat, true, ({d, p}), (int d, const char *p, int e, const char *q, int flags),
          (d, p, e, q, flags))
INTERPOSE(int, unlink, true, ({here, p}), (const char *p), (p))
INTERPOSE(int, unlinkat, true, ({d, p}), (int d, const char *p, int flags), (d, p, flags))
INTERPOSE(int, rmdir, true, ({here, p}), (const char *p), (p))
INTERPOSE(int, mkdir, true, ({here, p}), (const char *p, mode_t m), (p, m))
INTERPOSE(int, mkdirat, true, ({d, p}), (int d, const char *p, mode_t m), (d, p, m))
INTERPOSE(int, symlinkat, true, ({d, q}), (const char *p, int d, const char *q), (p, d, q))
INTERPOSE(int, statx, false, ({d, p}), (int d, const char *p, int flags, unsigned mask, void *s),
          (d, p, flags, mask, s))
INTERPOSE(int, fstatat, false, ({d, p}), (int d, const char *p, void *s, int flags),
          (d, p, s, flags))
INTERPOSE(int, fstat, false, ({f, nullptr}), (int f, void *s), (f, s))
INTERPOSE(int, stat, false, ({here, p}), (const char *p, void *s), (p, s))
INTERPOSE(int, lstat, false, ({here, p}), (const char *p, void *s), (p, s))
INTERPOSE(int, faccessat, false, ({d, p}), (int d, const char *p, int mode, int flags),
          (d, p, mode, flags))
INTERPOSE(ssize_t, getdents64, false, ({f, nullptr}), (int f, void *b, size_t n), (f, b, n))
INTERPOSE(ssize_t, readlinkat, false, ({d, p}), (int d, const char *p, char *b, size_t n),
          (d, p, b, n))
INTERPOSE(ssize_t, pread, false, ({f, nullptr}), (int f, void *b, size_t n, off_t at),
          (f, b, n, at))
INTERPOSE(ssize_t, write, true, ({f, nullptr}), (int f, const void *b, size_t n), (f, b, n))
INTERPOSE(ssize_t, pwrite, true, ({f, nullptr}), (int f, const void *b, size_t n, off_t at),
          (f, b, n, at))
INTERPOSE(ssize_t, copy_file_range, true, ({g, nullptr}),
          (int f, off_t *i, int g, off_t *o, size_t n, unsigned flags), (f, i, g, o, n, flags))
INTERPOSE(off_t, lseek, false, ({f, nullptr}), (int f, off_t at, int whence), (f, at, whence))
INTERPOSE(int, ftruncate, true, ({f, nullptr}), (int f, off_t size), (f, size))
// Whether the call is on a file that is watched now.
static bool isWatchedNow(int file)
{
    Run *const run = current.load();
    return run != nullptr && isWatched(*run, pathOfFile(file));
}

extern "C" int test_fsync(int file) __asm__("fsync");
extern "C" int test_fsync(int file)
{
    if (const int error = meet("fsync", true, {file, nullptr})) {
        errno = error;
        return -1;
    }
    return isWatchedNow(file) ? 0 : static_cast<int>(::syscall(SYS_fsync, file));
}

INTERPOSE(int, fchmod, true, ({f, nullptr}), (int f, mode_t m), (f, m))
INTERPOSE(int, fchown, true, ({f, nullptr}), (int f, uid_t u, gid_t g), (f, u, g))
INTERPOSE(int, fchownat, true, ({d, p}), (int d, const char *p, uid_t u, gid_t g, int flags),
          (d, p, u, g, flags))
INTERPOSE(int, futimens, true, ({f, nullptr}), (int f, const void *times), (f, times))
INTERPOSE(int, utimensat, true, ({d, p}), (int d, const char *p, const void *times, int flags),
          (d, p, times, flags))
INTERPOSE(ssize_t, flistxattr, false, ({f, nullptr}), (int f, char *b, size_t n), (f, b, n))
INTERPOSE(ssize_t, fgetxattr, false, ({f, nullptr}), (int f, const char *a, void *b, size_t n),
          (f, a, b, n))
INTERPOSE(int, fsetxattr, true, ({f, nullptr}),
          (int f, const char *a, const void *b, size_t n, int flags), (f, a, b, n, flags))
INTERPOSE(ssize_t, lgetxattr, false, ({here, p}), (const char *p, const char *a, void *b, size_t n),
          (p, a, b, n))
INTERPOSE(int, lsetxattr, true, ({here, p}),
          (const char *p, const char *a, const void *b, size_t n, int flags), (p, a, b, n, flags))
INTERPOSE(int, lremovexattr, true, ({here, p}), (const char *p, const char *a), (p, a))
