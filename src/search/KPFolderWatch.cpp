#include "KPFolderWatch.h"

#include <cerrno>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>

KPFolderWatch::KPFolderWatch() : m_descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
}

KPFolderWatch::~KPFolderWatch()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

int KPFolderWatch::add(int folder)
{
    if (m_descriptor < 0) {
        errno = EMFILE;
        return -1;
    }
    // Through the descriptor: a path could be too long, or mean another folder by now. Writes
    // count when the file is closed: a long download is one change, not thousands.
    constexpr quint32 mask = IN_CREATE | IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVED_FROM | IN_MOVED_TO |
                             IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                             IN_EXCL_UNLINK;
    const std::string path = "/proc/self/fd/" + std::to_string(folder);
    return ::inotify_add_watch(m_descriptor, path.c_str(), mask);
}

void KPFolderWatch::remove(int watch)
{
    ::inotify_rm_watch(m_descriptor, watch);
}

std::vector<KPFolderWatch::Event> KPFolderWatch::take()
{
    std::vector<Event> events;
    alignas(inotify_event) char buffer[32 * 1024];
    while (m_descriptor >= 0) {
        const ssize_t size = ::read(m_descriptor, buffer, sizeof buffer);
        if (size <= 0)
            break;
        for (ssize_t at = 0; at < size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer + at);
            events.push_back(
                {event->wd, event->mask, event->len ? QByteArray(event->name) : QByteArray()});
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    return events;
}
