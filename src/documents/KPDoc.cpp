#include "KPDoc.h"

#include "KPContentTypes.h"
#include "KPDocCache.h"
#include "KPDocMetaData.h"
#include "KPDocServices.h"
#include "KPFileType.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QThread>
#include <cmath>
#include <fcntl.h>

const QString KPDoc::willChangeNotification = QStringLiteral("KPDocWillChange");
const QString KPDoc::didChangeNotification = QStringLiteral("KPDocDidChange");
const QString KPDoc::deletedNotification = QStringLiteral("KPNotificationDocumentDeleted");
const QString KPDoc::refreshInfoWindowsNotification = QStringLiteral("KPRefreshInfoWindows");
const QString KPDoc::pathChangedNotification = QStringLiteral("documentPathChanged");
const QString KPDoc::changingNotification = QStringLiteral("documentChanging");

// A size at which a picture is drawn before anybody asked for another, in points.
static constexpr QSizeF usualThumbnailSize(128, 128);

static constexpr qint64 nanosecondsPerSecond = 1'000'000'000;

KPPooledString KPDoc::gonePath()
{
    static const KPPooledString gone = KPPool::pooledString(u"gone");
    return gone;
}

bool KPDoc::isGone() const
{
    return pooledPath() == gonePath();
}

// The files of a folder come one after the other: its text is looked up once.
static KPPooledString pooledParent(QStringView path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    const QStringView parent = slash > 0 ? path.first(slash) : path.first(slash + 1);
    thread_local KPPooledString last;
    if (last.view() != parent)
        last = KPPool::pooledString(parent);
    return last;
}

KPDoc::Place::Place(KPPooledString pooled) : path(pooled)
{
    if (pooled.isEmpty()) {
        passes = PassesExclude | PassesMDQuery;
        return;
    }
    if (pooled == gonePath())
        return;
    parent = pooledParent(pooled.view());
    representation = XPPath::encode(pooled.toString());
    const KPPathFilters::Passes found = KPPathFilters::passes(representation);
    passes = static_cast<quint8>((found.excludePaths ? PassesExclude : 0) |
                                 (found.mdQueryExcludePaths ? PassesMDQuery : 0));
}

KPDoc::KPDoc(Place place, const XPFileInfo &info)
    : m_filePath(place.path), m_passes(place.passes), m_parentPath(place.parent),
      m_representation(std::move(place.representation))
{
    updateFromLStat(info);
}

// --- Identity

QByteArray KPDoc::fileSystemRepresentation() const
{
    const KPDocLocker lock(m_lock);
    return m_representation;
}

QString KPDoc::fsName() const
{
    const QStringView path = pooledPath().view();
    const QStringView name = path.sliced(path.lastIndexOf(u'/') + 1);
    return QString::fromRawData(name.data(), name.size());
}

bool KPDoc::isEqual(const KPDoc *other) const
{
    return other == this || (other != nullptr && other->unixFileSize() == unixFileSize() &&
                             other->pooledPath() == pooledPath());
}

QString KPDoc::cacheID() const
{
    const qint64 seconds = unixFileModificationDate().toSecsSinceEpoch();
    return fsName() + QString::number(seconds) + QString::number(unixFileSize());
}

// --- Facts

QDateTime KPDoc::unixFileModificationDate() const
{
    // Towards the past, so that the milliseconds of times before 1970 count forward too.
    constexpr qint64 perMillisecond = 1'000'000;
    const qint64 time = unixModificationTime();
    const qint64 rest = time % perMillisecond;
    return QDateTime::fromMSecsSinceEpoch(time / perMillisecond - (rest < 0 ? 1 : 0), Qt::UTC);
}

QDateTime KPDoc::creationDate() const
{
    const double seconds = creationTimeSince1970();
    return seconds == 0 ? QDateTime()
                        : QDateTime::fromMSecsSinceEpoch(std::llround(seconds * 1000), Qt::UTC);
}

void KPDoc::modificationYearMonthDay(int *year, int *month, int *day) const
{
    unixFileModificationDate().toLocalTime().date().getDate(year, month, day);
}

void KPDoc::setLStatInfo(const XPFileInfo &info)
{
    m_mode.store(static_cast<quint16>(info.mode), std::memory_order_relaxed);
    m_modified.store(info.modified, std::memory_order_relaxed);
    m_size.store(info.size, std::memory_order_relaxed);
    m_cachedInfo &= DisplayNameLC | ThumbnailSize; // which do not come from the file
    ++m_state;
    m_utiTagName.store(nullptr, std::memory_order_relaxed);
}

void KPDoc::updateFromLStat(const XPFileInfo &info)
{
    if (static_cast<quint16>(info.mode) != unixFileMode() ||
        info.modified != unixModificationTime() || info.size != unixFileSize()) {
        // First, so that nobody who sees the new facts finds the old type.
        if (unixFileMode() != 0)
            KPFileType::forgetPath(filePath());
        const KPDocLocker lock(m_lock);
        setLStatInfo(info);
    }
    constexpr double latest = 2'000'000'000;
    const qint64 seconds = info.birth / nanosecondsPerSecond;
    const qint64 rest = info.birth % nanosecondsPerSecond;
    const double born = static_cast<double>(seconds) + static_cast<double>(rest) * 1e-9;
    const double created = born < 0 || born > latest ? 0 : born;
    if (created != creationTimeSince1970())
        m_created.store(created, std::memory_order_relaxed);
}

XPFileInfo KPDoc::facts() const
{
    XPFileInfo info;
    info.mode = unixFileMode();
    info.size = unixFileSize();
    info.modified = unixModificationTime();
    info.birth = static_cast<qint64>(creationTimeSince1970() * nanosecondsPerSecond);
    return info;
}

void KPDoc::updateFileInfo()
{
    if (const auto info = XPFileInfo::read(filePath()))
        updateFromLStat(*info);
}

bool KPDoc::isInTrash() const
{
    return KPPathFilters::isInTrash(fileSystemRepresentation());
}

// --- Changes of the path

void KPDoc::setPlace(Place place)
{
    std::unique_ptr<Rare> old; // let go after the lock
    const KPDocLocker lock(m_lock);
    m_filePath.store(place.path, std::memory_order_release);
    m_parentPath.store(place.parent, std::memory_order_release);
    m_representation.swap(place.representation);
    m_passes.store(place.passes);
    m_utiTagName.store(nullptr, std::memory_order_relaxed);
    m_descriptorHash.store(-1);
    m_group.store(nullptr, std::memory_order_release);
    m_cachedInfo = 0;
    ++m_state;
    old.swap(m_rare);
}

void KPDoc::setFilePath(const QString &path, const XPFileInfo *info)
{
    Place place(KPPool::pooledString(path));
    if (place.path == pooledPath())
        return;
    XPResult<XPFileInfo> read = XPFileInfo();
    if (info == nullptr && !place.representation.isEmpty()) {
        read = XPFileInfo::readAt(AT_FDCWD, place.representation.constData());
        info = read ? &*read : nullptr;
    }
    const auto moved = KPDocCache::move(this, std::move(place));
    if (!moved)
        return;
    if (info != nullptr)
        updateFromLStat(*info);
    dropCachesOf(moved->oldPath);
    if (moved->displaced == nullptr)
        return;
    // What is known of the path is of the file that was there before.
    KPDocMetaData::unCacheDataAtPath(pooledPath());
    moved->displaced->dataChanged();
}

void KPDoc::dropCachesOf(KPPooledString oldPath)
{
    if (oldPath.isEmpty())
        return;
    const QString old = oldPath.toString();
    if (QCoreApplication::instance() &&
        QThread::currentThread() == QCoreApplication::instance()->thread())
        KPDocServices::current().pathChanged(old, filePath());
    KPDocMetaData::unCacheDataAtPath(oldPath);
    KPFileType::forgetPath(old);
    KPDocServices::current().clearCacheForPath(old);
}

// --- What is cached

quint32 KPDoc::stateNumber() const
{
    const KPDocLocker lock(m_lock);
    return m_state;
}

KPDoc::Rare &KPDoc::rare() const
{
    if (!m_rare)
        m_rare = std::make_unique<Rare>();
    return *m_rare;
}

void KPDoc::forgetCachedValues()
{
    const KPDocLocker lock(m_lock);
    m_cachedInfo &= ThumbnailSize;
    ++m_state;
    m_utiTagName.store(nullptr, std::memory_order_relaxed);
    m_descriptorHash.store(-1);
    m_group.store(nullptr, std::memory_order_release);
}

void KPDoc::dataChanged()
{
    KPFileType::forgetPath(filePath());
    forgetCachedValues();
    XPNotificationCenter::instance().post(didChangeNotification, filePath());
}

void KPDoc::docsDoneChanging(const Docs &docs)
{
    PropertyValue::Array paths;
    for (const KPDoc *doc : docs)
        paths.append(doc->filePath());
    XPNotificationCenter::instance().post(refreshInfoWindowsNotification, {},
                                          {{QStringLiteral("paths"), paths}});
}

QSizeF KPDoc::lastDrawnThumbnailSize() const
{
    const KPDocLocker lock(m_lock);
    return (m_cachedInfo & ThumbnailSize) && m_rare ? m_rare->thumbnailSize : usualThumbnailSize;
}

void KPDoc::setLastDrawnThumbnailSize(QSizeF size)
{
    const KPDocLocker lock(m_lock);
    rare().thumbnailSize = size;
    m_cachedInfo |= ThumbnailSize;
}
