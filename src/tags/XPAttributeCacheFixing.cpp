#include "XPAttributeCache.h"

#include "MDItem.h"
#include "XPItemPaths.h"
#include "XPPath.h"

#include <QTimer>

static constexpr qsizetype pathsAReading = 256;
static constexpr int notifyIntervalMs = 3000;

void XPAttributeCache::addPathsToFix(const QList<KPPooledString> &paths)
{
    if (paths.isEmpty())
        return;
    bool wasEmpty = false;
    {
        const XPLocker lock(m_pathsToFixLock);
        wasEmpty = m_pathsToFix.isEmpty();
        if (wasEmpty)
            m_pathsToFix.reserve(1000);
        for (const KPPooledString path : paths)
            m_pathsToFix.insert(path);
    }
    // The timer stands still while there is nothing to fix.
    if (wasEmpty)
        Q_EMIT pathsWaiting(QPrivateSignal());
}

qsizetype XPAttributeCache::numPathsToFix() const
{
    const XPLocker lock(m_pathsToFixLock);
    return m_pathsToFix.size();
}

// A pass: what is queued now, in slices between which the thread takes the query's updates. So
// what a slice found is never older than what an update stored before it.
void XPAttributeCache::fixPaths()
{
    if (!m_currentlyFixingPaths.isEmpty())
        return;
    {
        const XPLocker lock(m_pathsToFixLock);
        if (m_pathsToFix.isEmpty()) {
            m_fixPathsTimer->stop();
            return;
        }
        m_currentlyFixingPaths = m_pathsToFix.values();
    }
    m_sinceNotified.start();
    fixSome();
}

void XPAttributeCache::fixSome()
{
    const qsizetype count = std::min(pathsAReading, m_currentlyFixingPaths.size());
    const qsizetype rest = m_currentlyFixingPaths.size() - count;
    fix(m_currentlyFixingPaths.sliced(rest));
    {
        const XPLocker lock(m_pathsToFixLock);
        for (qsizetype i = rest; i < rest + count; ++i)
            m_pathsToFix.remove(m_currentlyFixingPaths[i]);
    }
    m_currentlyFixingPaths.resize(rest);
    if (rest > 0)
        QMetaObject::invokeMethod(
            m_onThread, [this] { fixSome(); }, Qt::QueuedConnection);
    if (rest > 0 && m_sinceNotified.elapsed() < notifyIntervalMs)
        return;
    m_sinceNotified.start();
    notifyMainQ();
}

std::vector<XPAttributeCache::Row>
XPAttributeCache::rowsAt(const QList<KPPooledString> &paths) const
{
    std::vector<Row> rows;
    rows.reserve(static_cast<size_t>(paths.size()));
    const IndexCatalog &catalog = m_source.catalog();
    const IndexCatalog::Reading reading(catalog);
    for (const KPPooledString path : paths) {
        Row &row = rows.emplace_back(Row{0, path, {}});
        row.item = catalog.itemAtPath(XPPath::encode(path.toString()));
        if (const IndexSlot slot = catalog.slotOf(row.item); slot != IndexCatalog::noSlot)
            row.raw = MDItem::attribute(catalog, slot, m_singleAttributeKey);
    }
    return rows;
}

void XPAttributeCache::fix(const QList<KPPooledString> &paths)
{
    QList<KPPooledString> unknown;
    for (const Row &row : rowsAt(paths)) {
        if (row.item == 0) {
            unknown.append(row.path);
            continue;
        }
        XPItemPaths::setIfNone(m_source, row.item, row.path);
        m_values.store(row.path, transformed(row.raw));
    }
    if (unknown.isEmpty())
        return;
    if (!m_reader) {
        m_reader = std::make_unique<XPAttributeReader>(
            m_singleAttributeKey, [this](const XPAttributeReader::Values &values) {
                {
                    const XPLocker lock(m_mutex);
                    for (const auto &[path, raw] : values)
                        m_read.emplaceBack(path, raw);
                }
                Q_EMIT readingsWaiting(QPrivateSignal());
            });
    }
    m_reader->read(unknown);
}

// What came into the index meanwhile is what the index says.
void XPAttributeCache::takeRead()
{
    XPAttributeReader::Values values;
    {
        const XPLocker lock(m_mutex);
        values.swap(m_read);
    }
    QList<KPPooledString> paths;
    for (const auto &[path, raw] : values)
        paths.append(path);
    auto value = values.begin();
    for (const Row &row : rowsAt(paths)) {
        m_values.store(row.path, transformed(row.item ? row.raw : value->second));
        ++value;
    }
    notifyMainQ();
}
