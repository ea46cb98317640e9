#include "ImportDocument.h"

#include "KPContentTypes.h"
#include "XPPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

static XPFileDescriptor openedForReading(const QByteArray &path)
{
    static constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    XPFileDescriptor file(::open(path.constData(), flags | O_NOATIME));
    if (!file.isOpen() && errno == EPERM) // O_NOATIME is for the owner only
        file = XPFileDescriptor(::open(path.constData(), flags));
    return file;
}

XPResult<ImportDocument> ImportDocument::open(const QByteArray &path, const QString &type)
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
