#pragma once

#include "XPError.h"

#include <sys/stat.h>

// What the file system says about one path, links not followed: the `lstat` record, by statx(2).
// Times are nanoseconds since 1970; birth is 0 where the file system does not keep it.
// Threads: a value. Reads are blocking file calls: not on the main thread in hot paths.
struct XPFileInfo
{
    quint32 mode = 0; // type and permission bits, as st_mode
    qint64 size = 0;
    qint64 modified = 0;
    qint64 changed = 0;
    qint64 accessed = 0;
    qint64 birth = 0;
    quint64 device = 0; // major << 32 | minor
    quint64 inode = 0;
    quint32 links = 0;

    bool isDirectory() const { return S_ISDIR(mode); }
    bool isLink() const { return S_ISLNK(mode); }
    bool isRegular() const { return S_ISREG(mode); }

    static XPResult<XPFileInfo> read(const QString &path);
    // The same for the bytes of a path, relative to an open folder (AT_FDCWD: none).
    static XPResult<XPFileInfo> readAt(int folder, const char *name);

    bool operator==(const XPFileInfo &) const = default;
};
