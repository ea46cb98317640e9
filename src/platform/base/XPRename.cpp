#include "XPRename.h"

#include "XPPath.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// A folder takes no second name, but it may replace an empty folder, which is made first.
static int renameFolder(const char *from, const char *to)
{
    if (::mkdir(to, S_IRWXU) != 0)
        return errno;
    if (::rename(from, to) == 0)
        return 0;
    const int error = errno;
    ::rmdir(to);
    return error;
}

int XPRename::toFreeName(const char *from, const char *to)
{
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    struct stat status = {};
    if (::lstat(from, &status) != 0)
        return errno;
    if (S_ISDIR(status.st_mode))
        return renameFolder(from, to);
    return ::link(from, to) == 0 && ::unlink(from) == 0 ? 0 : errno;
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
