#include "XPFileUtils.h"

#include "XPAuthenticatedTrash.h"
#include "XPFileFacts.h"
#include "XPFileInfo.h"
#include "XPFilePlace.h"
#include "XPFileTree.h"
#include "XPFolderNames.h"
#include "XPFolders.h"
#include "XPFreeNames.h"
#include "XPPath.h"
#include "XPRename.h"

#include <QCoreApplication>
#include <fcntl.h>

QString XPFileUtils::findUnusedPath(const QString &path)
{
    return XPFreeNames(XPPath::folder(path)).take(XPPath::fileName(path));
}

bool XPFileUtils::isFileOrPackage(const QString &path)
{
    return !IsRealFolder(path);
}

bool XPFileUtils::isInvisible(const QString &path)
{
    return XPPath::fileName(path).startsWith(u'.');
}

bool XPFileUtils::isEmptyDirectory(const QString &path)
{
    bool isEmpty = true;
    const int error =
        XPFolderNames::forEach(AT_FDCWD, XPPath::encode(path).constData(),
                               [&isEmpty](QByteArrayView) { return isEmpty = false; });
    return error == 0 && isEmpty;
}

std::optional<XPError> XPFileUtils::moveItemOnSameFileSystem(const QString &path,
                                                             const QString &toPath)
{
    return XPRename::toFreeName(path, toPath);
}

bool XPFileUtils::isGuarded(const QString &path)
{
    return path.contains(u"/Library/Mail/") || path.contains(u"Photos Library.photoslibrary");
}

std::optional<XPError>
XPFileUtils::moveItemOnSameFileSystemCheckingForSpecialExclusions(const QString &path,
                                                                  const QString &toPath)
{
    if (isGuarded(path))
        return XPError::make(XPError::Kind::NotPermitted, qtTrId("XPOwnFilesStay"), path);
    return moveItemOnSameFileSystem(path, toPath);
}

bool XPFileUtils::moveFileToTrash(const QString &path, bool useDeleteOnFail)
{
    if (!MoveFileToTrash(path) && useDeleteOnFail) {
        if (const auto place = XPFilePlace::open(path))
            (void)XPFileTree::remove(place->folder(), place->name());
    }
    const auto info = XPFileInfo::read(path);
    return !info && info.error().kind == XPError::Kind::NotFound;
}

QString XPFileUtils::documentsFolder()
{
    return XPFolders::documents();
}

QString XPFileUtils::appSupportFolderBase()
{
    return XPFolders::applicationSupport();
}

QString XPFileUtils::ourAppSupportFolder()
{
    return XPFolders::ourApplicationSupport();
}

QString XPFileUtils::cacheFolder()
{
    return XPFolders::caches();
}

QString XPFileUtils::ourCacheFolder()
{
    return XPFolders::ourCaches();
}

QString XPFileUtils::safariDownloadsFolder()
{
    return XPFolders::downloads();
}

QString XPFileUtils::mobileDocumentsFolder()
{
    return XPFolders::expandTilde(QStringLiteral("~/Library/Mobile Documents"));
}

QString XPFileUtils::dropBoxFolder()
{
    return XPFolders::expandTilde(QStringLiteral("~/Dropbox"));
}

QString XPFileUtils::errnoString(int number)
{
    return xpErrnoString(number);
}
