#include "IndexLive.h"

#include <chrono>
#include <numeric>

using namespace std::chrono_literals;

int IndexLive::addListener(Listener listener)
{
    const XPLocker lock(m_listenerMutex);
    m_listeners.emplace(++m_lastListener, std::move(listener));
    return m_lastListener;
}

void IndexLive::removeListener(int number)
{
    const XPLocker lock(m_listenerMutex);
    m_listeners.erase(number);
}

void IndexLive::tell(const std::vector<IndexItem> &touched)
{
    if (touched.empty())
        return;
    const XPLocker lock(m_listenerMutex);
    for (const auto &[number, listener] : m_listeners)
        listener(touched);
}

// Nobody may ever listen.
static constexpr size_t mostKept = 1000;

template <typename News>
static void tellOrKeep(const std::function<void(News)> &listener, std::vector<News> &kept,
                       News news)
{
    if (listener)
        listener(std::move(news));
    else if (kept.size() < mostKept)
        kept.push_back(std::move(news));
}

template <typename News>
static void tellKept(const std::function<void(News)> &listener, std::vector<News> &kept)
{
    if (!listener)
        return;
    for (News &news : kept)
        listener(std::move(news));
    kept.clear();
}

void IndexLive::tellLoss(IndexLoss loss)
{
    const XPLocker lock(m_listenerMutex);
    tellOrKeep(m_lossListener, m_losses, std::move(loss));
}

void IndexLive::setLossListener(IndexLoss::Report listener)
{
    const XPLocker lock(m_listenerMutex);
    m_lossListener = std::move(listener);
    tellKept(m_lossListener, m_losses);
}

void IndexLive::tellAttributesChange(IndexAttributesChange change)
{
    const XPLocker lock(m_listenerMutex);
    tellOrKeep(m_attributesListener, m_attributesChanges, std::move(change));
}

void IndexLive::setAttributesListener(IndexAttributesChange::Report listener)
{
    const XPLocker lock(m_listenerMutex);
    m_attributesListener = std::move(listener);
    tellKept(m_attributesListener, m_attributesChanges);
}

void IndexLive::reimport(const QByteArray &path)
{
    std::function<void(const QByteArray &)> reimport;
    {
        const XPLocker lock(m_mutex);
        reimport = m_reimport;
    }
    if (reimport)
        reimport(path);
}

void IndexLive::setReimport(std::function<void(const QByteArray &)> reimport)
{
    const XPLocker lock(m_mutex);
    m_reimport = std::move(reimport);
}

void IndexLive::setText(std::shared_ptr<const IndexText> text)
{
    const XPLocker lock(m_mutex);
    m_text = text.get();
    if (text)
        m_texts.push_back(std::move(text));
}

void IndexLive::setLoaded()
{
    IndexItem last = 0;
    {
        const IndexCatalog::Reading reading(m_catalog);
        last = m_catalog.lastItem();
    }
    IndexItem before = 0;
    {
        const XPLocker lock(m_mutex);
        m_loaded = true;
        before = std::exchange(m_lastItem, last);
    }
    m_wake.notify_all();
    std::vector<IndexItem> all(std::max(before, last));
    std::iota(all.begin(), all.end(), IndexItem{1});
    tell(all);
}

bool IndexLive::isLoaded() const
{
    const XPLocker lock(m_mutex);
    return m_loaded;
}

bool IndexLive::waitUntilLoaded(const std::function<bool()> &stop) const
{
    XPLocker lock(m_mutex);
    while (!m_loaded) {
        if (!stop) {
            m_wake.wait(lock);
            continue;
        }
        if (m_wake.wait_for(lock, 50ms) == std::cv_status::timeout && stop())
            return false;
    }
    return true;
}
