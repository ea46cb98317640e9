#include "KPThumbnailLoader.h"

#include "KPFileType.h"
#include "KPThumbnailImage.h"
#include "XPPath.h"
#include "XPVolumes.h"

#include <algorithm>

static constexpr qsizetype defaultCacheBytes = 192 << 20;

static QImage makePicture(const QString &path, int side)
{
    const bool worthIt =
        kpMayHaveThumbnail(XPPath::extension(path)) && !XPVolumes::isOnSlowVolume(path);
    return worthIt ? kpThumbnailImage(path, side) : QImage();
}

KPThumbnailLoader::KPThumbnailLoader(QObject *parent)
    : KPThumbnailLoader(makePicture, defaultCacheBytes, parent)
{
}

KPThumbnailLoader::KPThumbnailLoader(Maker maker, qsizetype cacheBytes, QObject *parent)
    : QObject(parent), m_maker(std::move(maker)), m_cache(cacheBytes)
{
    connect(this, &KPThumbnailLoader::resultsWaiting, this, &KPThumbnailLoader::receive,
            Qt::QueuedConnection);
    // One processor is left to the window.
    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 2U, 5U) - 1;
    for (unsigned number = 0; number < threads; ++number)
        m_threads.emplace_back([this] { work(); });
}

KPThumbnailLoader::~KPThumbnailLoader()
{
    {
        const XPLocker locker(m_mutex);
        m_quit = true;
    }
    m_wake.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

bool KPThumbnailLoader::isKnown(const Request &request) const
{
    const Entry *entry = m_cache.object(request.path);
    return entry && entry->version == request.version && entry->look.side == request.side;
}

void KPThumbnailLoader::want(const std::vector<Request> &requests)
{
    {
        const XPLocker locker(m_mutex);
        m_requests.clear();
        for (const Request &request : requests) {
            if (!isKnown(request) &&
                std::find(m_begun.begin(), m_begun.end(), request) == m_begun.end())
                m_requests.push_back(request);
        }
        m_outstanding = m_requests.size() + m_begun.size();
    }
    m_wake.notify_all();
    if (!m_outstanding)
        Q_EMIT settled();
}

KPThumbnailLoader::Look KPThumbnailLoader::look(const QString &path, qint64 version) const
{
    const Entry *entry = m_cache.object(path);
    return entry && entry->version == version ? entry->look : Look();
}

// The workers.

void KPThumbnailLoader::work()
{
    XPLocker locker(m_mutex);
    for (;;) {
        while (!m_quit && m_requests.empty())
            m_wake.wait(locker);
        if (m_quit)
            return;
        const Request request = m_requests.front();
        m_requests.pop_front();
        m_begun.push_back(request);
        locker.unlock();
        Result result = make(request);
        locker.lock();
        m_results.push_back(std::move(result));
        if (m_results.size() == 1)
            Q_EMIT resultsWaiting(QPrivateSignal());
    }
}

KPThumbnailLoader::Result KPThumbnailLoader::make(const Request &request) const
{
    return {request, m_maker(request.path, request.side),
            KPFileType::utiForPath(request.path, XPPath::extension(request.path), request.mode)};
}

// Back on the main thread.

void KPThumbnailLoader::receive()
{
    std::vector<Result> results;
    {
        const XPLocker locker(m_mutex);
        results.swap(m_results);
        for (const Result &result : results)
            m_begun.erase(std::find(m_begun.begin(), m_begun.end(), result.request));
        m_outstanding = m_requests.size() + m_begun.size();
    }
    QStringList paths;
    for (const Result &result : results) {
        remember(result);
        paths.append(result.request.path);
    }
    Q_EMIT looksReady(paths);
    if (!m_outstanding)
        Q_EMIT settled();
}

void KPThumbnailLoader::remember(const Result &result)
{
    auto *entry = new Entry{{QPixmap::fromImage(result.image), result.uti, result.request.side},
                            result.request.version};
    m_cache.insert(result.request.path, entry, 512 + result.image.sizeInBytes());
}
