#include "XPAttributeCache.h"

#include "IndexLook.h"
#include "MDItem.h"
#include "XPItemPaths.h"
#include "XPPath.h"

#include <QTimer>

static constexpr qsizetype pathsAReading = 256;
static constexpr int notifyIntervalMs = 3000;

// --- What is asked for

// The timer stands still while there is nothing to fix.
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
    if (wasEmpty)
        Q_EMIT pathsWaiting(QPrivateSignal());
}

// Once: a file that is being read, for however long, is not read a second time meanwhile.
void XPAttributeCache::askFor(KPPooledString path)
{
    bool wasEmpty = false;
    {
        const XPLocker lock(m_pathsToFixLock);
        if (m_lookups.contains(path))
            return;
        wasEmpty = m_pathsToFix.isEmpty();
        m_pathsToFix.insert(path);
    }
    if (wasEmpty)
        Q_EMIT pathsWaiting(QPrivateSignal());
}

qsizetype XPAttributeCache::numPathsToFix() const
{
    const XPLocker lock(m_pathsToFixLock);
    return m_pathsToFix.size() + m_lookups.size();
}

QList<XPAttributeCache::Lookup> XPAttributeCache::begin(const QList<KPPooledString> &paths)
{
    QList<Lookup> lookups;
    const XPLocker lock(m_pathsToFixLock);
    for (const KPPooledString path : paths) {
        if (!m_pathsToFix.remove(path))
            continue; // stored meanwhile
        m_lookups.insert(path, ++m_lastLookup);
        lookups.append({path, m_lastLookup});
    }
    return lookups;
}

void XPAttributeCache::endLookups(KPPooledString path)
{
    m_pathsToFix.remove(path);
    m_lookups.remove(path);
}

// --- What is stored

bool XPAttributeCache::store(KPPooledString path, const XPAttributeValuePtr &value)
{
    const XPLocker lock(m_pathsToFixLock);
    endLookups(path);
    return m_values.store(path, value);
}

bool XPAttributeCache::remove(KPPooledString path)
{
    const XPLocker lock(m_pathsToFixLock);
    endLookups(path);
    return m_values.remove(path);
}

void XPAttributeCache::storeFound(const Lookup &lookup, const XPAttributeValuePtr &value)
{
    const XPLocker lock(m_pathsToFixLock);
    const auto begun = m_lookups.constFind(lookup.path);
    if (begun == m_lookups.cend() || *begun != lookup.number)
        return;
    m_lookups.erase(begun);
    m_values.store(lookup.path, value);
}

// --- Passes

// A pass: what is queued now, in slices between which the thread takes the query's updates.
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
    fix(begin(m_currentlyFixingPaths.sliced(rest)));
    m_currentlyFixingPaths.resize(rest);
    if (rest > 0)
        QMetaObject::invokeMethod(
            m_onThread, [this] { fixSome(); }, Qt::QueuedConnection);
    if (rest > 0 && m_sinceNotified.elapsed() < notifyIntervalMs)
        return;
    m_sinceNotified.start();
    notifyMainQ();
}

std::vector<XPAttributeCache::Row> XPAttributeCache::rowsAt(const QList<Lookup> &lookups) const
{
    std::vector<Row> rows;
    rows.reserve(static_cast<size_t>(lookups.size()));
    const IndexLook look(m_source);
    for (const Lookup &lookup : lookups) {
        Row &row = rows.emplace_back(Row{0, lookup.path, {}});
        if (const auto indexed = look.atPath(XPPath::encode(row.path.toString()))) {
            row.item = indexed->item();
            row.raw = indexed->attribute(m_singleAttributeKey);
        }
    }
    return rows;
}

// What is known already is looked at again because somebody wrote the file: the index may not have
// noticed yet.
void XPAttributeCache::fix(const QList<Lookup> &lookups)
{
    QList<Lookup> unknown;
    QList<Lookup> inFiles;
    for (const Lookup &lookup : lookups)
        (m_values.find(lookup.path).isUnknown ? unknown : inFiles).append(lookup);
    auto lookup = unknown.cbegin();
    for (const Row &row : rowsAt(unknown)) {
        if (row.item == 0) {
            inFiles.append(*lookup++);
            continue;
        }
        XPItemPaths::setIfNone(m_source, row.item, row.path);
        storeFound(*lookup++, transformed(row.raw));
    }
    if (!inFiles.isEmpty())
        readFiles(inFiles);
}

void XPAttributeCache::readFiles(const QList<Lookup> &lookups)
{
    if (!m_reader) {
        m_reader = std::make_unique<XPAttributeReader>(
            m_singleAttributeKey, [this](const QList<XPAttributeReader::Value> &values) {
                {
                    const XPLocker lock(m_mutex);
                    m_read += values;
                }
                Q_EMIT readingsWaiting(QPrivateSignal());
            });
    }
    m_reader->read(lookups);
}

// Of what was unknown and came into the index meanwhile the index says more.
void XPAttributeCache::takeRead()
{
    QList<XPAttributeReader::Value> values;
    {
        const XPLocker lock(m_mutex);
        values.swap(m_read);
    }
    QList<Lookup> lookups;
    for (const auto &value : values)
        lookups.append(value.lookup);
    auto value = values.cbegin();
    for (const Row &row : rowsAt(lookups)) {
        const bool isIndexed = row.item && m_values.find(row.path).isUnknown;
        storeFound(value->lookup, transformed(isIndexed ? row.raw : value->raw));
        ++value;
    }
    notifyMainQ();
}
