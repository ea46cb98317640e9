#include "SystemCallFilter.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <span>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

// Whatever their arguments are.
static constexpr std::array allowed = {
    // memory and threads
    SCMP_SYS(brk), SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(madvise), SCMP_SYS(futex),
    SCMP_SYS(set_robust_list), SCMP_SYS(rseq), SCMP_SYS(membarrier), SCMP_SYS(sched_yield),
    SCMP_SYS(sched_getaffinity), SCMP_SYS(getcpu), SCMP_SYS(exit), SCMP_SYS(exit_group),
    // a counter that each of Qt's threads makes itself (large pictures are scaled by several)
    SCMP_SYS(eventfd2),
    // descriptors that it has
    SCMP_SYS(read), SCMP_SYS(readv), SCMP_SYS(pread64), SCMP_SYS(preadv), SCMP_SYS(write),
    SCMP_SYS(writev), SCMP_SYS(lseek), SCMP_SYS(fstat), SCMP_SYS(close), SCMP_SYS(dup),
    SCMP_SYS(recvmsg), SCMP_SYS(poll), SCMP_SYS(ppoll),
    // time, signals to itself and what it is
    SCMP_SYS(clock_gettime), SCMP_SYS(clock_getres), SCMP_SYS(clock_nanosleep), SCMP_SYS(nanosleep),
    SCMP_SYS(gettimeofday), SCMP_SYS(time), SCMP_SYS(getrusage), SCMP_SYS(times),
    SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(sigaltstack),
    SCMP_SYS(restart_syscall), SCMP_SYS(getpid), SCMP_SYS(gettid), SCMP_SYS(getuid),
    SCMP_SYS(geteuid), SCMP_SYS(getgid), SCMP_SYS(getegid), SCMP_SYS(uname), SCMP_SYS(sysinfo),
    SCMP_SYS(getrandom)};

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

// Adds up failures, so that one look at the end is enough.
class Rules
{
public:
    explicit Rules(scmp_filter_ctx filter) : m_filter(filter) {}
    void allow(int call, std::initializer_list<scmp_arg_cmp> when = {})
    {
        add(SCMP_ACT_ALLOW, call, when);
    }
    void add(quint32 action, int call, std::initializer_list<scmp_arg_cmp> when)
    {
        const int result = seccomp_rule_add_array(
            m_filter, action, call, static_cast<unsigned>(when.size()), std::data(when));
        m_error = m_error == 0 ? result : m_error;
    }
    int error() const { return m_error; }

private:
    scmp_filter_ctx m_filter;
    int m_error = 0;
};

static scmp_arg_cmp hasNone(unsigned argument, quint64 bits)
{
    return scmp_arg_cmp{argument, SCMP_CMP_MASKED_EQ, bits, 0};
}

static scmp_arg_cmp hasAll(unsigned argument, quint64 bits)
{
    return scmp_arg_cmp{argument, SCMP_CMP_MASKED_EQ, bits, bits};
}

static scmp_arg_cmp is(unsigned argument, quint64 value)
{
    return scmp_arg_cmp{argument, SCMP_CMP_EQ, value, 0};
}

static void addRules(Rules &rules, bool mayOpen)
{
    for (const int call : allowed)
        rules.allow(call);
    // No code that did not come with a program or a library.
    rules.allow(SCMP_SYS(mmap), {hasNone(2, PROT_EXEC)});
    rules.allow(SCMP_SYS(mprotect), {hasNone(2, PROT_EXEC)});
    // Facts of a descriptor, not of a path.
    rules.allow(SCMP_SYS(newfstatat), {hasAll(3, AT_EMPTY_PATH)});
    rules.allow(SCMP_SYS(statx), {hasAll(2, AT_EMPTY_PATH)});
    for (const int command : {F_GETFD, F_SETFD, F_GETFL, F_DUPFD, F_DUPFD_CLOEXEC})
        rules.allow(SCMP_SYS(fcntl), {is(1, static_cast<quint64>(command))});
    rules.allow(SCMP_SYS(prctl), {is(0, PR_SET_NAME)});
    rules.allow(SCMP_SYS(prlimit64), {is(2, 0)});                             // asking, not setting
    rules.allow(SCMP_SYS(tgkill), {is(0, static_cast<quint64>(::getpid()))}); // abort()
    // Threads, not processes. The C library falls back to clone() where clone3(), whose flags
    // cannot be looked at, is not there.
    rules.allow(SCMP_SYS(clone), {hasAll(0, CLONE_THREAD | CLONE_VM | CLONE_SIGHAND)});
    rules.add(SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), {});
    if (!mayOpen)
        return;
    constexpr quint64 writing =
        O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_PATH | (O_TMPFILE & ~O_DIRECTORY);
    rules.allow(SCMP_SYS(open), {hasNone(1, writing)});
    rules.allow(SCMP_SYS(openat), {hasNone(2, writing)});
    rules.allow(SCMP_SYS(getdents64));
}

XPResult<bool> SystemCallFilter::install(bool mayOpen)
{
    const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)), &seccomp_release);
    if (!filter)
        return XPError::fromErrno(ENOMEM);
    Rules rules(filter.get());
    addRules(rules, mayOpen);
    if (rules.error() != 0)
        return XPError::fromErrno(-rules.error());
    const int result = seccomp_load(filter.get());
    if (result == -EINVAL || result == -ENOSYS || result == -ECANCELED)
        return false;
    if (result != 0)
        return XPError::fromErrno(-result);
    return true;
}
