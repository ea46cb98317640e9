#include "Landlock.h"

#include "XPFileDescriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/syscall.h>

// As in the kernel's <linux/landlock.h>; the one of Debian 12 ends at version 3 of 6 that are used.
static constexpr quint32 versionFlag = 1;
static constexpr int pathBeneath = 1; // the kind of rule
static constexpr quint64 readFile = 1 << 2;
static constexpr quint64 readFolder = 1 << 3;
static constexpr quint64 tcpBindAndConnect = 3;
static constexpr quint64 abstractSocketsAndSignals = 3;

struct LandlockRuleset
{
    quint64 files;
    quint64 network; // from version 4 on
    quint64 scoped;  // from version 6 on
};

struct [[gnu::packed]] LandlockPathRule
{
    quint64 allowed;
    qint32 folder;
};

// All rights that a version knows: each may be handled only where it is known.
static quint64 fileRightsOf(long version)
{
    const int count = version >= 5 ? 16 : version >= 3 ? 15 : version == 2 ? 14 : 13;
    return (quint64{1} << count) - 1;
}

static std::optional<XPError> allowReading(int rules, const QByteArray &folder)
{
    const XPFileDescriptor opened(::open(folder.constData(), O_PATH | O_CLOEXEC | O_DIRECTORY));
    if (!opened.isOpen())
        return {};
    const LandlockPathRule rule = {readFile | readFolder, opened.get()};
    if (::syscall(SYS_landlock_add_rule, rules, pathBeneath, &rule, 0) != 0)
        return XPError::fromErrno(errno);
    return {};
}

XPResult<int> Landlock::restrictTo(const std::vector<QByteArray> &readOnlyFolders)
{
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, versionFlag);
    if (version < 1)
        return 0;
    LandlockRuleset handled = {fileRightsOf(version), 0, 0};
    size_t size = sizeof handled.files;
    if (version >= 4) {
        handled.network = tcpBindAndConnect;
        size += sizeof handled.network;
    }
    if (version >= 6) {
        handled.scoped = abstractSocketsAndSignals;
        size += sizeof handled.scoped;
    }
    const XPFileDescriptor rules(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &handled, size, 0)));
    if (!rules.isOpen())
        return XPError::fromErrno(errno);
    for (const QByteArray &folder : readOnlyFolders) {
        if (auto error = allowReading(rules.get(), folder))
            return *error;
    }
    if (::syscall(SYS_landlock_restrict_self, rules.get(), 0) != 0)
        return XPError::fromErrno(errno);
    return static_cast<int>(version);
}
