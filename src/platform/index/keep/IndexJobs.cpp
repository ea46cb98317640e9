#include "IndexJobs.h"

#include <utility>

// Listings hold a few kilobytes each.
static constexpr size_t mostWaiting = 256;

void IndexJobs::post(Job job, Urgency urgency)
{
    bool wake = false;
    {
        const XPLocker lock(m_mutex);
        queue(urgency).push_back(std::move(job));
        wake = m_sleeping;
    }
    if (wake)
        m_wake.notify_one();
}

void IndexJobs::postLater(Job job, std::chrono::milliseconds delay)
{
    {
        const XPLocker lock(m_mutex);
        m_later.emplace(Clock::now() + delay, std::move(job));
    }
    m_wake.notify_one();
}

void IndexJobs::waitForRoom()
{
    XPLocker lock(m_mutex);
    ++m_waitingForRoom;
    while (m_inTurn.size() >= mostWaiting && !m_stopping)
        m_room.wait(lock);
    --m_waitingForRoom;
}

bool IndexJobs::areWaiting() const
{
    const XPLocker lock(m_mutex);
    return !m_urgent.empty() || !m_inTurn.empty();
}

void IndexJobs::stop()
{
    {
        const XPLocker lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    m_room.notify_all();
}

void IndexJobs::run(const std::function<void()> &idle)
{
    Job job;
    Urgency urgency = Urgency::Now;
    bool toldIdle = false;
    for (;;) {
        switch (next(job, urgency)) {
        case Next::Stop:
            return;
        case Next::Nothing:
            if (std::exchange(toldIdle, true))
                sleep();
            else
                idle();
            continue;
        case Next::Job:
            break;
        }
        toldIdle = false;
        if (job())
            continue;
        const XPLocker lock(m_mutex);
        queue(urgency).push_front(std::move(job));
    }
}

IndexJobs::Next IndexJobs::next(Job &job, Urgency &urgency)
{
    job = nullptr; // what it held goes before the wait
    const XPLocker lock(m_mutex);
    if (m_stopping)
        return Next::Stop;
    while (!m_later.empty() && m_later.begin()->first <= Clock::now()) {
        m_urgent.push_back(std::move(m_later.begin()->second));
        m_later.erase(m_later.begin());
    }
    urgency = m_urgent.empty() ? Urgency::InTurn : Urgency::Now;
    std::deque<Job> &jobs = queue(urgency);
    if (jobs.empty())
        return Next::Nothing;
    job = std::move(jobs.front());
    jobs.pop_front();
    // Half empty, so that the crawl is not woken for each job.
    if (m_waitingForRoom && m_inTurn.size() <= mostWaiting / 2)
        m_room.notify_all();
    return Next::Job;
}

void IndexJobs::sleep()
{
    XPLocker lock(m_mutex);
    if (m_stopping || !m_urgent.empty() || !m_inTurn.empty())
        return;
    m_sleeping = true;
    if (m_later.empty())
        m_wake.wait(lock);
    else
        m_wake.wait_until(lock, m_later.begin()->first);
    m_sleeping = false;
}
