#include "KPDocServices.h"

#include "KPDoc.h"
#include "KPDocEdits.h"
#include "Karvex.h"
#include "XPLog.h"
#include "XPPath.h"

static void logFailure(const QString &path, const std::optional<XPError> &error)
{
    if (error)
        qCWarning(xpLog).noquote() << XPPath::printable(path) + u':' << error->reason();
}

bool KPDocServices::setManaged(bool managed, const QString &path)
{
    const auto error =
        Karvex::setXAttrMetaData(PropertyValue::boolean(managed), Karvex::managedKey, path);
    logFailure(path, error);
    return !error;
}

void KPDocServices::replaceOriginalTags(const TagChange &change)
{
    const QStringList original = KPTagName::displayStringsForTagNames(change.originalTags);
    const QStringList replacement = KPTagName::displayStringsForTagNames(change.newTags);
    for (const QString &path : change.filePaths) {
        logFailure(path, KPDocEdits::setCommonUserTags(path, original, replacement));
        if (change.rating)
            logFailure(path, KPDocEdits::setRating(*change.rating, path));
    }
}

void KPDocServices::pathChanged(const QString &, const QString &)
{
}

void KPDocServices::clearCacheForPath(const QString &)
{
}

void KPDocServices::revealInLibrary(const QStringList &)
{
}

void KPDocServices::openInfoWindow(const QStringList &)
{
}

void KPDocServices::importDropped(const QMimeData &, const QString &, bool)
{
}

void KPDocServices::documentsImported(const QStringList &)
{
}

void KPDocServices::runFileWork(std::function<void()> work, std::function<void()> done)
{
    work();
    done();
}

static std::unique_ptr<KPDocServices> &installed()
{
    static auto services = std::make_unique<KPDocServices>();
    return services;
}

KPDocServices &KPDocServices::current()
{
    return *installed();
}

void KPDocServices::install(std::unique_ptr<KPDocServices> services)
{
    installed() = services ? std::move(services) : std::make_unique<KPDocServices>();
}
