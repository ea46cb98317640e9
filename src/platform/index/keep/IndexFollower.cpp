#include "IndexFollower.h"

#include "IndexRequests.h"
#include "XPFileInfo.h"
#include "XPLog.h"
#include "XPPath.h"

#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

using namespace std::chrono_literals;

IndexFollower::IndexFollower(IndexLive &live, const QString &path)
    : m_live(live), m_path(path), m_bell(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    // The bell is watched before the store is read, so that no ring is missed; it is made here
    // when the other process has not come so far yet.
    const QByteArray bell = XPPath::encode(IndexStore::bellPath(path));
    const XPFileDescriptor made(::open(bell.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    ::inotify_add_watch(m_bell.get(), bell.constData(), IN_MODIFY);
    m_thread = std::thread([this] { loop(); });
}

IndexFollower::~IndexFollower()
{
    stop();
}

void IndexFollower::stop()
{
    if (!m_thread.joinable())
        return;
    {
        const XPLocker lock(m_mutex);
        m_stopping = true;
    }
    wake();
    m_thread.join();
    m_refreshed.notify_all();
}

std::unique_ptr<IndexStore> IndexFollower::finish()
{
    stop();
    catchUp();
    return std::move(m_store);
}

void IndexFollower::wake() const
{
    const quint64 one = 1;
    (void)!::write(m_wake.get(), &one, sizeof one);
}

bool IndexFollower::refresh(const std::function<bool()> &stop)
{
    XPLocker lock(m_mutex);
    const quint64 ours = ++m_asked;
    wake();
    while (m_answered < ours && !m_stopping) {
        if (m_refreshed.wait_for(lock, 50ms) == std::cv_status::timeout && stop && stop())
            return false;
    }
    return m_answered >= ours;
}

void IndexFollower::loop()
{
    for (;;) {
        quint64 asked = 0;
        {
            const XPLocker lock(m_mutex);
            if (m_stopping)
                return;
            asked = m_asked;
        }
        catchUp();
        {
            const XPLocker lock(m_mutex);
            m_answered = asked;
        }
        m_refreshed.notify_all();
        pollfd waiting[] = {{m_bell.get(), POLLIN, 0}, {m_wake.get(), POLLIN, 0}};
        if (::poll(waiting, 2, -1) < 0 && errno != EINTR)
            return;
        char bytes[4096];
        while (::read(m_bell.get(), bytes, sizeof bytes) > 0)
            continue;
        (void)!::read(m_wake.get(), bytes, sizeof(quint64));
    }
}

// --- Reading

// A store that was set aside or deleted leaves an open file that nobody writes any more.
bool IndexFollower::isReplaced() const
{
    const auto info = XPFileInfo::read(m_path);
    return !info || info->inode != m_inode;
}

std::optional<XPError> IndexFollower::load()
{
    m_store.reset();
    const auto info = XPFileInfo::read(m_path);
    if (!info)
        return info.error();
    m_inode = info->inode;
    auto store = IndexStore::open(m_path, IndexStore::Mode::Read);
    if (!store)
        return store.error();
    if (auto error = (*store)->load(m_live.writable()))
        return error;
    m_store = *std::move(store);
    m_hasText = false;
    return {};
}

void IndexFollower::openText()
{
    if (m_hasText)
        return;
    auto text = IndexTextStore::open(m_path + QStringLiteral(".text"), false);
    m_hasText = text.hasValue();
    if (!m_hasText)
        return;
    (*text)->setDamaged([path = m_path](quint64 inode) {
        (void)IndexRequests::tell(path, IndexRequests::Kind::Damage, QByteArray::number(inode));
    });
    m_live.setText(*std::move(text));
}

void IndexFollower::catchUp()
{
    if (m_store && !isReplaced()) {
        const auto batches = m_store->readNew();
        if (batches) {
            for (const IndexBatch &batch : *batches)
                m_live.tell(m_live.writable().apply(batch));
            openText();
            return;
        }
        if (batches.error().kind != XPError::Kind::NotFound)
            qCWarning(xpLog).noquote() << "Index:" << batches.error().message;
    }
    if (auto error = load()) {
        // Not made yet, or damaged and about to be made anew: the bell will ring.
        if (error->kind != XPError::Kind::NotFound)
            qCWarning(xpLog).noquote() << "Index:" << error->message;
        return;
    }
    openText();
    m_live.setLoaded();
}
