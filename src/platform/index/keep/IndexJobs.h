#pragma once

#include "XPMutex.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>

// The work that waits for the index's writer thread: what somebody just did before what a crawl
// found, and what is due at a later time.
//
// A job does little at a time, as the next urgent one waits for its end: it returns false while
// there is more of it to do, and goes on after the urgent ones. Jobs of one urgency are done in
// the order of their posting. With nothing to do the thread sleeps without a time limit.
// Threads: run() on the writer's; everything else from any.
class IndexJobs
{
public:
    using Job = std::function<bool()>;
    enum class Urgency { Now, InTurn };

    void post(Job job, Urgency urgency);
    void postLater(Job job, std::chrono::milliseconds delay); // urgent when due
    // Blocks while very many jobs wait in turn, so that a crawl does not outrun the writer.
    void waitForRoom();
    // Jobs that are due.
    bool areWaiting() const;
    // `idle` is called when the last job is done, before the thread sleeps. Jobs due later may
    // wait.
    void run(const std::function<void()> &idle); // until stop()
    void stop();                                 // jobs that wait are dropped

private:
    using Clock = std::chrono::steady_clock;
    enum class Next { Job, Nothing, Stop };
    Next next(Job &job, Urgency &urgency);
    void sleep();
    std::deque<Job> &queue(Urgency urgency) XP_REQUIRES(m_mutex)
    {
        return urgency == Urgency::Now ? m_urgent : m_inTurn;
    }

    mutable XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::condition_variable_any m_room;
    std::deque<Job> m_urgent XP_GUARDED_BY(m_mutex);
    std::deque<Job> m_inTurn XP_GUARDED_BY(m_mutex);
    std::multimap<Clock::time_point, Job> m_later XP_GUARDED_BY(m_mutex);
    bool m_sleeping XP_GUARDED_BY(m_mutex) = false;
    bool m_stopping XP_GUARDED_BY(m_mutex) = false;
    int m_waitingForRoom XP_GUARDED_BY(m_mutex) = 0;
};
