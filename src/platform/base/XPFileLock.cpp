#include "XPFileLock.h"

#include "XPFolders.h"
#include "XPPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

XPResult<XPFileLock> XPFileLock::take(const QString &path)
{
    if (auto error = XPFolders::create(XPPath::folder(path)))
        return *error;
    XPFileDescriptor file(::open(XPPath::encode(path).constData(),
                                 O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
    if (!file.isOpen())
        return XPError::fromErrno(errno, path);
    while (::flock(file.get(), LOCK_EX) != 0) {
        if (errno != EINTR)
            return XPError::fromErrno(errno, path);
    }
    return XPFileLock(std::move(file));
}
