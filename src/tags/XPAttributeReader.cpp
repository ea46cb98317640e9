#include "XPAttributeReader.h"

#include "Karvex.h"
#include "XPMutex.h"
#include "XPVolumes.h"

#include <QSet>
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
    bool take(QList<KPPooledString> &paths);
    void finish(const Values &values);

    const QString key;
    const Deliver deliver;
    XPMutex mutex;
    std::condition_variable_any wake;
    std::condition_variable_any left;
    QSet<KPPooledString> waiting XP_GUARDED_BY(mutex);
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
            m_threads[i].detach();
    }
}

void XPAttributeReader::read(const QList<KPPooledString> &paths)
{
    std::array<QList<KPPooledString>, 2> parts;
    for (const KPPooledString path : paths)
        parts[XPVolumes::isOnSlowVolume(path.toString()) ? 1 : 0].append(path);
    for (size_t i = 0; i < parts.size(); ++i) {
        if (parts[i].isEmpty())
            continue;
        {
            const XPLocker lock(m_lanes[i]->mutex);
            for (const KPPooledString path : parts[i])
                m_lanes[i]->waiting.insert(path);
        }
        m_lanes[i]->wake.notify_one();
        if (!m_threads[i].joinable())
            m_threads[i] = std::thread([lane = m_lanes[i]] { lane->loop(); });
    }
}

void XPAttributeReader::Lane::loop()
{
    QList<KPPooledString> paths;
    while (take(paths)) {
        Values values;
        for (const KPPooledString path : paths) {
            values.emplaceBack(path, Karvex::getXAttrMetaData(key, path.toString()).valueOr({}));
        }
        finish(values);
    }
    const XPLocker lock(mutex);
    ended = true;
    left.notify_all();
}

bool XPAttributeReader::Lane::take(QList<KPPooledString> &paths)
{
    paths.clear();
    XPLocker lock(mutex);
    while (waiting.isEmpty() && !stopping)
        wake.wait(lock);
    for (auto path = waiting.begin(); path != waiting.end() && paths.size() < pathsADelivery;) {
        paths.append(*path);
        path = waiting.erase(path);
    }
    return !stopping;
}

void XPAttributeReader::Lane::finish(const Values &values)
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
