#include "IndexWatcher.h"

#include <cerrno>
#include <climits>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <unistd.h>

IndexWatcher::IndexWatcher(Callback callback) : m_callback(std::move(callback))
{
    m_inotify = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    m_stop = ::eventfd(0, EFD_CLOEXEC);
    if (m_inotify >= 0)
        m_thread = std::thread([this] { loop(); });
}

IndexWatcher::~IndexWatcher()
{
    if (m_thread.joinable()) {
        const quint64 one = 1;
        (void)!::write(m_stop, &one, sizeof one);
        m_thread.join();
    }
    if (m_inotify >= 0)
        ::close(m_inotify);
    ::close(m_stop);
}

bool IndexWatcher::watch(const QByteArray &folder)
{
    constexpr quint32 events = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                               IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB | IN_DELETE_SELF |
                               IN_UNMOUNT | IN_ONLYDIR | IN_DONT_FOLLOW | IN_EXCL_UNLINK;
    // Under the lock, so that no event of the new watch is translated before its folder is known.
    const XPLocker lock(m_mutex);
    const int watch = ::inotify_add_watch(m_inotify, folder.constData(), events);
    if (watch < 0) // a folder that is not there needs none
        return errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
    const QByteArray before = m_folders.value(watch);
    if (!before.isNull() && before != folder)
        m_watches.remove(before);
    m_folders.insert(watch, folder);
    m_watches.insert(folder, watch);
    return true;
}

static bool isBelow(const QByteArray &path, const QByteArray &folder)
{
    return path.startsWith(folder) &&
           (path.size() == folder.size() || path[folder.size()] == '/' || folder == "/");
}

void IndexWatcher::forgetBelow(const QByteArray &folder)
{
    const XPLocker lock(m_mutex);
    for (auto entry = m_watches.begin(); entry != m_watches.end();) {
        if (!isBelow(entry.key(), folder)) {
            ++entry;
            continue;
        }
        ::inotify_rm_watch(m_inotify, *entry);
        m_folders.remove(*entry);
        m_lastEvents.remove(entry.key());
        entry = m_watches.erase(entry);
    }
}

void IndexWatcher::moveBelow(const QByteArray &from, const QByteArray &to)
{
    const XPLocker lock(m_mutex);
    for (auto entry = m_folders.begin(); entry != m_folders.end(); ++entry) {
        if (!isBelow(*entry, from))
            continue;
        m_watches.remove(*entry);
        m_lastEvents.remove(*entry);
        *entry = to + entry->mid(from.size());
        m_watches.insert(*entry, entry.key());
        m_lastEvents.insert(*entry, m_stamp);
    }
}

quint64 IndexWatcher::lastEventIn(const QByteArray &folder) const
{
    const XPLocker lock(m_mutex);
    return m_lastEvents.value(folder);
}

bool IndexWatcher::isDrained() const
{
    int waiting = 0;
    return ::ioctl(m_inotify, FIONREAD, &waiting) != 0 || (waiting == 0 && !m_busy);
}

void IndexWatcher::loop()
{
    alignas(inotify_event) char bytes[64 * 1024];
    for (;;) {
        pollfd waiting[] = {{m_inotify, POLLIN, 0}, {m_stop, POLLIN, 0}};
        if (::poll(waiting, 2, -1) < 0 && errno != EINTR)
            return;
        if (waiting[1].revents)
            return;
        m_busy = true;
        std::vector<Event> events;
        ssize_t size = 0;
        while ((size = ::read(m_inotify, bytes, sizeof bytes)) > 0)
            translate(bytes, static_cast<size_t>(size), events);
        // The kernel queues both halves of a rename together; one that stayed alone left what is
        // watched, or came from outside.
        m_halfMoves.clear();
        if (!events.empty())
            m_callback(std::move(events));
        m_busy = false;
    }
}

void IndexWatcher::translate(const char *bytes, size_t size, std::vector<Event> &out)
{
    for (size_t at = 0; at < size;) {
        const auto *event = reinterpret_cast<const inotify_event *>(bytes + at);
        at += sizeof(inotify_event) + event->len;
        Event translated;
        translated.isFolder = event->mask & IN_ISDIR;
        if (event->mask & IN_Q_OVERFLOW) {
            ++m_stamp;
            translated.kind = Event::Kind::Overflow;
            out.push_back(translated);
            continue;
        }
        {
            const XPLocker lock(m_mutex);
            const auto folder = m_folders.constFind(event->wd);
            if (folder == m_folders.cend())
                continue;
            translated.folder = *folder;
            if (event->mask & IN_IGNORED) {
                m_watches.remove(*folder);
                m_folders.remove(event->wd);
                continue;
            }
            m_lastEvents.insert(translated.folder, ++m_stamp);
        }
        if (event->mask & (IN_DELETE_SELF | IN_UNMOUNT)) {
            translated.kind = Event::Kind::FolderGone;
            out.push_back(translated);
            continue;
        }
        if (event->len == 0)
            continue; // about the folder itself: its parent tells
        translated.name = QByteArray(event->name);
        if (event->mask & (IN_DELETE | IN_MOVED_FROM))
            translated.kind = Event::Kind::Gone;
        if (event->mask & IN_MOVED_FROM)
            m_halfMoves.push_back({event->cookie, out.size()});
        if (event->mask & IN_MOVED_TO) {
            for (auto half = m_halfMoves.begin(); half != m_halfMoves.end(); ++half) {
                if (half->cookie != event->cookie)
                    continue;
                Event &from = out[half->event];
                from.kind = Event::Kind::Moved;
                from.toFolder = translated.folder;
                from.toName = translated.name;
                m_halfMoves.erase(half);
                translated.name.clear();
                if (from.isFolder)
                    moveBelow(from.folder + '/' + from.name, from.toFolder + '/' + from.toName);
                break;
            }
            if (translated.name.isNull())
                continue;
        }
        out.push_back(translated);
    }
}
