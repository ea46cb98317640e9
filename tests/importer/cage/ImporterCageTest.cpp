#include "ImporterCage.h"

#include "TestHome.h"
#include "XPFileDescriptor.h"

#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <sys/xattr.h>

// What the prisoner knows. Made before the cage is closed.
struct Prisoner
{
    QByteArray open;   // a folder that may be read, with "file" in it
    QByteArray secret; // one that may not
    int document = -1; // a descriptor that was handed in, read only
    pid_t parent = 0;

    QByteArray inOpen(const char *name) const { return open + '/' + name; }
    QByteArray inSecret(const char *name) const { return secret + '/' + name; }
};

struct Attempt
{
    const char *name;
    bool (*escapes)(const Prisoner &);
};

static bool opens(const QByteArray &path, int flags)
{
    return ::open(path.constData(), flags, 0600) >= 0;
}

static bool startsProcess(long result)
{
    if (result == 0)
        ::_exit(0); // a child: it is out
    return result > 0;
}

static bool connects(int family, const sockaddr *address, socklen_t size)
{
    const int socket = ::socket(family, SOCK_STREAM, 0);
    return socket >= 0 && ::connect(socket, address, size) == 0;
}

static const Attempt attempts[] = {
    {"read a file of the user",
     [](const Prisoner &me) { return opens(me.inSecret("file"), O_RDONLY); }},
    {"read a file of the system", [](const Prisoner &) { return opens("/etc/passwd", O_RDONLY); }},
    {"read its own memory map",
     [](const Prisoner &) { return opens("/proc/self/maps", O_RDONLY); }},
    {"go up from a folder that is open",
     [](const Prisoner &me) { return opens(me.open + "/../secret/file", O_RDONLY); }},
    {"a handle without reading",
     [](const Prisoner &me) { return opens(me.inSecret("file"), O_PATH); }},
    {"write to its own memory", [](const Prisoner &) { return opens("/proc/self/mem", O_RDWR); }},
    {"open to write", [](const Prisoner &me) { return opens(me.inOpen("file"), O_WRONLY); }},
    {"make a file", [](const Prisoner &me) { return opens(me.inOpen("new"), O_RDWR | O_CREAT); }},
    {"make a file without a name",
     [](const Prisoner &me) { return opens(me.open, O_RDWR | O_TMPFILE); }},
    {"reopen the document to write",
     [](const Prisoner &me) {
         return opens("/proc/self/fd/" + QByteArray::number(me.document), O_RDWR);
     }},
    {"cut the document", [](const Prisoner &me) { return ::ftruncate(me.document, 0) == 0; }},
    {"mark the document",
     [](const Prisoner &me) { return ::fsetxattr(me.document, "user.x", "x", 1, 0) == 0; }},
    {"give the document rights",
     [](const Prisoner &me) { return ::fchmod(me.document, 0777) == 0; }},
    {"cut a file", [](const Prisoner &me) { return ::truncate(me.inOpen("file"), 0) == 0; }},
    {"mark a file",
     [](const Prisoner &me) { return ::setxattr(me.inOpen("file"), "user.x", "x", 1, 0) == 0; }},
    {"link", [](const Prisoner &me) { return ::link(me.inOpen("file"), me.inOpen("two")) == 0; }},
    {"link the document",
     [](const Prisoner &me) {
         return ::linkat(me.document, "", AT_FDCWD, me.inOpen("two"), AT_EMPTY_PATH) == 0;
     }},
    {"link symbolically",
     [](const Prisoner &me) { return ::symlink("/etc", me.inOpen("two")) == 0; }},
    {"rename",
     [](const Prisoner &me) { return ::rename(me.inOpen("file"), me.inOpen("two")) == 0; }},
    {"remove", [](const Prisoner &me) { return ::unlink(me.inOpen("file")) == 0; }},
    {"make a folder", [](const Prisoner &me) { return ::mkdir(me.inOpen("two"), 0700) == 0; }},
    {"make a pipe in a folder",
     [](const Prisoner &me) { return ::mkfifo(me.inOpen("two"), 0600) == 0; }},
    {"change rights", [](const Prisoner &me) { return ::chmod(me.inOpen("file"), 0777) == 0; }},
    {"ask whether a file is there",
     [](const Prisoner &me) {
         struct stat facts = {};
         return ::stat(me.inSecret("file"), &facts) == 0 ||
                ::access(me.inSecret("file"), F_OK) == 0;
     }},
    {"go elsewhere",
     [](const Prisoner &me) { return ::chdir(me.secret) == 0 || ::chroot(me.secret) == 0; }},
    {"run a program",
     [](const Prisoner &) {
         char name[] = "/bin/true";
         char *arguments[] = {name, nullptr};
         char *environment[] = {nullptr};
         ::execve(name, arguments, environment);
         return false; // a success would not be here any more, and be missed at the other end
     }},
    {"run the document",
     [](const Prisoner &me) {
         char name[] = "x";
         char *arguments[] = {name, nullptr};
         char *environment[] = {nullptr};
         ::syscall(SYS_execveat, me.document, "", arguments, environment, AT_EMPTY_PATH);
         return false;
     }},
    {"fork", [](const Prisoner &) { return startsProcess(::fork()); }},
    {"fork without the library",
     [](const Prisoner &) { return startsProcess(::syscall(SYS_fork)); }},
    {"clone a process",
     [](const Prisoner &) { return startsProcess(::syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); }},
    {"clone a process anew",
     [](const Prisoner &) {
         quint64 arguments[8] = {0, 0, 0, 0, SIGCHLD};
         return startsProcess(::syscall(SYS_clone3, arguments, sizeof arguments));
     }},
    {"connect to the network",
     [](const Prisoner &) {
         sockaddr_in address = {};
         address.sin_family = AF_INET;
         address.sin_port = htons(9);
         address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
         return connects(AF_INET, reinterpret_cast<sockaddr *>(&address), sizeof address) ||
                ::socket(AF_INET6, SOCK_DGRAM, 0) >= 0;
     }},
    {"connect to a bus",
     [](const Prisoner &) {
         sockaddr_un address = {AF_UNIX, "/run/dbus/system_bus_socket"};
         return connects(AF_UNIX, reinterpret_cast<sockaddr *>(&address), sizeof address);
     }},
    {"a pair of sockets",
     [](const Prisoner &) {
         int pair[2];
         return ::socketpair(AF_UNIX, SOCK_STREAM, 0, pair) == 0;
     }},
    {"talk to the kernel", [](const Prisoner &) { return ::socket(AF_NETLINK, SOCK_RAW, 0) >= 0; }},
    {"trace its parent",
     [](const Prisoner &me) { return ::ptrace(PTRACE_ATTACH, me.parent, 0, 0) == 0; }},
    {"read its parent's memory",
     [](const Prisoner &me) {
         char byte = 0;
         iovec here = {&byte, 1};
         iovec there = {&byte, 1};
         return ::process_vm_readv(me.parent, &here, 1, &there, 1, 0) == 1;
     }},
    {"signal its parent", [](const Prisoner &me) { return ::kill(me.parent, 0) == 0; }},
    {"signal a thread of its parent",
     [](const Prisoner &me) {
         return ::syscall(SYS_tgkill, me.parent, me.parent, 0) == 0 ||
                ::syscall(SYS_tkill, me.parent, 0) == 0;
     }},
    {"take its parent's descriptors",
     [](const Prisoner &me) { return ::syscall(SYS_pidfd_open, me.parent, 0) >= 0; }},
    {"mount",
     [](const Prisoner &me) { return ::mount("none", me.open, "tmpfs", 0, nullptr) == 0; }},
    {"a namespace of its own",
     [](const Prisoner &) { return ::unshare(CLONE_NEWUSER) == 0 || ::unshare(CLONE_NEWNS) == 0; }},
    {"a ring of calls",
     [](const Prisoner &) {
         char parameters[120] = {};
         return ::syscall(SYS_io_uring_setup, 4, parameters) >= 0;
     }},
    {"a program in the kernel",
     [](const Prisoner &) { return ::syscall(SYS_bpf, 0, nullptr, 0) >= 0; }},
    {"a file in memory", [](const Prisoner &) { return ::memfd_create("x", 0) >= 0; }},
    {"watch files", [](const Prisoner &) { return ::inotify_init() >= 0; }},
    {"keys of the user",
     [](const Prisoner &) { return ::syscall(SYS_keyctl, 0, -4, 0, 0, 0) >= 0; }},
    {"code in memory",
     [](const Prisoner &) {
         return ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE | PROT_EXEC,
                       MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) != MAP_FAILED;
     }},
    {"data made code",
     [](const Prisoner &) {
         void *page =
             ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
         return page == MAP_FAILED || ::mprotect(page, 4096, PROT_READ | PROT_EXEC) == 0;
     }},
    {"raise its limits",
     [](const Prisoner &) {
         const rlimit all = {RLIM_INFINITY, RLIM_INFINITY};
         return ::setrlimit(RLIMIT_AS, &all) == 0;
     }},
    {"go before others",
     [](const Prisoner &) {
         const sched_param none = {};
         return ::sched_setscheduler(0, SCHED_BATCH, &none) == 0 ||
                ::setpriority(PRIO_PROCESS, 0, -5) == 0;
     }},
    {"become somebody else", [](const Prisoner &) { return ::setuid(1) == 0 || ::setgid(1) == 0; }},
    {"allocate without end",
     [](const Prisoner &) {
         qint64 had = 0;
         while (had <= ImporterCage::memory &&
                ::mmap(nullptr, 1 << 20, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1,
                       0) != MAP_FAILED)
             had += 1 << 20;
         return had > ImporterCage::memory;
     }},
    {"descriptors without end",
     [](const Prisoner &me) {
         int had = 0;
         while (had < 100 && ::dup(me.document) >= 0)
             ++had;
         return had >= 100;
     }},
};

// What it may do, as readers need it.
static bool works(const Prisoner &me, const ImporterCage::State &state)
{
    char byte = 0;
    struct stat facts = {};
    pthread_t thread = {};
    const bool canRun =
        ::pthread_create(
            &thread, nullptr, [](void *) -> void * { return nullptr; }, nullptr) == 0 &&
        ::pthread_join(thread, nullptr) == 0;
    return ::pread(me.document, &byte, 1, 0) == 1 && byte == 'd' &&
           ::fstat(me.document, &facts) == 0 && facts.st_size == 8 && canRun &&
           (state.landlock == 0 || opens(me.inOpen("file"), O_RDONLY));
}

// In the child: one byte for each attempt, 1 for an escape; before them how the cage is.
[[noreturn]] static void tryAll(const Prisoner &me, int report)
{
    ::dup2(me.document, 3);
    ::dup2(report, 4);
    Prisoner inside = me;
    inside.document = 3;
    const auto state = ImporterCage::close({me.open}, 5);
    char start[] = {static_cast<char>(state ? 'c' : 'x'), 0, 0, 0};
    if (state) {
        start[1] = static_cast<char>(state->landlock);
        start[2] = static_cast<char>(state->seccomp);
        start[3] = static_cast<char>(works(inside, *state));
    }
    bool isTold = ::write(4, start, sizeof start) == sizeof start;
    for (const Attempt &attempt : attempts) {
        const char escaped = attempt.escapes(inside) ? 1 : 0;
        isTold = isTold && ::write(4, &escaped, 1) == 1;
    }
    ::_exit(isTold ? 0 : 1);
}

TEST(ImporterCage, HasNoWayOut)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer's own thread would be outside";
#endif
    const TestFolder folder;
    folder.file(QStringLiteral("open/file"), "readable");
    folder.file(QStringLiteral("secret/file"), "secret");
    const QByteArray documentPath = folder.file(QStringLiteral("document"), "document").toUtf8();
    const XPFileDescriptor document(::open(documentPath.constData(), O_RDONLY | O_CLOEXEC));
    const Prisoner prisoner = {folder.path(QStringLiteral("open")).toUtf8(),
                               folder.path(QStringLiteral("secret")).toUtf8(), document.get(),
                               ::getpid()};
    int ends[2] = {-1, -1};
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const XPFileDescriptor reading(ends[0]);
    XPFileDescriptor writing(ends[1]);
    const pid_t child = ::fork();
    if (child == 0)
        tryAll(prisoner, writing.get());
    writing.close();
    char start[4] = {};
    ASSERT_EQ(::read(reading.get(), start, sizeof start), 4);
    ASSERT_EQ(start[0], 'c') << "the cage could not be closed";
    EXPECT_GT(start[1], 0) << "no Landlock here: what it guards was not tried";
    EXPECT_TRUE(start[2]) << "no seccomp here: what it guards was not tried";
    EXPECT_TRUE(start[3]) << "what a reader needs is refused";
    for (const Attempt &attempt : attempts) {
        char escaped = 1;
        ASSERT_EQ(::read(reading.get(), &escaped, 1), 1) << "died of it: " << attempt.name;
        EXPECT_FALSE(escaped) << attempt.name;
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_FALSE(::access(prisoner.inOpen("new"), F_OK) == 0 ||
                 ::access(prisoner.inOpen("two"), F_OK) == 0);
}

// Without folders to read nothing can be opened, whatever the kernel's Landlock is.
TEST(ImporterCage, OpensNothingWithoutFolders)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer's own thread would be outside";
#endif
    const TestFolder folder;
    const QByteArray path = folder.file(QStringLiteral("file")).toUtf8();
    const pid_t child = ::fork();
    if (child == 0) {
        const auto state = ImporterCage::close({}, 3);
        ::_exit(!state ? 2 : ::open(path.constData(), O_RDONLY) >= 0 ? 3 : errno != EPERM ? 4 : 0);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 0);
}
