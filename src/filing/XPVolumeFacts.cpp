#include "XPVolumeFacts.h"

#include "PropertyValue.h"
#include "XPFileDescriptor.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPropertyList.h"
#include "XPVolumes.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

std::optional<quint64> UnixVolIDForPath(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    return info ? std::optional(info->device) : std::nullopt;
}

// The path, or what of it exists.
static QString nearestExisting(const QString &path)
{
    QString nearest = XPPath::absolute(path);
    while (nearest != u"/" && !XPFileInfo::read(nearest))
        nearest = XPPath::folder(nearest);
    return nearest;
}

std::optional<quint64> UnixVolIDForPathUsePartial(const QString &path)
{
    if (path.isEmpty())
        return {};
    return UnixVolIDForPath(nearestExisting(path));
}

// One device may be mounted in two places, and nothing can be renamed from one to the other.
bool PathsOnSameVol(const QString &one, const QString &other)
{
    const auto volume = UnixVolIDForPathUsePartial(one);
    return volume && volume == UnixVolIDForPathUsePartial(other) &&
           XPVolumes::volumeOf(XPPath::absolute(one)).mountPoint ==
               XPVolumes::volumeOf(XPPath::absolute(other)).mountPoint;
}

bool PathShouldBeTreatedAsReadOnly(const QString &path)
{
    return path.startsWith(XPFolders::expandTilde(QStringLiteral("~/Library/Mail/")));
}

bool PathIsOnWritableDisk(const QString &path)
{
    if (path.isEmpty() || PathShouldBeTreatedAsReadOnly(path))
        return false;
    struct statvfs status = {};
    const QByteArray bytes = XPPath::encode(nearestExisting(path));
    return ::statvfs(bytes.constData(), &status) == 0 && (status.f_flag & ST_RDONLY) == 0;
}

static QByteArray testBytes()
{
    const PropertyValue::Dictionary hello = {{QStringLiteral("there"), QStringLiteral("hello")}};
    return XPPropertyList::writeBinary(hello).valueOr({});
}

// Left by one of us that died here, and no file of somebody else's.
static bool isTestFile(int folder, const char *name, const QByteArray &bytes)
{
    const XPFileDescriptor file(
        ::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    QByteArray found(bytes.size() + 1, 0);
    const auto room = static_cast<size_t>(found.size());
    return file.isOpen() && ::read(file.get(), found.data(), room) == bytes.size() &&
           found.startsWith(bytes);
}

bool PathIsOnWritableDiskTestWrite(const QString &folder)
{
    constexpr char name[] = "testWrite78789i781w.plist";
    if (PathShouldBeTreatedAsReadOnly(folder + u'/') || XPFolders::create(folder))
        return false;
    const XPFileDescriptor opened(
        ::open(XPPath::encode(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const QByteArray bytes = testBytes();
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    XPFileDescriptor file(::openat(opened.get(), name, flags, 0600));
    if (!file.isOpen() && errno == EEXIST && isTestFile(opened.get(), name, bytes) &&
        ::unlinkat(opened.get(), name, 0) == 0)
        file = XPFileDescriptor(::openat(opened.get(), name, flags, 0600));
    if (!file.isOpen())
        return false;
    const auto size = static_cast<size_t>(bytes.size());
    bool worked = ::write(file.get(), bytes.constData(), size) == bytes.size();
    worked = file.close() && worked;
    return ::unlinkat(opened.get(), name, 0) == 0 && worked;
}
