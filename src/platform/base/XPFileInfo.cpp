#include "XPFileInfo.h"

#include "XPPath.h"

#include <cerrno>
#include <fcntl.h>

static qint64 nanoseconds(const statx_timestamp &time)
{
    return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

XPResult<XPFileInfo> XPFileInfo::read(const QString &path)
{
    const QByteArray bytes = XPPath::encode(path);
    if (bytes.isEmpty())
        return XPError::make(XPError::Kind::InvalidArgument,
                             QStringLiteral("not a usable file name"), path);
    auto result = readAt(AT_FDCWD, bytes.constData());
    if (!result) {
        XPError error = result.error();
        error.path = path;
        return error;
    }
    return result;
}

XPResult<XPFileInfo> XPFileInfo::readAt(int folder, const char *name)
{
    struct statx data = {};
    constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME;
    if (::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, wanted, &data) != 0)
        return XPError::fromErrno(errno);
    XPFileInfo info;
    info.mode = data.stx_mode;
    info.size = static_cast<qint64>(data.stx_size);
    info.modified = nanoseconds(data.stx_mtime);
    info.changed = nanoseconds(data.stx_ctime);
    info.accessed = nanoseconds(data.stx_atime);
    info.birth = (data.stx_mask & STATX_BTIME) ? nanoseconds(data.stx_btime) : 0;
    info.device = quint64{data.stx_dev_major} << 32 | data.stx_dev_minor;
    info.inode = data.stx_ino;
    info.links = data.stx_nlink;
    return info;
}
