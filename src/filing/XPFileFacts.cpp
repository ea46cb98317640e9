#include "XPFileFacts.h"

#include "KPContentTypes.h"
#include "KPFileType.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <fcntl.h>
#include <unistd.h>

// 1 January 2000, 00:00 UTC, in seconds since 1970.
static constexpr double secondsAt2000 = 946'684'800;

static bool standsForADocument(const QString &path, quint32 mode)
{
    const QString type =
        KPFileType::utiForPath(path, XPPath::extension(XPPath::fileName(path)), mode);
    return KPContentTypes::conformsTo(type, QStringLiteral("com.apple.package")) ||
           KPContentTypes::conformsTo(type, QStringLiteral("com.apple.bundle"));
}

static std::optional<double> modifiedSince1970(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    return info ? std::optional(static_cast<double>(info->modified) / 1e9) : std::nullopt;
}

static bool may(const QString &path, int what)
{
    const QByteArray bytes = XPPath::encode(path);
    return !bytes.isEmpty() && ::faccessat(AT_FDCWD, bytes.constData(), what, AT_EACCESS) == 0;
}

bool IsDirectory(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    return info && info->isDirectory();
}

bool IsFile(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    return info && !info->isDirectory();
}

bool IsPackage(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    return info && info->isDirectory() && standsForADocument(path, info->mode);
}

bool IsRealFolder(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    return info && info->isDirectory() && !standsForADocument(path, info->mode);
}

std::optional<qint64> GetFileSize(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    return info ? std::optional(info->size) : std::nullopt;
}

std::optional<QDateTime> GetFileModificationDate(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    if (!info)
        return {};
    return QDateTime::fromMSecsSinceEpoch(info->modified / 1'000'000, Qt::UTC);
}

std::optional<double> GetFileModificationDateSecondsSince2000(const QString &path)
{
    const auto modified = modifiedSince1970(path);
    return modified ? std::optional(*modified - secondsAt2000) : std::nullopt;
}

std::optional<double> SecondsSinceLastModified(const QString &path)
{
    const auto modified = modifiedSince1970(path);
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000;
    return modified ? std::optional(now - *modified) : std::nullopt;
}

bool IsReadable(const QString &path)
{
    return may(path, R_OK);
}

bool IsWritable(const QString &path)
{
    return may(path, W_OK);
}

bool IsExecutable(const QString &path)
{
    return may(path, X_OK);
}
