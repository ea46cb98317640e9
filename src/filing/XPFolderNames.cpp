#include "XPFolderNames.h"

#include "XPFileDescriptor.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>

static bool isDots(const char *name)
{
    return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

int XPFolderNames::forEach(int folder, const char *path,
                           const std::function<bool(QByteArrayView)> &take)
{
    const XPFileDescriptor opened(
        ::openat(folder, path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!opened.isOpen())
        return errno;
    alignas(dirent64) char buffer[65536];
    for (;;) {
        const ssize_t size = ::getdents64(opened.get(), buffer, sizeof buffer);
        if (size < 0)
            return errno;
        if (size == 0)
            return 0;
        for (ssize_t at = 0; at < size;) {
            const auto *entry = reinterpret_cast<const dirent64 *>(buffer + at);
            at += entry->d_reclen;
            if (!isDots(entry->d_name) && !take(QByteArrayView(entry->d_name)))
                return 0;
        }
    }
}
