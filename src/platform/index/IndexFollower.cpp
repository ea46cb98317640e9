#include "IndexFollower.h"

#include "XPLog.h"
#include "XPPath.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

XPResult<std::unique_ptr<IndexFollower>> IndexFollower::start(const QString &path)
{
    std::unique_ptr<IndexFollower> follower(new IndexFollower);
    // The bell is watched before the store is read, so that no ring is missed.
    follower->m_inotify = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    follower->m_stop = ::eventfd(0, EFD_CLOEXEC);
    ::inotify_add_watch(follower->m_inotify, XPPath::encode(IndexStore::bellPath(path)).constData(),
                        IN_MODIFY);
    if (auto error = follower->load(path))
        return *error;
    follower->m_thread = std::thread([raw = follower.get()] { raw->loop(); });
    return follower;
}

std::optional<XPError> IndexFollower::load(const QString &path)
{
    auto store = IndexStore::open(path, IndexStore::Mode::Read);
    if (!store)
        return store.error();
    m_store = *std::move(store);
    if (auto error = m_store->load(m_catalog))
        return error;
    if (auto text = IndexTextStore::open(path + QStringLiteral(".text"), false))
        m_text = *std::move(text);
    return {};
}

IndexFollower::~IndexFollower()
{
    if (m_thread.joinable()) {
        const quint64 one = 1;
        (void)!::write(m_stop, &one, sizeof one);
        m_thread.join();
    }
    ::close(m_inotify);
    ::close(m_stop);
}

void IndexFollower::loop()
{
    for (;;) {
        pollfd waiting[] = {{m_inotify, POLLIN, 0}, {m_stop, POLLIN, 0}};
        if (::poll(waiting, 2, -1) < 0 && errno != EINTR)
            return;
        if (waiting[1].revents)
            return;
        char rings[4096];
        while (::read(m_inotify, rings, sizeof rings) > 0)
            continue;
        catchUp();
    }
}

void IndexFollower::catchUp()
{
    std::vector<IndexItem> touched;
    const auto tell = [&] {
        const XPLocker lock(m_listenerMutex);
        for (const auto &[number, listener] : m_listeners)
            listener(touched);
    };
    const auto batches = m_store->readNew();
    if (batches) {
        for (const IndexBatch &batch : *batches) {
            touched = m_catalog.apply(batch);
            tell();
        }
        return;
    }
    if (batches.error().kind != XPError::Kind::NotFound) {
        qCWarning(xpLog).noquote() << batches.error().message;
        return;
    }
    if (auto error = m_store->load(m_catalog))
        qCWarning(xpLog).noquote() << error->message;
    for (IndexItem item = 1; item <= m_catalog.lastItem(); ++item)
        touched.push_back(item);
    tell();
}

int IndexFollower::addListener(Listener listener)
{
    const XPLocker lock(m_listenerMutex);
    m_listeners.emplace(++m_lastListener, std::move(listener));
    return m_lastListener;
}

void IndexFollower::removeListener(int number)
{
    const XPLocker lock(m_listenerMutex);
    m_listeners.erase(number);
}
