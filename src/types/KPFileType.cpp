#include "KPFileType.h"

#include "KPContentTypes.h"
#include "KPPathTypeCache.h"
#include "KPTypeResource.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPVolumes.h"

#include <array>
#include <atomic>
#include <utility>

using KPContentTypes::Number;

const QString KPFileType::noFileUTI = QStringLiteral("kUTI_NO_FILE");
const QString KPFileType::aliasUTI = QStringLiteral("com.apple.alias-file");
const QString KPFileType::folderUTI = QStringLiteral("public.folder");
const QString KPFileType::dataUTI = QStringLiteral("public.data");
const QString KPFileType::itemUTI = QStringLiteral("public.item");

// The extension cache: by the extension's number in the table, as only declared extensions can
// stand for a type reliably. Reading it is one load, shared by no lock or reference count.
static constinit std::array<std::atomic<Number>, KPContentTypes::maximumExtensions> extensionCache;

static KPPathTypeCache &pathCache()
{
    static KPPathTypeCache cache;
    return cache;
}

namespace {

// What the program installs at start-up.
struct Installed
{
    XPMutex mutex;
    // One at a time, as it is hardly ever asked: so that it can be taken away.
    XPMutex lookupMutex;
    KPFileType::IndexLookup indexLookup XP_GUARDED_BY(lookupMutex);
    KPFileType::SlowTest slowTest XP_GUARDED_BY(mutex) = XPVolumes::isOnSlowVolume;
};

} // namespace

static Installed &installed()
{
    static Installed functions;
    return functions;
}

static thread_local int withoutIndex = 0;

KPFileType::WithoutIndex::WithoutIndex()
{
    ++withoutIndex;
}

KPFileType::WithoutIndex::~WithoutIndex()
{
    --withoutIndex;
}

void KPFileType::setIndexLookup(IndexLookup lookup)
{
    const XPLocker lock(installed().lookupMutex);
    installed().indexLookup = std::move(lookup);
}

void KPFileType::setSlowVolumeTest(SlowTest test)
{
    const XPLocker lock(installed().mutex);
    installed().slowTest = std::move(test);
}

static QString typeFromIndex(const QString &path)
{
    if (withoutIndex > 0)
        return {};
    const XPLocker lock(installed().lookupMutex);
    return installed().indexLookup ? installed().indexLookup(path) : QString();
}

static bool isOnSlowVolume(const QString &path)
{
    KPFileType::SlowTest test;
    {
        const XPLocker lock(installed().mutex);
        test = installed().slowTest;
    }
    return test(path);
}

// The type found from the file and where it comes from.
struct Found
{
    QString type;
    QString typeFromExtension;
    bool fileWasThere = true; // else nothing is to be remembered for the path
};

static Found findSlowly(const QString &path, QString extension, std::optional<quint32> mode)
{
    if (path.isEmpty())
        return {KPFileType::noFileUTI, {}, false};
    const bool slow = isOnSlowVolume(path);
    if (slow && extension.isEmpty())
        extension = QStringLiteral("unknown");
    const QStringList all = KPFileType::allUTIsForExtension(extension, false);
    Found found;
    if (all.size() == 1)
        found.typeFromExtension = all.first();
    const QString preferred = all.value(0);
    if (slow) {
        found.type = preferred;
        return found;
    }
    const auto resource = KPTypeResource::read(path, extension, mode);
    found.fileWasThere = resource.has_value();
    found.type = resource.value_or(preferred);
    if (resource && resource->isEmpty()) {
        found.type = typeFromIndex(path);
        if (found.type.isEmpty())
            found.type = preferred.isEmpty() ? KPFileType::dataUTI : preferred;
    }
    return found;
}

QString KPFileType::utiForPathSlow(const QString &path, const QString &extension,
                                   QString *utiFromExtension)
{
    const Found found = findSlowly(path, extension, {});
    if (utiFromExtension)
        *utiFromExtension = found.typeFromExtension;
    return found.type;
}

// Files that programs made for themselves, named by a hash: not worth a look.
static bool isCacheFile(const QString &path, const QString &extension)
{
    constexpr qsizetype hashLikeSize = 16;
    return extension.size() >= hashLikeSize &&
           (path.contains(u"Library/Caches/") || path.startsWith(XPFolders::caches() + u'/'));
}

static bool isFolder(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    return info && info->isDirectory();
}

// Past the extension cache, which had nothing.
static QString findAndRemember(const QString &path, const QString &extension,
                               std::optional<quint32> mode)
{
    if (isCacheFile(path, extension))
        return KPFileType::dataUTI;
    if (extension.isEmpty() && !mode && isFolder(path))
        return KPFileType::folderUTI;
    QString known = pathCache().type(path);
    if (!known.isEmpty())
        return known;
    const auto stamp = pathCache().stamp(path);
    const Found found = findSlowly(path, extension, mode);
    const QString best =
        KPFileType::bestUTIForStoringExtension(extension, found.typeFromExtension, found.type);
    if (!best.isEmpty()) {
        extensionCache[KPContentTypes::extensionNumber(best)].store(
            KPContentTypes::numberOf(found.type), std::memory_order_relaxed);
    } else if (found.fileWasThere && !found.type.isEmpty()) {
        pathCache().insert(path, found.type, stamp);
    }
    return found.type.isEmpty() ? found.typeFromExtension : found.type;
}

static QString utiByCaches(const QString &path, const QString &extension,
                           std::optional<quint32> mode)
{
    const quint16 number = KPContentTypes::extensionNumber(extension);
    if (number != 0) {
        const Number type = extensionCache[number].load(std::memory_order_relaxed);
        if (type != KPContentTypes::none)
            return KPContentTypes::identifier(type);
    }
    return findAndRemember(path, extension, mode);
}

QString KPFileType::utiForPath(const QString &path, const QString &extension)
{
    return utiByCaches(path, extension, {});
}

QString KPFileType::utiForPath(const QString &path, const QString &extension, quint32 mode)
{
    if (const auto type = KPTypeResource::typeForMode(mode, extension))
        return *type;
    return utiByCaches(path, extension, mode);
}

void KPFileType::forgetPath(const QString &path)
{
    pathCache().forget(path);
}

QString KPFileType::utiForFile(const QString &path)
{
    const QString extension = XPPath::extension(path);
    const auto info = XPFileInfo::read(path);
    return info ? utiForPath(path, extension, info->mode) : utiForPath(path, extension);
}

QString KPFileType::itemKindForFile(const QString &path)
{
    return displayNameForUTI(utiForFile(path));
}
