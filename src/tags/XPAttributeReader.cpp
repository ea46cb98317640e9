#include "XPAttributeReader.h"

#include "Karvex.h"
#include "XPMutex.h"
#include "XPStrandedThreads.h"
#include "XPVolumes.h"

#include <QHash>
#include <chrono>
#include <condition_variable>

using namespace std::chrono_literals;

static constexpr qsizetype pathsADelivery = 256;
static constexpr auto patience = 1s; // with a file call, at the end

// What one thread and its owner share. It outlives the owner where the thread is left behind.
struct XPAttributeReader::Lane
{
    Lane(const QString &attributeKey, Deliver call) : key(attributeKey), deliver(std::move(call)) {}

    void loop();
    bool take(QList<Lookup> &lookups);
    void finish(const QList<Value> &values);

    const QString key;
    const Deliver deliver;
    XPMutex mutex;
    std::condition_variable_any wake;
    std::condition_variable_any left;
    QHash<KPPooledString, quint64> waiting XP_GUARDED_BY(mutex);
    bool delivering XP_GUARDED_BY(mutex) = false;
    bool stopping XP_GUARDED_BY(mutex) = false;
    bool ended XP_GUARDED_BY(mutex) = false;
};

XPAttributeReader::XPAttributeReader(const QString &attributeKey, Deliver deliver)
{
    for (auto &lane : m_lanes)
        lane = std::make_shared<Lane>(attributeKey, deliver);
}

XPAttributeReader::~XPAttributeReader()
{
    for (const auto &lane : m_lanes) {
        const XPLocker lock(lane->mutex);
        lane->stopping = true;
        lane->wake.notify_all();
    }
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (size_t i = 0; i < m_lanes.size(); ++i) {
        if (!m_threads[i].joinable())
            continue;
        Lane &lane = *m_lanes[i];
        bool ended = false;
        {
            XPLocker lock(lane.mutex);
            while (lane.delivering)
                lane.left.wait(lock);
            while (!lane.ended && lane.left.wait_until(lock, deadline) != std::cv_status::timeout) {
            }
            ended = lane.ended;
        }
        if (ended)
            m_threads[i].join();
        else
            XPStrandedThreads::adopt(std::move(m_threads[i]), [stranded = m_lanes[i]] {
                const XPLocker lock(stranded->mutex);
                return stranded->ended;
            });
    }
}

void XPAttributeReader::read(const QList<Lookup> &lookups)
{
    std::array<QList<Lookup>, 2> parts;
    for (const Lookup &lookup : lookups)
        parts[XPVolumes::isOnSlowVolume(lookup.path.toString()) ? 1 : 0].append(lookup);
    for (size_t i = 0; i < parts.size(); ++i) {
        if (parts[i].isEmpty())
            continue;
        {
            const XPLocker lock(m_lanes[i]->mutex);
            for (const Lookup &lookup : parts[i])
                m_lanes[i]->waiting.insert(lookup.path, lookup.number);
        }
        m_lanes[i]->wake.notify_one();
        if (!m_threads[i].joinable())
            m_threads[i] = std::thread([lane = m_lanes[i]] { lane->loop(); });
    }
}

// What is not there has no value; neither has what can be no path.
static XPResult<PropertyValue> readFile(const QString &key, const QString &path)
{
    auto raw = Karvex::getXAttrMetaData(key, path);
    if (!raw && (raw.error().kind == XPError::Kind::NotFound ||
                 raw.error().kind == XPError::Kind::InvalidArgument))
        return PropertyValue();
    return raw;
}

void XPAttributeReader::Lane::loop()
{
    QList<Lookup> lookups;
    while (take(lookups)) {
        QList<Value> values;
        for (const Lookup &lookup : lookups)
            values.append({lookup, readFile(key, lookup.path.toString())});
        finish(values);
    }
    const XPLocker lock(mutex);
    ended = true;
    left.notify_all();
}

bool XPAttributeReader::Lane::take(QList<Lookup> &lookups)
{
    lookups.clear();
    XPLocker lock(mutex);
    while (waiting.isEmpty() && !stopping)
        wake.wait(lock);
    for (auto next = waiting.begin(); next != waiting.end() && lookups.size() < pathsADelivery;) {
        lookups.append({next.key(), next.value()});
        next = waiting.erase(next);
    }
    return !stopping;
}

void XPAttributeReader::Lane::finish(const QList<Value> &values)
{
    {
        const XPLocker lock(mutex);
        if (stopping)
            return;
        delivering = true;
    }
    deliver(values);
    const XPLocker lock(mutex);
    delivering = false;
    left.notify_all();
}
