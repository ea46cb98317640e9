#include "XPRename.h"

#include "XPPath.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// A folder takes no second name, but it may replace an empty folder, which is made first.
static int renameFolder(int fromFolder, const char *from, int toFolder, const char *to)
{
    if (::mkdirat(toFolder, to, S_IRWXU) != 0)
        return errno;
    if (::renameat(fromFolder, from, toFolder, to) == 0)
        return 0;
    const int error = errno;
    ::unlinkat(toFolder, to, AT_REMOVEDIR);
    return error;
}

// A drive that knows no second names: the new one is taken by an empty file, which is replaced.
static int renameOverEmpty(int fromFolder, const char *from, int toFolder, const char *to)
{
    const int empty =
        ::openat(toFolder, to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (empty < 0)
        return errno;
    ::close(empty);
    if (::renameat(fromFolder, from, toFolder, to) == 0)
        return 0;
    const int error = errno;
    ::unlinkat(toFolder, to, 0);
    return error;
}

// Where the old name cannot go, the new one goes again.
static int renameByLink(int fromFolder, const char *from, int toFolder, const char *to)
{
    if (::linkat(fromFolder, from, toFolder, to, 0) != 0) {
        const bool knowsLinks = errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS;
        return knowsLinks ? errno : renameOverEmpty(fromFolder, from, toFolder, to);
    }
    if (::unlinkat(fromFolder, from, 0) == 0)
        return 0;
    const int error = errno;
    ::unlinkat(toFolder, to, 0);
    return error;
}

int XPRename::toFreeNameAt(int fromFolder, const char *from, int toFolder, const char *to)
{
    if (::renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    struct stat status = {};
    if (::fstatat(fromFolder, from, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    return S_ISDIR(status.st_mode) ? renameFolder(fromFolder, from, toFolder, to)
                                   : renameByLink(fromFolder, from, toFolder, to);
}

int XPRename::toFreeName(const char *from, const char *to)
{
    return toFreeNameAt(AT_FDCWD, from, AT_FDCWD, to);
}

std::optional<XPError> XPRename::toFreeName(const QString &from, const QString &to)
{
    const QByteArray fromBytes = XPPath::encode(from);
    const QByteArray toBytes = XPPath::encode(to);
    if (fromBytes.isEmpty() || toBytes.isEmpty())
        return XPError::make(XPError::Kind::InvalidArgument,
                             QStringLiteral("not a usable file name"),
                             fromBytes.isEmpty() ? from : to);
    const int error = toFreeName(fromBytes.constData(), toBytes.constData());
    if (error == 0)
        return {};
    return XPError::fromErrno(error, from);
}
