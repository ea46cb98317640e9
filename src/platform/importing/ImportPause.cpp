#include "ImportPause.h"

#include <algorithm>
#include <sys/eventfd.h>

void ImportPause::set(Reason reason, bool on)
{
    const XPLocker lock(m_mutex);
    const unsigned before = m_reasons;
    const unsigned after = on ? before | reason : before & ~static_cast<unsigned>(reason);
    if (after == before)
        return;
    m_reasons = after;
    for (const Listener *listener : m_listeners)
        listener->ring();
}

ImportPause::Listener::Listener(ImportPause &pause)
    : m_pause(pause), m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    const XPLocker lock(m_pause.m_mutex);
    m_pause.m_listeners.push_back(this);
}

ImportPause::Listener::~Listener()
{
    const XPLocker lock(m_pause.m_mutex);
    std::erase(m_pause.m_listeners, this);
}

void ImportPause::Listener::ring() const
{
    ::eventfd_write(m_event.get(), 1);
}

void ImportPause::Listener::quieten() const
{
    eventfd_t count = 0;
    ::eventfd_read(m_event.get(), &count);
}
