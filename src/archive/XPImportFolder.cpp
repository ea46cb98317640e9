#include "XPImportFolder.h"

#include "XPPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

static constexpr int asFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
static constexpr mode_t newFolder = 0777; // less what the user's mask takes

int XPImportFolder::open(const QString &path)
{
    return open(XPFileDescriptor(::open(XPPath::encode(path).constData(), asFolder)));
}

int XPImportFolder::open(XPFileDescriptor folder)
{
    m_root = std::move(folder);
    return m_root.isOpen() ? 0 : errno;
}

int XPImportFolder::openBelow(const QByteArray &folder, bool makes, XPFileDescriptor &found) const
{
    found = XPFileDescriptor(::fcntl(m_root.get(), F_DUPFD_CLOEXEC, 0));
    for (const QByteArray &name : folder.split('/')) {
        if (!found.isOpen() || name.isEmpty())
            break;
        if (makes && ::mkdirat(found.get(), name.constData(), newFolder) != 0 && errno != EEXIST)
            return errno;
        found = XPFileDescriptor(::openat(found.get(), name.constData(), asFolder | O_NOFOLLOW));
    }
    return found.isOpen() ? 0 : errno;
}

int XPImportFolder::folderOf(const QString &path, bool makes, XPFileDescriptor &folder)
{
    const QByteArray bytes = XPPath::encode(path);
    const QByteArray wanted = bytes.left(std::max<qsizetype>(bytes.lastIndexOf('/'), 0));
    if (!m_last.isOpen() || wanted != m_lastPath) {
        XPFileDescriptor found;
        if (const int error = openBelow(wanted, makes, found))
            return error;
        m_last = std::move(found);
        m_lastPath = wanted;
    }
    folder = XPFileDescriptor(::fcntl(m_last.get(), F_DUPFD_CLOEXEC, 0));
    return folder.isOpen() ? 0 : errno;
}
