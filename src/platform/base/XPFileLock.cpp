#include "XPFileLock.h"

#include "XPFolders.h"
#include "XPPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

static XPResult<XPFileDescriptor> openLock(const QString &path)
{
    if (auto error = XPFolders::create(XPPath::folder(path)))
        return *error;
    XPFileDescriptor file(::open(XPPath::encode(path).constData(),
                                 O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
    if (!file.isOpen())
        return XPError::fromErrno(errno, path);
    return file;
}

XPResult<XPFileLock> XPFileLock::take(const QString &path)
{
    auto file = openLock(path);
    if (!file)
        return file.error();
    while (::flock(file->get(), LOCK_EX) != 0) {
        if (errno != EINTR)
            return XPError::fromErrno(errno, path);
    }
    return XPFileLock(std::move(file).value());
}

XPResult<std::optional<XPFileLock>> XPFileLock::takeIfFree(const QString &path)
{
    auto file = openLock(path);
    if (!file)
        return file.error();
    if (::flock(file->get(), LOCK_EX | LOCK_NB) == 0)
        return std::optional(XPFileLock(std::move(file).value()));
    if (errno == EWOULDBLOCK)
        return std::optional<XPFileLock>();
    return XPError::fromErrno(errno, path);
}
