#include "XPFileTree.h"

#include "XPFileAttributes.h"
#include "XPFileDescriptor.h"
#include "XPFileStamps.h"
#include "XPFolderNames.h"

#include <cerrno>
#include <fcntl.h>
#include <linux/limits.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using XPFileTree::Copy;

static constexpr int readOnly = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
static constexpr int readFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

static int namesIn(int folder, std::vector<QByteArray> &names)
{
    return XPFolderNames::forEach(folder, ".", [&names](QByteArrayView name) {
        names.push_back(name.toByteArray());
        return true;
    });
}

// Some file systems cannot sync everything (EINVAL); they have no better way either.
static int sync(int file)
{
    return ::fsync(file) == 0 || errno == EINVAL ? 0 : errno;
}

static int linkText(int folder, const QByteArray &name, QByteArray &text)
{
    text.resize(PATH_MAX);
    const ssize_t size = ::readlinkat(folder, name.constData(), text.data(), PATH_MAX);
    if (size < 0)
        return errno;
    text.resize(size);
    return 0;
}

// What follows the contents: everything else the file carries, then the disk, then a hard look.
static int finish(int from, int to, const struct stat &status, bool mayBeLost)
{
    int error = XPFileAttributes::copy(from, to, mayBeLost);
    if (error == 0)
        error = XPFileAttributes::copyStatus(from, to, status, mayBeLost);
    if (error == 0)
        error = sync(to);
    if (error == 0 && !mayBeLost)
        error = XPFileAttributes::compare(from, to);
    return error;
}

static int copyFile(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to,
                    Copy &copy)
{
    const XPFileDescriptor source(::openat(fromFolder, from.constData(), readOnly));
    struct stat status = {};
    if (!source.isOpen() || ::fstat(source.get(), &status) != 0)
        return errno;
    XPFileDescriptor target(::openat(toFolder, to.constData(),
                                     O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!target.isOpen())
        return errno;
    XPFileBytes::Progress progress;
    if (copy.progress)
        progress = [&copy](qint64 done) { return copy.progress(copy.bytesDone + done); };
    int error = XPFileBytes::copy(source.get(), target.get(), status.st_size, progress);
    if (error == 0)
        error = finish(source.get(), target.get(), status, copy.attributesMayBeLost);
    struct stat result = {};
    if (error == 0 && ::fstat(target.get(), &result) != 0)
        error = errno;
    if (error == 0 && result.st_size != status.st_size)
        error = EILSEQ;
    if (!target.close() && error == 0)
        error = errno;
    copy.bytesDone += status.st_size;
    return error;
}

static int copyLink(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to,
                    const struct stat &status)
{
    QByteArray text;
    if (const int error = linkText(fromFolder, from, text))
        return error;
    if (::symlinkat(text.constData(), toFolder, to.constData()) != 0)
        return errno;
    (void)!::fchownat(toFolder, to.constData(), status.st_uid, status.st_gid, AT_SYMLINK_NOFOLLOW);
    const timespec times[] = {status.st_atim, status.st_mtim};
    (void)::utimensat(toFolder, to.constData(), times, AT_SYMLINK_NOFOLLOW);
    QByteArray result;
    const int error = linkText(toFolder, to, result);
    return error == 0 && result != text ? EILSEQ : error;
}

static int copyAny(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to,
                   Copy &copy, int depth);

static int copyFolder(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to,
                      Copy &copy, int depth)
{
    const XPFileDescriptor source(::openat(fromFolder, from.constData(), readFolder));
    struct stat status = {};
    if (!source.isOpen() || ::fstat(source.get(), &status) != 0 ||
        ::mkdirat(toFolder, to.constData(), S_IRWXU) != 0)
        return errno;
    const XPFileDescriptor target(::openat(toFolder, to.constData(), readFolder));
    if (!target.isOpen())
        return errno;
    std::vector<QByteArray> names;
    int error = namesIn(source.get(), names);
    for (const QByteArray &name : names) {
        if (error == 0)
            error = copyAny(source.get(), name, target.get(), name, copy, depth + 1);
    }
    return error != 0 ? error
                      : finish(source.get(), target.get(), status, copy.attributesMayBeLost);
}

static int copyAny(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to,
                   Copy &copy, int depth)
{
    struct stat status = {};
    if (::fstatat(fromFolder, from.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    switch (status.st_mode & S_IFMT) {
    case S_IFREG:
        return copyFile(fromFolder, from, toFolder, to, copy);
    case S_IFLNK:
        return copyLink(fromFolder, from, toFolder, to, status);
    case S_IFIFO:
        return ::mknodat(toFolder, to.constData(), status.st_mode, 0) == 0 ? 0 : errno;
    case S_IFDIR:
        return depth < XPFileStamps::deepest
                   ? copyFolder(fromFolder, from, toFolder, to, copy, depth)
                   : ELOOP;
    default:
        return ENOTSUP;
    }
}

int XPFileTree::copy(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to,
                     Copy &copy)
{
    return copyAny(fromFolder, from, toFolder, to, copy, 0);
}

static int containsFolder(int whole, int part, bool withAttributes)
{
    std::vector<QByteArray> names;
    int error = namesIn(part, names);
    for (const QByteArray &name : names) {
        if (error == 0)
            error = XPFileTree::contains(whole, name, part, name, withAttributes);
    }
    return error;
}

static int sameLinks(int oneFolder, const QByteArray &one, int otherFolder, const QByteArray &other)
{
    QByteArray first;
    QByteArray second;
    int error = linkText(oneFolder, one, first);
    if (error == 0)
        error = linkText(otherFolder, other, second);
    return error == 0 && first != second ? EILSEQ : error;
}

int XPFileTree::contains(int wholeFolder, const QByteArray &whole, int partFolder,
                         const QByteArray &part, bool withAttributes)
{
    struct stat one = {};
    struct stat other = {};
    if (::fstatat(partFolder, part.constData(), &other, AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    if (::fstatat(wholeFolder, whole.constData(), &one, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? EILSEQ : errno;
    if ((one.st_mode & S_IFMT) != (other.st_mode & S_IFMT))
        return EILSEQ;
    if (S_ISLNK(one.st_mode))
        return sameLinks(wholeFolder, whole, partFolder, part);
    if (!S_ISDIR(one.st_mode) && !S_ISREG(one.st_mode))
        return 0;
    const XPFileDescriptor first(::openat(wholeFolder, whole.constData(), readOnly));
    const XPFileDescriptor second(::openat(partFolder, part.constData(), readOnly));
    if (!first.isOpen() || !second.isOpen())
        return errno;
    const int error = S_ISDIR(one.st_mode)
                          ? containsFolder(first.get(), second.get(), withAttributes)
                          : XPFileBytes::compare(first.get(), second.get());
    return error == 0 && withAttributes ? XPFileAttributes::compare(second.get(), first.get())
                                        : error;
}

// A folder of ours without the right to take names out of it is given it.
static XPFileDescriptor openToEmpty(int folder, const QByteArray &name)
{
    XPFileDescriptor opened(::openat(folder, name.constData(), readFolder));
    if (!opened.isOpen() && errno == EACCES &&
        ::fchmodat(folder, name.constData(), S_IRWXU, 0) == 0)
        opened = XPFileDescriptor(::openat(folder, name.constData(), readFolder));
    if (opened.isOpen() && ::faccessat(opened.get(), ".", W_OK | X_OK, AT_EACCESS) != 0)
        (void)::fchmod(opened.get(), S_IRWXU);
    return opened;
}

static int removeAny(int folder, const QByteArray &name, std::optional<dev_t> device)
{
    struct stat status = {};
    if (::fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? 0 : errno;
    if (device && status.st_dev != *device)
        return EXDEV;
    if (!S_ISDIR(status.st_mode))
        return ::unlinkat(folder, name.constData(), 0) == 0 || errno == ENOENT ? 0 : errno;
    const XPFileDescriptor opened = openToEmpty(folder, name);
    if (!opened.isOpen())
        return errno;
    std::vector<QByteArray> names;
    int error = namesIn(opened.get(), names);
    for (const QByteArray &child : names) {
        if (error == 0)
            error = removeAny(opened.get(), child, status.st_dev);
    }
    if (error == 0 && ::unlinkat(folder, name.constData(), AT_REMOVEDIR) != 0)
        error = errno;
    return error;
}

int XPFileTree::remove(int folder, const QByteArray &name)
{
    return removeAny(folder, name, {});
}

int XPFileTree::mayRemove(int folder, const QByteArray &name)
{
    struct stat status = {};
    if (::fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    if (!S_ISDIR(status.st_mode))
        return 0;
    const XPFileDescriptor opened(::openat(folder, name.constData(), readFolder));
    if (!opened.isOpen())
        return errno;
    if (status.st_uid != ::geteuid() && ::faccessat(opened.get(), ".", W_OK | X_OK, AT_EACCESS))
        return errno;
    std::vector<QByteArray> names;
    int error = namesIn(opened.get(), names);
    for (const QByteArray &child : names) {
        if (error == 0)
            error = mayRemove(opened.get(), child);
    }
    return error;
}
