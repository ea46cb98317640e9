// XPFiledDocuments: documents into the managed folder.
#include "KPDoc.h"
#include "KPPool.h"
#include "XPFileUtils.h"
#include "XPFiledDocuments.h"
#include "XPFilingRun.h"
#include "XPFolderNames.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"

#include <fcntl.h>

const QString XPFiledDocuments::aboutToMoveNotification =
    QStringLiteral("aboutToPerhapsMoveDocuments");
const QString XPFiledDocuments::pathChangedNotification = QStringLiteral("documentPathChanged");

static std::optional<QString> onlyPath(const XPFilingRun &run)
{
    const QStringList &paths = run.report().paths;
    return paths.isEmpty() ? std::nullopt : std::optional(paths.first());
}

void XPFiledDocuments::tellMoved(const QString &from, const QString &to)
{
    const PropertyValue paths = PropertyValue::Dictionary{{QStringLiteral("oldPath"), from},
                                                          {QStringLiteral("newPath"), to}};
    XPNotificationCenter::instance().post(pathChangedNotification, paths);
}

QString XPFiledDocuments::unusedDestinationPath(const QString &path)
{
    return XPFileUtils::findUnusedPath(currentFiledDocumentsPath() + u'/' + XPPath::fileName(path));
}

std::optional<QString> XPFiledDocuments::setToManagedCopyIfNeeded(const QString &path)
{
    XPFilingRun run;
    run.setToManaged({path});
    return onlyPath(run);
}

QStringList XPFiledDocuments::setToManaged(const QStringList &paths)
{
    XPFilingRun run;
    run.setToManaged(paths);
    return run.report().paths;
}

std::optional<QString> XPFiledDocuments::copyToFiledDocumentsAndSetManaged(const QString &path)
{
    if (path.isEmpty())
        return QString();
    XPFilingRun run;
    run.copyAll({path});
    return onlyPath(run);
}

QStringList XPFiledDocuments::copyAllToFiledDocumentsAndSetManaged(const QStringList &paths)
{
    XPFilingRun run;
    run.copyAll(paths);
    return run.report().paths;
}

QStringList XPFiledDocuments::putFilesIntoFiledDocuments(const QStringList &paths, bool forceMove)
{
    XPFilingRun run;
    run.putFiles(paths, forceMove);
    return run.report().paths;
}

static void digInside(const QString &top, qsizetype most, QStringList *found,
                      QList<XPFileStep> *unread)
{
    QStringList folders = {top};
    const auto isEnough = [found, most] { return found->size() > most; };
    while (!folders.isEmpty() && !isEnough()) {
        const QString folder = folders.takeLast();
        const auto take = [&](QByteArrayView name) {
            const QString path = folder + u'/' + XPPath::decode(name);
            if (XPFileUtils::isInvisible(path))
                return true;
            if (XPFileUtils::isFileOrPackage(path))
                found->append(KPPool::pooledString(path).toString());
            else
                folders.append(path);
            return !isEnough();
        };
        const int error =
            XPFolderNames::forEach(AT_FDCWD, XPPath::encode(folder).constData(), take);
        if (error != 0 && unread != nullptr)
            unread->append(
                {folder, {}, XPFileStep::Action::Failed, XPError::fromErrno(error, folder), {}});
    }
}

QStringList XPFiledDocuments::digForFilesInsideFolders(const QStringList &paths,
                                                       QList<XPFileStep> *unread, qsizetype most)
{
    QStringList found;
    for (const QString &path : paths) {
        if (found.size() > most)
            break;
        if (XPFileUtils::isFileOrPackage(path))
            found.append(KPPool::pooledString(path).toString());
        else
            digInside(path, most, &found, unread);
    }
    return found;
}
