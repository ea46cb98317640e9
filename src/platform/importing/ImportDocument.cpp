#include "ImportDocument.h"

#include "KPContentTypes.h"
#include "XPMutex.h"
#include "XPPath.h"
#include "XPPatience.h"
#include "XPVolumes.h"

#include <QHash>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

static XPFileDescriptor openedForReading(const QByteArray &path)
{
    static constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    XPFileDescriptor file(::open(path.constData(), flags | O_NOATIME));
    if (!file.isOpen() && errno == EPERM) // O_NOATIME is for the owner only
        file = XPFileDescriptor(::open(path.constData(), flags));
    return file;
}

static XPResult<ImportDocument> opened(const QByteArray &path, const QString &type)
{
    ImportDocument document;
    document.descriptor = openedForReading(path);
    struct stat facts = {};
    if (!document.descriptor.isOpen() || ::fstat(document.descriptor.get(), &facts) != 0)
        return XPError::fromErrno(errno, XPPath::decode(path));
    if (!S_ISREG(facts.st_mode))
        return XPError::make(XPError::Kind::InvalidArgument, QStringLiteral("not a file"),
                             XPPath::decode(path));
    document.device = static_cast<qint64>(facts.st_dev);
    document.inode = static_cast<qint64>(facts.st_ino);
    document.size = facts.st_size;
    document.modified = qint64{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec;
    document.path = path;
    document.type = type;
    return document;
}

using HasEnded = std::shared_ptr<std::atomic<bool>>;

// The last open that was given up, by the mount point of its volume.
struct GivenUp
{
    XPMutex mutex;
    QHash<QString, HasEnded> opens XP_GUARDED_BY(mutex);
};

static GivenUp &givenUp()
{
    static auto &state = *new GivenUp; // for the process: what hangs outlives everything
    return state;
}

static bool hangs(const QString &mountPoint)
{
    const XPLocker locker(givenUp().mutex);
    const auto open = givenUp().opens.constFind(mountPoint);
    return open != givenUp().opens.cend() && !**open;
}

XPResult<ImportDocument> ImportDocument::open(const QByteArray &path, const QString &type,
                                              const std::stop_token &stop,
                                              std::chrono::milliseconds patience)
{
    const auto notAnswering = XPError::fromErrno(ETIMEDOUT, XPPath::decode(path));
    const QString mountPoint = XPVolumes::volumeOf(XPPath::decode(path)).mountPoint;
    if (hangs(mountPoint))
        return notAnswering;
    const auto hasEnded = std::make_shared<std::atomic<bool>>(false);
    auto document = xpWithPatience(
        patience, [=] { return opened(path, type); }, stop, hasEnded);
    if (document)
        return *std::move(document);
    const XPLocker locker(givenUp().mutex);
    givenUp().opens.insert(mountPoint, hasEnded);
    return notAnswering;
}

ImportJob ImportDocument::job() const
{
    ImportJob job;
    job.size = size;
    job.type = type;
    job.tree = KPContentTypes::typeTree(type);
    job.mime = KPContentTypes::preferredMimeType(KPContentTypes::numberOf(type));
    // Undecodable bytes would be lone surrogates here, which the property list refuses.
    const QString extension = XPPath::extension(XPPath::decode(path)).toLower();
    job.extension = extension.isValidUtf16() ? extension : QString();
    return job;
}
