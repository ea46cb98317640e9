#include "XPAttributeCache.h"

#include "IndexLook.h"
#include "KarvexErrors.h"
#include "MDItem.h"
#include "XPItemPaths.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPRecentItems.h"

#include <QTimer>

static constexpr qsizetype defaultMaxQuerySize = 50'000;
static constexpr qsizetype itemsAReading = 256;
static constexpr std::chrono::seconds fixPathsInterval{1};

// Caches whose first bulk query is not over, and whether there ever was one.
static std::atomic<int> sNetNumPrefetchCachesNotDone = 0;
static std::atomic<bool> sStartedCaching = false;

XPAttributeCache::XPAttributeCache(IndexSource &source, const QString &attributeKey,
                                   qsizetype maxQuerySize,
                                   const QStringList &changeNotificationsToSend,
                                   Transformer transformer)
    : m_source(source), m_singleAttributeKey(attributeKey),
      m_maxQuerySize(maxQuerySize > 0 ? maxQuerySize : defaultMaxQuerySize),
      m_notificationStrings(changeNotificationsToSend), m_transformer(std::move(transformer)),
      m_isFirst(XPItemPaths::begin(source)), m_onThread(new QObject)
{
    ++sNetNumPrefetchCachesNotDone;
    sStartedCaching = true;
    m_thread.setObjectName(QStringLiteral("murn-attributes"));
    m_fixPathsTimer = new QTimer(m_onThread);
    m_fixPathsTimer->setInterval(fixPathsInterval);
    connect(m_fixPathsTimer, &QTimer::timeout, m_onThread, [this] { fixPaths(); });
    m_onThread->moveToThread(&m_thread);
    connect(this, &XPAttributeCache::pathsWaiting, m_fixPathsTimer, qOverload<>(&QTimer::start));
    connect(this, &XPAttributeCache::readingsWaiting, m_onThread, [this] { takeRead(); });
    connect(this, &XPAttributeCache::noticesWaiting, this, &XPAttributeCache::deliverNotices,
            Qt::QueuedConnection);
    // On the thread itself, after its event loop.
    connect(&m_thread, &QThread::finished, m_onThread, [this] {
        m_mdQuery.reset();
        m_recentItems.reset();
        m_reader.reset();
        m_onThread->deleteLater();
        const XPLocker ended(m_mutex); // see the destructor
    });
    connect(&m_thread, &QThread::started, m_onThread, [this] { startSearch(); });
    m_thread.start();
}

XPAttributeCache::~XPAttributeCache()
{
    m_stopping = true;
    m_thread.quit();
    m_thread.wait();
    // What the thread did last is seen from here on; Qt's waiting alone does not say so to tools
    // that watch threads.
    const XPLocker ended(m_mutex);
    prefetchDone();
    XPItemPaths::end(m_source);
}

// --- Reading and writing

XPAttributeValuePtr XPAttributeCache::attributeAtPath(KPPooledString path)
{
    XPAttributeTable::Found found = m_values.find(path);
    if (found.isUnknown)
        askFor(path);
    return std::move(found.value);
}

XPAttributeValuePtr XPAttributeCache::attributeAtPathCacheOnly(KPPooledString path) const
{
    return m_values.find(path).value;
}

void XPAttributeCache::setAttribute(const XPAttributeValuePtr &value, KPPooledString path)
{
    store(path, value);
    XPNotificationCenter::instance().post(QStringLiteral("documentChanging"), path.toString());
}

XPAttributeValuePtr XPAttributeCache::fill(const XPAttributeValuePtr &value, KPPooledString path,
                                           bool unknownOnly)
{
    const XPLocker lock(m_pathsToFixLock);
    if (!unknownOnly || m_values.find(path).isUnknown) {
        endLookups(path);
        m_values.store(path, value);
        return value;
    }
    return m_values.find(path).value;
}

void XPAttributeCache::unCacheDataAtPath(KPPooledString path)
{
    const XPLocker lock(m_pathsToFixLock);
    endLookups(path);
    m_values.setNotLookedUp(path);
}

QList<std::pair<KPPooledString, XPAttributeValuePtr>> XPAttributeCache::values() const
{
    auto values = m_values.values();
    values.removeIf([](const auto &each) { return errorIn(each.second) != nullptr; });
    return values;
}

QList<XPAttributeValuePtr> XPAttributeCache::allObjects() const
{
    QList<XPAttributeValuePtr> objects;
    for (const auto &[path, value] : values())
        objects.append(value);
    return objects;
}

bool XPAttributeCache::allCachingDone()
{
    return sStartedCaching && sNetNumPrefetchCachesNotDone == 0;
}

// --- The bulk query

void XPAttributeCache::startSearch()
{
    if (!m_source.waitUntilLoaded([this] { return m_stopping.load(); }))
        return;
    QString text = QStringLiteral("(%1 == *)");
    text.replace(QStringLiteral("%1"), m_singleAttributeKey);
    auto query = MDQuery::create(m_source, text, {m_singleAttributeKey});
    if (!query) {
        qCWarning(xpLog).noquote()
            << QStringLiteral("Attribute query failed to start in Murn. Query (%1) is bad or, it "
                              "is likely that you have to wait a while or restart to fix this "
                              "issue")
                   .arg(text);
        m_activeMDQuery = false;
        prefetchDone();
        return;
    }
    m_mdQuery = *std::move(query);
    m_mdQuery->setSearchScope({MDQuery::scopeComputer, MDQuery::scopeNetwork});
    m_mdQuery->setMaxCount(m_maxQuerySize);
    connect(m_mdQuery.get(), &MDQuery::progress, m_onThread, [this] { takeResults(); });
    connect(m_mdQuery.get(), &MDQuery::finished, m_onThread, [this] { finishedMDQuery(); });
    connect(m_mdQuery.get(), &MDQuery::updated, m_onThread,
            [this](const auto &added, const auto &changed, const auto &removed) {
                updatedMDQuery(added, changed, removed);
            });
    m_mdQuery->execute(MDQuery::WantsUpdates);
    if (m_isFirst)
        m_recentItems = std::make_unique<XPRecentItems>(m_source);
}

void XPAttributeCache::takeResults()
{
    QList<IndexItem> items;
    while (m_taken < m_mdQuery->resultCount() && !m_stopping) {
        items.clear();
        const qsizetype end = std::min(m_mdQuery->resultCount(), m_taken + itemsAReading);
        for (; m_taken < end; ++m_taken)
            items.append(m_mdQuery->itemAt(m_taken));
        for (const Row &row : rows(items)) {
            if (row.path.isEmpty())
                continue;
            checkForChangedPath(row);
            store(row.path, transformed(row.raw));
        }
    }
}

void XPAttributeCache::finishedMDQuery()
{
    takeResults();
    m_isUpToDate = !isNearLimit();
    prefetchDone();
    notifyMainQ();
}

bool XPAttributeCache::isNearLimit() const
{
    return m_mdQuery->resultCount() * 100 >= m_maxQuerySize * 95;
}

void XPAttributeCache::prefetchDone()
{
    if (std::exchange(m_prefetching, false))
        --sNetNumPrefetchCachesNotDone;
}

// All in one look; what they lead to is done without.
std::vector<XPAttributeCache::Row> XPAttributeCache::rows(const QList<IndexItem> &items) const
{
    std::vector<Row> rows;
    rows.reserve(static_cast<size_t>(items.size()));
    const IndexLook look(m_source);
    for (const IndexItem item : items) {
        Row &row = rows.emplace_back(Row{item, {}, {}});
        const auto indexed = look.at(item);
        if (!indexed)
            continue;
        row.path = KPPool::pooledString(XPPath::decode(indexed->path()));
        row.raw = indexed->attribute(m_singleAttributeKey);
    }
    return rows;
}

// Bytes that the index could not decode are there as data, which no attribute of ours is.
XPAttributeValuePtr XPAttributeCache::transformed(const XPResult<PropertyValue> &raw) const
{
    if (!raw)
        return unreadable(raw.error());
    if (raw->isNull())
        return {};
    if (raw->kind() == PropertyValue::Kind::Data)
        return unreadable(KarvexErrors::wrongKind({}));
    return m_transformer ? m_transformer(*raw) : XPAttributeOf<PropertyValue>::make(*raw);
}

// --- Live updates

void XPAttributeCache::updatedMDQuery(const QList<IndexItem> &added,
                                      const QList<IndexItem> &changed,
                                      const QList<IndexItem> &removed)
{
    if (isNearLimit())
        m_isUpToDate = false;
    bool news = false;
    takeRemoved(removed, &news);
    const std::vector<Row> present = rows(added + changed);
    // What leaves its path goes before anything takes one: two files may have changed names.
    for (const Row &row : present) {
        if (!row.path.isEmpty() && checkForChangedPath(row)) {
            announce(row.item);
            news = true;
        }
    }
    for (const Row &row : present) {
        if (row.path.isEmpty() || !store(row.path, transformed(row.raw)))
            continue;
        announce(row.item);
        news = true;
    }
    if (news)
        notifyMainQ();
}

// Notes where the item is now; true when it was elsewhere, from where its value goes. The table of
// all caches keeps the old path until the change was told.
bool XPAttributeCache::checkForChangedPath(const Row &row)
{
    XPItemPaths::setIfNone(m_source, row.item, row.path);
    KPPooledString &storedAt = m_storedAt[row.item];
    const KPPooledString before = std::exchange(storedAt, row.path);
    if (before.isEmpty() || before == row.path)
        return false;
    remove(before);
    return true;
}

void XPAttributeCache::takeRemoved(const QList<IndexItem> &removed, bool *news)
{
    for (const Row &row : rows(removed)) {
        const KPPooledString before = m_storedAt.take(row.item);
        bool changed = !before.isEmpty() && before != row.path && remove(before);
        // The file may be there still and only have lost the attribute.
        if (!row.path.isEmpty() && store(row.path, transformed(row.raw)))
            changed = true;
        if (!changed && !row.path.isEmpty())
            continue;
        announce(row.item);
        *news = true;
    }
}

// --- To the main thread

void XPAttributeCache::announce(IndexItem item)
{
    const XPLocker lock(m_mutex);
    if (m_isAnnounced.contains(item))
        return;
    m_isAnnounced.insert(item);
    m_announced.append(item);
}

void XPAttributeCache::notifyMainQ()
{
    {
        const XPLocker lock(m_mutex);
        m_notify = true;
        if (std::exchange(m_woken, true))
            return;
    }
    Q_EMIT noticesWaiting(QPrivateSignal());
}

// As many as go into a part of a frame; the rest in later turns of the event loop.
void XPAttributeCache::deliverNotices()
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        IndexItem item = 0;
        {
            const XPLocker lock(m_mutex);
            if (m_announced.isEmpty()) {
                m_woken = false;
                if (!std::exchange(m_notify, false))
                    return;
            } else if (timer.elapsed() < 8) {
                item = m_announced.takeFirst();
                m_isAnnounced.remove(item);
            } else {
                QTimer::singleShot(0, this, &XPAttributeCache::deliverNotices);
                return;
            }
        }
        if (item == 0) {
            mainThreadNotifyUpdatedInfo();
            return;
        }
        tellOfItem(item);
    }
}

void XPAttributeCache::tellOfItem(IndexItem number)
{
    const auto item = MDItem::withNumber(m_source, number);
    const auto before = cachedMDITemGetPathIfExists(*item);
    const QString name = QStringLiteral("documentChanging");
    const bool isGone = item->path().isEmpty();
    // Another file may stand where one that is gone was.
    if (isGone && before && MDItem::create(m_source, before->toString()))
        XPNotificationCenter::instance().post(name, before->toString());
    else
        XPNotificationCenter::instance().post(name, item);
    cachedMDITemUpdatePathGetPath(*item);
}

void XPAttributeCache::mainThreadNotifyUpdatedInfo()
{
    if (QThread::currentThread() != thread())
        return;
    for (const QString &name : m_notificationStrings)
        XPNotificationCenter::instance().post(name);
}

// --- Items and paths

void XPAttributeCache::setCacheForItem(const MDItem &item, KPPooledString path)
{
    XPItemPaths::set(item.source(), item.number(), path);
}

std::optional<KPPooledString> XPAttributeCache::cachedMDITemGetPath(const MDItem &item)
{
    const auto known = cachedMDITemGetPathIfExists(item);
    return known ? known : cachedMDITemUpdatePathGetPath(item);
}

std::optional<KPPooledString> XPAttributeCache::cachedMDITemGetPathIfExists(const MDItem &item)
{
    return XPItemPaths::find(item.source(), item.number());
}

std::optional<KPPooledString> XPAttributeCache::cachedMDITemUpdatePathGetPath(const MDItem &item)
{
    const QString path = item.path();
    if (path.isEmpty()) {
        clearCacheForItem(item);
        return {};
    }
    const KPPooledString pooled = KPPool::pooledString(path);
    setCacheForItem(item, pooled);
    return pooled;
}

void XPAttributeCache::clearCacheForItem(const MDItem &item)
{
    XPItemPaths::remove(item.source(), item.number());
}

qsizetype XPAttributeCache::dictCount()
{
    return XPItemPaths::count();
}
