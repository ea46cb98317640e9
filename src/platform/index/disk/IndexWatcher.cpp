#include "IndexWatcher.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <unistd.h>

static constexpr size_t largestBatch = 4000;

bool IndexPathOrder::operator()(const QByteArray &a, const QByteArray &b) const
{
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() || inB == b.end())
        return inA == a.end() && inB != b.end();
    if (*inA == '/' || *inB == '/')
        return *inA == '/';
    return static_cast<uchar>(*inA) < static_cast<uchar>(*inB);
}

static bool isBelow(const QByteArray &path, const QByteArray &folder)
{
    return path.startsWith(folder) &&
           (path.size() == folder.size() || path[folder.size()] == '/' || folder == "/");
}

static QByteArray joined(const QByteArray &folder, const QByteArray &name)
{
    return folder == "/" ? folder + name : folder + '/' + name;
}

IndexWatcher::IndexWatcher(Callback callback, Drained drained, Options options)
    : m_callback(std::move(callback)), m_drained(std::move(drained)), m_distant(options.distant),
      m_inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), m_stop(::eventfd(0, EFD_CLOEXEC)),
      m_mounts(options.mounts ? ::open("/proc/thread-self/mountinfo", O_RDONLY | O_CLOEXEC) : -1)
{
    if (m_inotify.isOpen())
        m_thread = std::thread([this] { loop(); });
}

IndexWatcher::~IndexWatcher()
{
    stop();
}

void IndexWatcher::stop()
{
    if (!m_thread.joinable())
        return;
    const quint64 one = 1;
    (void)!::write(m_stop.get(), &one, sizeof one);
    m_thread.join();
}

// --- Watches

// By path, as the path is what the watch stands for: the open folder may be elsewhere by now.
// Only where that cannot be, or must not be waited for, by the open folder.
int IndexWatcher::addWatch(const QByteArray &folder, int descriptor) const
{
    constexpr quint32 events = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                               IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB | IN_DELETE_SELF |
                               IN_MOVE_SELF | IN_ONLYDIR | IN_EXCL_UNLINK;
    if (!m_distant && folder.size() < PATH_MAX)
        return ::inotify_add_watch(m_inotify.get(), folder.constData(), events | IN_DONT_FOLLOW);
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(descriptor);
    return ::inotify_add_watch(m_inotify.get(), path.constData(), events);
}

bool IndexWatcher::watch(const QByteArray &folder, int descriptor)
{
    int watch = -1;
    if (m_distant) {
        watch = addWatch(folder, descriptor);
        const XPLocker lock(m_mutex);
        if (watch >= 0)
            remember(folder, watch);
    } else {
        // Under the lock, so that nothing that happened after it is translated before it is known.
        const XPLocker lock(m_mutex);
        watch = addWatch(folder, descriptor);
        if (watch >= 0)
            remember(folder, watch);
    }
    // A folder that is not there any more needs none.
    return watch >= 0 || errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
}

void IndexWatcher::remember(const QByteArray &folder, int watch)
{
    QByteArray &known = m_folders[watch];
    if (!known.isNull() && known != folder) {
        if (const auto entry = m_watches.find(known);
            entry != m_watches.end() && entry->second == watch)
            m_watches.erase(entry);
    }
    known = folder;
    int &number = m_watches.try_emplace(folder, watch).first->second;
    if (number != watch) { // another folder was at this path
        ::inotify_rm_watch(m_inotify.get(), number);
        m_folders.remove(number);
        number = watch;
    }
}

std::pair<IndexWatcher::Watches::iterator, IndexWatcher::Watches::iterator>
IndexWatcher::below(const QByteArray &folder)
{
    const auto first = m_watches.lower_bound(folder);
    auto last = first;
    while (last != m_watches.end() && isBelow(last->first, folder))
        ++last;
    return {first, last};
}

void IndexWatcher::forgetBelow(const QByteArray &folder)
{
    const XPLocker lock(m_mutex);
    const auto [first, last] = below(folder);
    for (auto entry = first; entry != last; ++entry) {
        ::inotify_rm_watch(m_inotify.get(), entry->second);
        m_folders.remove(entry->second);
    }
    m_watches.erase(first, last);
}

void IndexWatcher::moveBelow(const QByteArray &from, const QByteArray &to)
{
    const XPLocker lock(m_mutex);
    const auto [first, last] = below(from);
    const std::vector<std::pair<QByteArray, int>> moved(first, last);
    m_watches.erase(first, last);
    for (const auto &[path, watch] : moved) {
        const QByteArray target = to + path.mid(from.size());
        m_folders[watch] = target;
        m_watches[target] = watch;
    }
}

bool IndexWatcher::isDrained() const
{
    int waiting = 0;
    return ::ioctl(m_inotify.get(), FIONREAD, &waiting) != 0 || (waiting == 0 && !m_busy);
}

// --- Events

void IndexWatcher::loop()
{
    for (;;) {
        pollfd waiting[] = {
            {m_stop.get(), POLLIN, 0}, {m_inotify.get(), POLLIN, 0}, {m_mounts.get(), POLLPRI, 0}};
        if (::poll(waiting, 3, -1) < 0 && errno != EINTR)
            return;
        if (waiting[0].revents)
            return;
        m_busy = true;
        std::vector<Event> events;
        if (waiting[2].revents) {
            events.emplace_back();
            events.back().kind = Event::Kind::Mounts;
        }
        readEvents(events);
        if (!events.empty())
            m_callback(std::move(events));
        m_busy = false;
        m_drained();
    }
}

void IndexWatcher::readEvents(std::vector<Event> &events)
{
    alignas(inotify_event) char bytes[64 * 1024];
    // The kernel queues both halves of a rename one soon after the other: with one half here the
    // other is waited for a moment. A half that stays alone left what is watched.
    constexpr int waitForHalfMs = 1;
    size_t halvesBefore = 0;
    for (;;) {
        const ssize_t size = ::read(m_inotify.get(), bytes, sizeof bytes);
        if (size <= 0) {
            pollfd waiting = {m_inotify.get(), POLLIN, 0};
            if (m_halfMoves.size() > halvesBefore && ::poll(&waiting, 1, waitForHalfMs) > 0) {
                halvesBefore = m_halfMoves.size();
                continue;
            }
            break;
        }
        translate(bytes, static_cast<size_t>(size), events);
        if (events.size() > largestBatch && m_halfMoves.empty())
            break;
    }
    for (const HalfMove &half : m_halfMoves) {
        const Event &from = events[half.event];
        if (from.isFolder)
            forgetBelow(joined(from.folder, from.name));
    }
    m_halfMoves.clear();
}

bool IndexWatcher::completeMove(quint32 cookie, const Event &to, std::vector<Event> &out)
{
    for (auto half = m_halfMoves.begin(); half != m_halfMoves.end(); ++half) {
        if (half->cookie != cookie)
            continue;
        Event &from = out[half->event];
        from.kind = Event::Kind::Moved;
        from.toFolder = to.folder;
        from.toName = to.name;
        m_halfMoves.erase(half);
        if (from.isFolder)
            moveBelow(joined(from.folder, from.name), joined(from.toFolder, from.toName));
        return true;
    }
    return false;
}

void IndexWatcher::translate(const char *bytes, size_t size, std::vector<Event> &out)
{
    using namespace std::chrono;
    const qint64 time = duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    for (size_t at = 0; at < size;) {
        const auto *event = reinterpret_cast<const inotify_event *>(bytes + at);
        at += sizeof(inotify_event) + event->len;
        Event translated;
        translated.time = time;
        translated.isFolder = event->mask & IN_ISDIR;
        if (event->mask & IN_Q_OVERFLOW) {
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
                if (const auto entry = m_watches.find(*folder);
                    entry != m_watches.end() && entry->second == event->wd)
                    m_watches.erase(entry);
                m_folders.erase(folder);
                continue;
            }
        }
        if (event->mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) {
            translated.kind = Event::Kind::FolderGone;
            out.push_back(translated);
            continue;
        }
        if (event->len == 0)
            continue; // about the folder itself: its parent tells
        translated.name = QByteArray(event->name);
        translated.isMade = event->mask & (IN_CREATE | IN_MOVED_TO);
        if (event->mask & (IN_DELETE | IN_MOVED_FROM))
            translated.kind = Event::Kind::Gone;
        if (event->mask & IN_MOVED_FROM)
            m_halfMoves.push_back({event->cookie, out.size()});
        if ((event->mask & IN_MOVED_TO) && completeMove(event->cookie, translated, out))
            continue;
        out.push_back(std::move(translated));
    }
}
