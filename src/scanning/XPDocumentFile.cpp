#include "XPDocumentFile.h"

#include "KarvexFileLock.h"
#include "XPFileAttributes.h"
#include "XPFileDescriptor.h"
#include "XPPath.h"
#include "XPQpdf.h"
#include "XPRename.h"

#include <QRandomGenerator>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Gone at the end unless it was given its name.
struct Temporary
{
    const QByteArray path;
    ~Temporary() { ::unlink(path.constData()); }
};

} // namespace

static std::optional<XPError> failure(int error, const QString &path)
{
    return error ? std::optional(XPError::fromErrno(error, path)) : std::nullopt;
}

static int carryOver(int from, int to)
{
    struct stat status = {};
    struct stat written = {};
    if (::fstat(from, &status) != 0 || ::fstat(to, &written) != 0)
        return errno;
    if (const int error = XPFileAttributes::copy(from, to, false))
        return error;
    if (const int error = XPFileAttributes::compare(from, to))
        return error;
    status.st_atim = written.st_atim;
    status.st_mtim = written.st_mtim; // it has changed now
    return XPFileAttributes::copyStatus(from, to, status, false);
}

static int syncFolder(const QByteArray &path)
{
    const QByteArray folder = path.left(std::max<qsizetype>(path.lastIndexOf('/'), 1));
    const XPFileDescriptor open(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return open.isOpen() && ::fsync(open.get()) != 0 ? errno : 0;
}

static std::optional<XPError>
putContents(const QString &path, bool mayReplace,
            const std::function<std::optional<XPError>(const QString &)> &write)
{
    const QByteArray target = XPPath::encode(path);
    if (target.isEmpty())
        return XPError::fromErrno(EINVAL, path);
    const Temporary temporary{target.left(target.lastIndexOf('/') + 1) + ".murn-" +
                              QByteArray::number(QRandomGenerator::system()->generate64(), 36) +
                              ".part"};
    if (auto error = write(XPPath::decode(temporary.path)))
        return error;
    const XPFileDescriptor made(
        ::open(temporary.path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!made.isOpen())
        return failure(errno, path);
    // Our own writers of attributes keep out until the new file has its name.
    const KarvexFileLock lock(path);
    const XPFileDescriptor old(
        ::open(target.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!old.isOpen() && errno != ENOENT)
        return failure(errno, path);
    if (old.isOpen() && !mayReplace)
        return failure(EEXIST, path);
    if (old.isOpen()) {
        if (const int error = carryOver(old.get(), made.get()))
            return failure(error, path);
    }
    if (::fsync(made.get()) != 0)
        return failure(errno, path);
    const int error = !old.isOpen()
                          ? XPRename::toFreeName(temporary.path.constData(), target.constData())
                      : ::rename(temporary.path.constData(), target.constData()) != 0 ? errno
                                                                                      : 0;
    if (error)
        return failure(error, path);
    return failure(syncFolder(target), path);
}

std::optional<XPError>
xpReplaceContents(const QString &path,
                  const std::function<std::optional<XPError>(const QString &)> &write)
{
    return putContents(path, true, write);
}

static std::optional<XPError> writePDF(QPDF &pdf, const QString &path, bool mayReplace)
{
    return putContents(path, mayReplace, [&](const QString &temporary) -> std::optional<XPError> {
        const QByteArray name = XPPath::encode(temporary);
        const int descriptor =
            ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0)
            return XPError::fromErrno(errno, path);
        std::FILE *file = ::fdopen(descriptor, "wb");
        if (!file) {
            ::close(descriptor);
            return XPError::fromErrno(errno, path);
        }
        QPDFWriter writer(pdf, name.constData(), file, true); // closes it
        writer.setStreamDataMode(qpdf_s_compress);
        writer.write();
        return {};
    });
}

std::optional<XPError> xpWritePDF(QPDF &pdf, const QString &path)
{
    return writePDF(pdf, path, true);
}

std::optional<XPError> xpWriteNewPDF(QPDF &pdf, const QString &path)
{
    return writePDF(pdf, path, false);
}
