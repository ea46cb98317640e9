#include "KPTypeResource.h"

#include "KPContentTypes.h"
#include "KPFileType.h"
#include "KPMimeTypes.h"
#include "XPFileDescriptor.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <cerrno>
#include <fcntl.h>
#include <vector>

using KPContentTypes::Number;

// Enough for every magic number but those of disk images, which have extensions.
static constexpr size_t firstBytesSize = 8192;

static QString folderType(const QString &extension)
{
    for (const Number type : KPContentTypes::typesForExtension(extension)) {
        if (KPContentTypes::isOfFolders(type))
            return KPContentTypes::identifier(type);
    }
    return KPFileType::folderUTI;
}

// The first bytes of a regular file; empty when it cannot be read or is none any more. Never
// waits for the writer of a pipe that took the file's place.
static QByteArray firstBytes(const QString &path)
{
    const QByteArray name = XPPath::encode(path);
    constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY;
    const XPFileDescriptor file(::open(name.constData(), flags));
    struct stat info = {};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return {};
    QByteArray bytes(firstBytesSize, Qt::Uninitialized);
    ssize_t got = 0;
    do {
        got = ::read(file.get(), bytes.data(), firstBytesSize);
    } while (got < 0 && errno == EINTR);
    bytes.truncate(got > 0 ? got : 0);
    return bytes;
}

static Number typeOfContent(const QString &path)
{
    const QByteArray bytes = firstBytes(path);
    return bytes.isEmpty() ? KPContentTypes::none : KPMimeTypes::typeForData(bytes);
}

// Several types share the extension: the first that is, or is a kind of, what the content shows.
static Number choose(const std::vector<Number> &candidates, Number content)
{
    for (const Number type : candidates) {
        if (KPContentTypes::conforms(type, content) || KPContentTypes::conforms(content, type))
            return type;
    }
    return KPContentTypes::none;
}

static QString regularFileType(const QString &path, const QString &extension)
{
    std::vector<Number> candidates;
    const quint16 number = KPContentTypes::extensionNumber(extension);
    if (number == 0 && !extension.isEmpty())
        return KPFileType::preferredUTIForExtension(extension);
    for (const Number type : KPContentTypes::typesForExtensionNumber(number)) {
        if (!KPContentTypes::isOfFolders(type))
            candidates.push_back(type);
    }
    if (candidates.size() == 1)
        return KPContentTypes::identifier(candidates.front());
    const Number content = typeOfContent(path);
    return KPContentTypes::identifier(candidates.empty() ? content : choose(candidates, content));
}

std::optional<QString> KPTypeResource::typeForMode(quint32 mode, const QString &extension)
{
    if (S_ISLNK(mode))
        return KPFileType::aliasUTI;
    if (S_ISDIR(mode))
        return folderType(extension);
    if (!S_ISREG(mode))
        return KPFileType::itemUTI;
    return {};
}

std::optional<QString> KPTypeResource::read(const QString &path, const QString &extension,
                                            std::optional<quint32> mode)
{
    if (!mode) {
        const auto info = XPFileInfo::read(path);
        if (!info)
            return {};
        mode = info->mode;
    }
    if (auto type = typeForMode(*mode, extension))
        return type;
    return regularFileType(path, extension);
}
