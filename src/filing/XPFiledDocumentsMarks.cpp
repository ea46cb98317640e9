// XPFiledDocuments: the mark on a file, and how the index learns of it.
#include "IndexRequests.h"
#include "IndexSettings.h"
#include "KPDoc.h"
#include "KPDocMetaData.h"
#include "Karvex.h"
#include "XPFileInfo.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPVolumes.h"

#include <QCoreApplication>
#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>

static std::atomic<qint64> pacingMicroseconds = 20'000;

std::chrono::microseconds XPFiledDocuments::pacing()
{
    return std::chrono::microseconds(pacingMicroseconds.load());
}

void XPFiledDocuments::setPacing(std::chrono::microseconds pacing)
{
    pacingMicroseconds = pacing.count();
}

XPResult<std::optional<bool>> XPFiledDocuments::storedMark(const QString &path)
{
    const auto stored = Karvex::getXAttrMetaData(Karvex::managedKey, path);
    if (!stored)
        return stored.error();
    return stored->isNull() ? std::nullopt : std::optional(stored->boolValue());
}

bool XPFiledDocuments::isManaged(const QString &path)
{
    return storedMark(path).valueOr({}).value_or(false);
}

bool XPFiledDocuments::allFilesManaged(const QStringList &paths)
{
    return std::all_of(paths.begin(), paths.end(), isManaged);
}

std::optional<XPError> XPFiledDocuments::setManaged(bool managed, const QString &path)
{
    const auto stored = storedMark(path);
    if (!stored)
        return stored.error();
    if (*stored == managed) {
        reImportIfManagedMDItemNotInSync(path, managed);
        return {};
    }
    if (auto error = writeManagedXAttr(managed, path))
        return error;
    const auto now = storedMark(path);
    if (!now)
        return now.error();
    if (*now == managed) {
        if (stored->value_or(false))
            KPDoc::countRemovedFromLibrary();
        return {};
    }
    return XPError::make(XPError::Kind::Io, qtTrId("XPMarkNotKept"), path);
}

static std::optional<XPError> writeMark(const PropertyValue &mark, const QString &path)
{
    auto error = Karvex::setXAttrMetaData(mark, Karvex::managedKey, path);
    if (!error)
        XPFiledDocuments::tellIndex(path);
    std::this_thread::sleep_for(XPFiledDocuments::pacing());
    return error;
}

std::optional<XPError> XPFiledDocuments::writeManagedXAttr(bool managed, const QString &path)
{
    return writeMark(PropertyValue::boolean(managed), path);
}

std::optional<XPError> XPFiledDocuments::forgetMark(const QString &path)
{
    return writeMark({}, path);
}

std::optional<XPError> XPFiledDocuments::setToManagedIfNoStateFound(const QString &path)
{
    const auto stored = storedMark(path);
    if (!stored)
        return stored.error();
    if (!*stored)
        return setManaged(true, path);
    reImportIfManagedMDItemNotInSync(path, **stored);
    return {};
}

void XPFiledDocuments::reImportIfManagedMDItemNotInSync(const QString &path, bool stored)
{
    if (!KPDocMetaData::isIndexed(path))
        return;
    const PropertyValue indexed = KPDocMetaData::indexed(path, Karvex::managedKey);
    if (indexed.isNull() || indexed.boolValue() != stored)
        tellIndex(path);
}

void XPFiledDocuments::runMDImport(const QString &path)
{
    // Where nobody keeps the index, the next who does sees the change by itself.
    (void)IndexRequests::tell(IndexSettings::storePath(), IndexRequests::Kind::Import,
                              XPPath::encode(path));
}

// Below one of the index's folders, on a disk of this machine.
static bool isWatched(const QString &path)
{
    const QStringList roots = IndexSettings::allRoots();
    const auto holds = [&path](const QString &root) {
        return root == u"/" || path == root || path.startsWith(root + u'/');
    };
    return std::any_of(roots.begin(), roots.end(), holds) && !XPVolumes::isOnSlowVolume(path);
}

void XPFiledDocuments::tellIndex(const QString &path)
{
    if (isWatched(path))
        runMDImport(path);
    else
        adjustModifictionDate(path);
}

void XPFiledDocuments::adjustModifictionDate(const QString &path)
{
    constexpr qint64 second = 1'000'000'000;
    constexpr qint64 recent = 3600 * second; // read soon in any case
    const auto info = XPFileInfo::read(path);
    if (!info)
        return;
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    if (now.tv_sec * second + now.tv_nsec - info->modified < recent)
        return;
    const qint64 modified = info->modified + 2 * second;
    const timespec times[] = {
        {0, UTIME_OMIT},
        {modified / second - (modified % second < 0 ? 1 : 0),
         (modified % second + second) % second},
    };
    (void)::utimensat(AT_FDCWD, XPPath::encode(path).constData(), times, AT_SYMLINK_NOFOLLOW);
}

bool XPFiledDocuments::pathOKForManaged(const QString &path)
{
    for (const auto *part :
         {u"/Library/Mail/", u"/Library/Caches/", u"Photos Library.photoslibrary"}) {
        if (path.contains(QStringView(part)))
            return false;
    }
    if (path.startsWith(XPFolders::caches() + u'/'))
        return false;
    // The system's own folders, unless the home is in one of them.
    return path.startsWith(XPFolders::home() + u'/') ||
           (!path.startsWith(u"/private/") && !path.startsWith(u"/var/"));
}
