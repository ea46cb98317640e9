#include "ImporterCage.h"

#include "Landlock.h"
#include "SystemCallFilter.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

static constexpr rlim_t mostDescriptors = 32;

// Address space in use, in bytes; 0 where /proc does not say.
static rlim_t addressSpace()
{
    unsigned long pages = 0;
    if (FILE *file = std::fopen("/proc/self/statm", "re")) {
        if (std::fscanf(file, "%lu", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return static_cast<rlim_t>(pages) * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

static std::optional<XPError> limit(__rlimit_resource resource, rlim_t value)
{
    const rlimit both = {value, value};
    if (::setrlimit(resource, &both) != 0)
        return XPError::fromErrno(errno);
    return {};
}

static std::optional<XPError> limitResources()
{
    const rlim_t before = addressSpace();
    if (before == 0)
        return XPError::make(XPError::Kind::Unsupported, QStringLiteral("/proc is missing"));
    struct Limit
    {
        __rlimit_resource resource;
        rlim_t value;
    };
    for (const Limit &each :
         {Limit{RLIMIT_CORE, 0}, Limit{RLIMIT_FSIZE, 0}, Limit{RLIMIT_NOFILE, mostDescriptors},
          Limit{RLIMIT_MEMLOCK, 0},
          Limit{RLIMIT_AS, before + static_cast<rlim_t>(ImporterCage::memory)}}) {
        if (auto error = limit(each.resource, each.value))
            return error;
    }
    return {};
}

// Libraries write to standard error; what they say there, hostile files say.
static std::optional<XPError> closeDescriptors(int firstToClose)
{
    const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nowhere < 0)
        return XPError::fromErrno(errno);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::dup2(nowhere, standard) < 0)
            return XPError::fromErrno(errno);
    }
    if (::syscall(SYS_close_range, static_cast<unsigned>(firstToClose), ~0U, 0U) != 0)
        return XPError::fromErrno(errno);
    return {};
}

// Landlock holds for the calling thread and those that it starts: one that runs already would be
// outside.
static bool isAlone()
{
    std::error_code error;
    int threads = 0;
    for (std::filesystem::directory_iterator it("/proc/self/task", error), end; !error && it != end;
         it.increment(error))
        ++threads;
    return !error && threads == 1;
}

XPResult<ImporterCage::State> ImporterCage::close(const std::vector<QByteArray> &readOnlyFolders,
                                                  int firstToClose)
{
    if (!isAlone())
        return XPError::make(XPError::Kind::InvalidArgument,
                             QStringLiteral("a thread runs outside the cage"));
    if (auto error = closeDescriptors(firstToClose))
        return *error;
    if (::prctl(PR_SET_DUMPABLE, 0) != 0 || ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return XPError::fromErrno(errno);
    if (auto error = limitResources())
        return *error;
    const auto landlock = Landlock::restrictTo(readOnlyFolders);
    if (!landlock)
        return landlock.error();
    const auto seccomp = SystemCallFilter::install(*landlock > 0 && !readOnlyFolders.empty());
    if (!seccomp)
        return seccomp.error();
    return State{*landlock, *seccomp};
}
