#include "KPAppServices.h"

#include "KPQuickLook.h"
#include "KPTagEditing.h"
#include "XPFiledDocuments.h"
#include "XPLog.h"
#include "XPPath.h"

bool KPAppServices::setManaged(bool managed, const QString &path)
{
    m_worker.run(
        [managed, path] {
            if (const auto error = XPFiledDocuments::setManaged(managed, path))
                qCWarning(xpLog).noquote() << XPPath::printable(path) << error->reason();
        },
        [] {});
    return true;
}

void KPAppServices::clearCacheForPath(const QString &path)
{
    KPQuickLook::clearCacheForPath(path);
}

void KPAppServices::replaceOriginalTags(const TagChange &change)
{
    xpGuiThread.assertHere();
    if (KPTagEditing *editing = KPTagEditing::current())
        editing->replaceOriginalTags(change);
    else
        KPDocServices::replaceOriginalTags(change);
}

void KPAppServices::revealInLibrary(const QStringList &paths)
{
    Q_EMIT revealAsked(paths);
}

void KPAppServices::pathChanged(const QString &oldPath, const QString &newPath)
{
    Q_EMIT pathMoved(oldPath, newPath);
}

void KPAppServices::openInfoWindow(const QStringList &paths)
{
    Q_EMIT infoAsked(paths);
}

void KPAppServices::importDropped(const QMimeData &data, const QString &folder, bool copies)
{
    Q_EMIT importAsked(&data, folder, copies);
}

void KPAppServices::documentsImported(const QStringList &paths)
{
    if (!paths.isEmpty())
        Q_EMIT imported(paths);
}

void KPAppServices::runFileWork(std::function<void()> work, std::function<void()> done)
{
    m_worker.run(std::move(work), std::move(done));
}
