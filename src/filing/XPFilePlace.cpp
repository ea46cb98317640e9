#include "XPFilePlace.h"

#include "XPFileInfo.h"
#include "XPPath.h"
#include "XPRename.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

XPFilePlace::XPFilePlace(XPFileDescriptor folder, QByteArray name, QString path)
    : m_folder(std::move(folder)), m_name(std::move(name)), m_path(std::move(path))
{
}

XPResult<XPFilePlace> XPFilePlace::open(const QString &path)
{
    const QByteArray name = XPPath::encode(XPPath::fileName(path));
    if (!path.startsWith(u'/') || name.isEmpty() || name == "." || name == "..")
        return XPError::make(XPError::Kind::InvalidArgument, QStringLiteral("not a usable path"),
                             path);
    const QByteArray folder = XPPath::encode(XPPath::folder(path));
    constexpr int flags = O_DIRECTORY | O_CLOEXEC;
    XPFileDescriptor opened(::open(folder.constData(), O_RDONLY | flags));
    if (!opened.isOpen() && errno == EACCES) // one may be allowed to put things in, not to look
        opened = XPFileDescriptor(::open(folder.constData(), O_PATH | flags));
    if (!opened.isOpen())
        return XPError::fromErrno(errno, path);
    return XPFilePlace(std::move(opened), name, path);
}

bool XPFilePlace::isStillThere() const
{
    struct stat mine = {};
    struct stat there = {};
    return ::fstat(folder(), &mine) == 0 &&
           ::stat(XPPath::encode(XPPath::folder(m_path)).constData(), &there) == 0 &&
           mine.st_dev == there.st_dev && mine.st_ino == there.st_ino;
}

bool XPFilePlace::isInside(quint64 device, quint64 inode) const
{
    auto info = XPFileInfo::readAt(folder(), ".");
    XPFileDescriptor above;
    while (info && (info->device != device || info->inode != inode)) {
        const quint64 before = info->inode;
        const quint64 deviceBefore = info->device;
        const int from = above.isOpen() ? above.get() : folder();
        XPFileDescriptor next(::openat(from, "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!next.isOpen())
            return false;
        above = std::move(next);
        info = XPFileInfo::readAt(above.get(), ".");
        if (info && info->inode == before && info->device == deviceBefore)
            return false; // the root
    }
    return info.hasValue();
}

int XPFilePlace::sync() const
{
    return ::fsync(folder()) == 0 || errno == EINVAL || errno == EBADF ? 0 : errno;
}

int XPFilePlace::rename(const QByteArray &from, const QByteArray &to) const
{
    return XPRename::toFreeNameAt(folder(), from.constData(), folder(), to.constData());
}
