#include "XPTrash.h"

#include "XPFileDescriptor.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPRename.h"
#include "XPVolumes.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QRandomGenerator>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

using Kind = XPError::Kind;

static constexpr qsizetype longestName = 255; // bytes, of file systems here
static constexpr int mostNumbers = 1000;      // then one that nobody guesses

static const QString noteEnd = QStringLiteral(".trashinfo");

static bool isErrno(const XPError &error, int number)
{
    return error.domain == XPError::posixDomain && error.code == number;
}

// A folder of this user's own. On other volumes no link to one: anybody could have made that.
static int makeOwn(const QString &folder, bool mayBeLink)
{
    const QByteArray bytes = XPPath::encode(folder);
    if (::mkdir(bytes.constData(), 0700) != 0 && errno != EEXIST)
        return errno;
    struct stat status = {};
    if (::fstatat(AT_FDCWD, bytes.constData(), &status, mayBeLink ? 0 : AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    if (!S_ISDIR(status.st_mode))
        return ENOTDIR;
    return status.st_uid == ::geteuid() ? 0 : EPERM;
}

static int makeTrash(const QString &trash, bool mayBeLink = false)
{
    int error = makeOwn(trash, mayBeLink);
    for (const QString &part : {QStringLiteral("/files"), QStringLiteral("/info")}) {
        if (error == 0)
            error = makeOwn(trash + part, false);
    }
    return error;
}

static QString topOf(const QString &path)
{
    const QString top = XPVolumes::volumeOf(XPPath::absolute(path)).mountPoint;
    return top == u"/" ? QString() : top;
}

static XPResult<QString> volumeTrash(const QString &path)
{
    const QString top = topOf(path);
    const QString user = QString::number(::geteuid());
    const QString shared = top + QStringLiteral("/.Trash");
    const auto info = XPFileInfo::read(shared);
    const QString ofUser = shared + u'/' + user;
    if (info && info->isDirectory() && (info->mode & S_ISVTX) != 0 && makeTrash(ofUser) == 0)
        return ofUser;
    const QString own = top + QStringLiteral("/.Trash-") + user;
    if (makeTrash(own) == 0)
        return own;
    return XPError::make(Kind::Unsupported, qtTrId("XPNoTrashOnVolume"), path);
}

// The device of the folder, or of the nearest above it that is there.
static XPResult<dev_t> deviceOfFolder(QString folder)
{
    struct stat status = {};
    while (::stat(XPPath::encode(folder).constData(), &status) != 0) {
        if (errno != ENOENT || folder == u"/")
            return XPError::fromErrno(errno, folder);
        folder = XPPath::folder(folder);
    }
    return status.st_dev;
}

XPResult<QString> XPTrash::folderFor(const QString &path)
{
    const QString home = XPFolders::trash();
    const auto device = deviceOfFolder(home);
    if (!device)
        return device.error();
    struct stat own = {};
    if (::lstat(XPPath::encode(path).constData(), &own) != 0)
        return XPError::fromErrno(errno, path);
    if (own.st_dev != *device)
        return volumeTrash(path);
    // Another trash on the home's own volume would be one that nobody looks into.
    if (const auto error = XPFolders::create(XPPath::folder(home)))
        return *error;
    if (const int error = makeTrash(home, true))
        return XPError::fromErrno(error, path);
    return home;
}

// By which the desktop knows where the file was; relative to the volume unless in the home's trash.
static QByteArray noteOf(const QString &path, const QString &trash)
{
    QString from = XPPath::absolute(path);
    if (trash != XPFolders::trash())
        from = from.mid(topOf(path).size() + 1);
    const QString now =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    return "[Trash Info]\nPath=" + XPPath::encode(from).toPercentEncoding("/") +
           "\nDeletionDate=" + now.toLatin1() + '\n';
}

// 0, or the errno: EEXIST when the name is taken.
static int writeNew(const QByteArray &path, const QByteArray &bytes)
{
    XPFileDescriptor file(
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen())
        return errno;
    const ssize_t written =
        ::write(file.get(), bytes.constData(), static_cast<size_t>(bytes.size()));
    int error = written < 0 ? errno : written != bytes.size() ? ENOSPC : 0;
    if (!file.close() && error == 0)
        error = errno;
    if (error != 0)
        ::unlink(path.constData());
    return error;
}

// "NAME N.EXT" in bytes, cut where its note's name would be too long.
static QByteArray numbered(const QString &name, int number)
{
    QString stem = name;
    QString end;
    if (const QString extension = XPPath::extension(name); !extension.isEmpty()) {
        stem.chop(extension.size() + 1);
        end = u'.' + extension;
    }
    if (number > mostNumbers)
        end.prepend(u' ' + QString::number(QRandomGenerator::global()->generate64(), 16));
    else if (number > 0)
        end.prepend(u' ' + QString::number(number));
    const qsizetype room = longestName - noteEnd.size();
    while (!stem.isEmpty() && XPPath::encode(stem).size() + XPPath::encode(end).size() > room)
        stem.chop(stem.back().isLowSurrogate() && stem.size() > 1 &&
                          stem[stem.size() - 2].isHighSurrogate()
                      ? 2
                      : 1);
    return XPPath::encode(stem + end);
}

static bool isThere(const QByteArray &path)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0 || errno != ENOENT;
}

XPResult<QString> XPTrash::reserve(const QString &trash, const QString &path)
{
    const QString name = XPPath::fileName(path);
    const QByteArray bytes = noteOf(path, trash);
    const QByteArray folder = XPPath::encode(trash);
    for (int number = 0; number <= mostNumbers + 1; ++number) {
        const QByteArray candidate = numbered(name, number);
        const QByteArray file = folder + "/files/" + candidate;
        if (isThere(file))
            continue;
        const int error = writeNew(folder + "/info/" + candidate + noteEnd.toLatin1(), bytes);
        if (error == 0)
            return XPPath::decode(file);
        if (error != EEXIST)
            return XPError::fromErrno(error, path);
    }
    return XPError::fromErrno(EEXIST, path);
}

// "…/info/NAME.trashinfo" of "…/files/NAME".
static QString notePath(const QString &inTrash)
{
    return XPPath::folder(XPPath::folder(inTrash)) + QStringLiteral("/info/") +
           XPPath::fileName(inTrash) + noteEnd;
}

void XPTrash::release(const QString &inTrash)
{
    ::unlink(XPPath::encode(notePath(inTrash)).constData());
}

static XPResult<QString> moveTo(const QString &trash, const QString &path, const QString &knownAs)
{
    constexpr int mostRaces = 16; // somebody else takes the name meanwhile
    std::optional<XPError> error;
    for (int race = 0; race < mostRaces; ++race) {
        const auto place = XPTrash::reserve(trash, knownAs);
        if (!place)
            return place.error();
        error = XPRename::toFreeName(path, *place);
        if (!error)
            return *place;
        XPTrash::release(*place);
        if (!isErrno(*error, EEXIST))
            break;
    }
    return *error;
}

XPResult<QString> XPTrash::move(const QString &path, const QString &knownAs)
{
    if (XPPath::encode(path).isEmpty() || !path.startsWith(u'/') || path == u"/")
        return XPError::make(Kind::InvalidArgument, QStringLiteral("not a usable path"), path);
    if (const auto info = XPFileInfo::read(path); !info)
        return info.error();
    const QString &known = knownAs.isEmpty() ? path : knownAs;
    const auto trash = folderFor(path);
    if (!trash)
        return trash.error();
    auto moved = moveTo(*trash, path, known);
    // One file system can be mounted at several places, and renames end at each.
    if (moved || !isErrno(moved.error(), EXDEV) || topOf(path) == topOf(*trash))
        return moved;
    const auto other = volumeTrash(path);
    return other ? moveTo(*other, path, known) : XPResult<QString>(other.error());
}

std::optional<XPError> XPTrash::putBack(const QString &inTrash, const QString &path)
{
    if (auto error = XPFolders::create(XPPath::folder(path)))
        return error;
    auto error = XPRename::toFreeName(inTrash, path);
    if (!error)
        release(inTrash);
    else if (isErrno(*error, EEXIST))
        error->path = path;
    return error;
}
