#include "XPFileAttributes.h"

#include <QByteArray>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

static constexpr std::string_view accessList = "system.posix_acl_";

static bool mustArrive(const char *name)
{
    const std::string_view text(name);
    return text.starts_with("user.") || text.starts_with(accessList);
}

static bool isAccessList(const char *name)
{
    return std::string_view(name).starts_with(accessList);
}

// The file system there keeps no such attribute, or has no room for it.
static bool isNoRoom(int error)
{
    return error == ENOTSUP || error == ENOSPC || error == EDQUOT || error == E2BIG ||
           error == ERANGE || error == EPERM;
}

// Calls `read(buffer, size)` with room enough. ENOTSUP counts as nothing there.
template <typename Read>
static int readAll(QByteArray &bytes, const Read &read)
{
    for (;;) {
        const ssize_t size = read(nullptr, 0);
        if (size < 0)
            return errno;
        bytes.resize(size);
        if (size == 0)
            return 0;
        const ssize_t got = read(bytes.data(), static_cast<size_t>(size));
        if (got >= 0) {
            bytes.resize(got);
            return 0;
        }
        if (errno != ERANGE) // ERANGE: it grew in between
            return errno;
    }
}

static int listNames(int file, std::vector<QByteArray> &names)
{
    QByteArray list;
    const int error = readAll(
        list, [file](char *buffer, size_t size) { return ::flistxattr(file, buffer, size); });
    if (error != 0)
        return error == ENOTSUP ? 0 : error;
    for (const char *name = list.constData(); name < list.constData() + list.size();
         name += std::strlen(name) + 1)
        names.emplace_back(name);
    return 0;
}

static int readValue(int file, const char *name, QByteArray &value)
{
    return readAll(value, [file, name](char *buffer, size_t size) {
        return ::fgetxattr(file, name, buffer, size);
    });
}

static int copyOne(int from, int to, const char *name, bool mayBeLost)
{
    QByteArray value;
    const int error = readValue(from, name, value);
    if (error == 0 &&
        ::fsetxattr(to, name, value.constData(), static_cast<size_t>(value.size()), 0) == 0)
        return 0;
    const int why = error != 0 ? error : errno;
    const bool isLeftOut = !mustArrive(name) || (error == 0 && mayBeLost && isNoRoom(why));
    return isLeftOut ? 0 : why;
}

int XPFileAttributes::copy(int from, int to, bool mayBeLost)
{
    std::vector<QByteArray> names;
    int error = listNames(from, names);
    for (const QByteArray &name : names) {
        if (error == 0)
            error = copyOne(from, to, name.constData(), mayBeLost);
    }
    return error;
}

int XPFileAttributes::compare(int from, int to)
{
    std::vector<QByteArray> names;
    int error = listNames(from, names);
    for (const QByteArray &name : names) {
        QByteArray wanted;
        QByteArray found;
        if (error != 0 || !mustArrive(name.constData()))
            continue;
        error = readValue(from, name.constData(), wanted);
        if (error == 0)
            error = readValue(to, name.constData(), found);
        if (error == ENODATA || error == ENOTSUP || (error == 0 && wanted != found))
            error = EILSEQ;
    }
    return error;
}

static int copyAccessLists(int from, int to, bool mayBeLost)
{
    std::vector<QByteArray> names;
    int error = listNames(from, names);
    for (const QByteArray &name : names) {
        if (error == 0 && isAccessList(name.constData()))
            error = copyOne(from, to, name.constData(), mayBeLost);
    }
    return error;
}

int XPFileAttributes::copyStatus(int from, int to, const struct stat &status, bool mayBeLost)
{
    // Only root may give files away, and a group is kept by its members alone. Bits that lend the
    // owner's rights mean nothing for another owner.
    mode_t bits = status.st_mode & 07777;
    if (::fchown(to, status.st_uid, status.st_gid) != 0 &&
        ::fchown(to, static_cast<uid_t>(-1), status.st_gid) != 0)
        bits &= static_cast<mode_t>(~(S_ISUID | S_ISGID));
    // File systems of other systems have no permission bits.
    if (::fchmod(to, bits) != 0 && errno != EPERM && errno != ENOTSUP && errno != ENOSYS)
        return errno;
    if (const int error = copyAccessLists(from, to, mayBeLost))
        return error;
    const timespec times[] = {status.st_atim, status.st_mtim};
    return ::futimens(to, times) == 0 ? 0 : errno;
}

int XPFileAttributes::tryOut(int from, int to)
{
    int error = copy(from, to, false);
    if (error == 0)
        error = compare(from, to);
    std::vector<QByteArray> names;
    (void)listNames(to, names);
    for (const QByteArray &name : names)
        ::fremovexattr(to, name.constData());
    return error;
}
