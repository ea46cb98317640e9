#include "XPAtomicFile.h"

#include "XPFileDescriptor.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPRename.h"

#include <QCoreApplication>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

using Kind = XPError::Kind;

// As many links as the kernel itself follows.
static constexpr int mostLinks = 40;

// No one keeps more damaged copies than this; a bound for the search of a free name.
static constexpr int mostSetAside = 10000;

// errno as it is now, as an error about the path.
static XPError systemError(const QString &path)
{
    return XPError::fromErrno(errno, path);
}

static XPError notAFile(const QString &path)
{
    return XPError::make(Kind::InvalidArgument, qtTrId("XPNotARegularFile"), path);
}

static XPResult<QByteArray> readAll(int file, qint64 limit, const QString &path)
{
    QByteArray bytes;
    for (;;) {
        char buffer[65536];
        const ssize_t got = ::read(file, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return systemError(path);
        if (got == 0)
            return bytes;
        bytes.append(buffer, got);
        if (bytes.size() > limit)
            return XPError::fromErrno(EFBIG, path);
    }
}

XPResult<QByteArray> XPAtomicFile::read(const QString &path, qint64 limit)
{
    // Not blocking: a pipe without a writer would hold us up for ever.
    const XPFileDescriptor file(
        ::open(XPPath::encode(path).constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        return systemError(path);
    if (!S_ISREG(status.st_mode))
        return notAFile(path);
    if (status.st_size > limit)
        return XPError::fromErrno(EFBIG, path);
    return readAll(file.get(), limit, path);
}

XPResult<QString> XPAtomicFile::behindLinks(const QString &path)
{
    QString current = path;
    for (int followed = 0; followed < mostLinks; ++followed) {
        char buffer[PATH_MAX];
        const QByteArray bytes = XPPath::encode(current);
        const ssize_t size = ::readlink(bytes.constData(), buffer, sizeof buffer);
        if (size < 0)
            return current; // no link, or nothing there: whoever opens it will hear why
        const QString target = XPPath::decode(QByteArrayView(buffer, size));
        current = target.startsWith(u'/') ? target : XPPath::folder(current) + u'/' + target;
    }
    return XPError::fromErrno(ELOOP, path);
}

namespace {

// The new contents of one file on their way to its place; gone again unless put there.
class Replacement
{
public:
    explicit Replacement(const QString &path)
        : m_path(path), m_name(XPPath::encode(XPPath::fileName(path)))
    {
    }
    ~Replacement()
    {
        if (!m_temporary.isEmpty())
            ::unlinkat(m_folder.get(), m_temporary.constData(), 0);
    }
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    std::optional<XPError> replaceWith(QByteArrayView bytes)
    {
        if (auto error = open())
            return error;
        if (!writeAll(bytes) || !keepOwnerAndMode() || ::fsync(m_file.get()) != 0 ||
            !m_file.close())
            return systemError(m_path);
        if (::renameat(m_folder.get(), m_temporary.constData(), m_folder.get(),
                       m_name.constData()) != 0)
            return systemError(m_path);
        m_temporary.clear();
        // Some file systems cannot sync a folder (EINVAL); they have no better way either.
        if (::fsync(m_folder.get()) != 0 && errno != EINVAL)
            return systemError(m_path);
        return {};
    }

private:
    std::optional<XPError> open()
    {
        const QString folder = XPPath::folder(m_path);
        if (auto error = XPFolders::create(folder))
            return error;
        m_folder = XPFileDescriptor(
            ::open(XPPath::encode(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!m_folder.isOpen())
            return systemError(m_path);
        if (::fstatat(m_folder.get(), m_name.constData(), &m_old, AT_SYMLINK_NOFOLLOW) == 0) {
            m_replaces = true;
            if (!S_ISREG(m_old.st_mode))
                return notAFile(m_path);
            if (::faccessat(m_folder.get(), m_name.constData(), W_OK, AT_EACCESS) != 0)
                return systemError(m_path);
        } else if (errno != ENOENT) {
            return systemError(m_path);
        }
        return openTemporary();
    }

    // A name of our process alone: one that exists is left from an earlier, dead process of the
    // same number.
    std::optional<XPError> openTemporary()
    {
        static std::atomic<int> counter;
        const QByteArray name = ".murn-" + QByteArray::number(::getpid()) + '-' +
                                QByteArray::number(++counter) + ".tmp";
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        int file = ::openat(m_folder.get(), name.constData(), flags, 0600);
        if (file < 0 && errno == EEXIST && ::unlinkat(m_folder.get(), name.constData(), 0) == 0)
            file = ::openat(m_folder.get(), name.constData(), flags, 0600);
        if (file < 0)
            return systemError(m_path);
        m_file = XPFileDescriptor(file);
        m_temporary = name;
        return {};
    }

    bool writeAll(QByteArrayView bytes)
    {
        while (!bytes.isEmpty()) {
            const ssize_t done =
                ::write(m_file.get(), bytes.data(), static_cast<size_t>(bytes.size()));
            if (done < 0 && errno == EINTR)
                continue;
            if (done < 0)
                return false;
            bytes = bytes.sliced(done);
        }
        return true;
    }

    // Root may keep another user's file theirs; everyone else cannot, and need not succeed.
    bool keepOwnerAndMode()
    {
        if (!m_replaces)
            return true;
        if (m_old.st_uid != ::geteuid() || m_old.st_gid != ::getegid()) {
            if (::fchown(m_file.get(), m_old.st_uid, m_old.st_gid) != 0 && errno != EPERM)
                return false;
        }
        return ::fchmod(m_file.get(), m_old.st_mode & 0777) == 0;
    }

    const QString m_path;
    const QByteArray m_name;
    XPFileDescriptor m_folder;
    XPFileDescriptor m_file;
    QByteArray m_temporary;
    struct stat m_old = {};
    bool m_replaces = false;
};

} // namespace

std::optional<XPError> XPAtomicFile::write(const QString &path, QByteArrayView bytes)
{
    if (XPPath::encode(path).isEmpty())
        return XPError::make(Kind::InvalidArgument, QStringLiteral("not a usable path"), path);
    const auto target = behindLinks(XPPath::absolute(path));
    if (!target)
        return target.error();
    return Replacement(*target).replaceWith(bytes);
}

XPResult<QString> XPAtomicFile::setAside(const QString &path)
{
    const auto target = behindLinks(path);
    if (!target)
        return target.error();
    const QByteArray from = XPPath::encode(*target);
    for (int number = 1; number < mostSetAside; ++number) {
        QString aside = *target + QStringLiteral(".damaged");
        if (number > 1)
            aside += u'-' + QString::number(number);
        const int error = XPRename::toFreeName(from.constData(), XPPath::encode(aside).constData());
        if (error == 0)
            return aside;
        if (error != EEXIST)
            return XPError::fromErrno(error, path);
    }
    return XPError::fromErrno(EEXIST, path);
}
