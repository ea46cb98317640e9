#pragma once

#include "IndexLoss.h"
#include "KPHealing.h"
#include "XPFileInfo.h"
#include "XPMutex.h"

#include <condition_variable>
#include <deque>
#include <thread>

class MetadataIndex;

// Gives files the attributes back that they lost to a program which saved by writing a new file in
// the old one's place.
//
// The process that keeps the index hears of such a file, waits a moment for the program to be done,
// looks again that the file has no tags, and puts the bytes back. Every case is in the log
// (KPHealingLog). It is only put there, for the user to say, when the content type is another one
// now, nobody saw how the file was replaced, or the bytes of some attribute are not known. The
// setting "KPHealLostTags", false, switches it off. Threads: construct and destroy on one. The work
// is done on a thread of its own, which the destructor joins after what was heard of is done.
// Ownership: the index must outlive it.
class KPTagHealer
{
public:
    explicit KPTagHealer(MetadataIndex &index);
    ~KPTagHealer();
    KPTagHealer(const KPTagHealer &) = delete;
    KPTagHealer &operator=(const KPTagHealer &) = delete;

private:
    using Clock = std::chrono::steady_clock;
    // A file that is looked at when it is due: healed before, when it has a number.
    struct Task
    {
        Clock::time_point due;
        IndexLoss loss;
        KPHealing healing;
        XPFileInfo healed; // the file that was
    };

    void take(IndexLoss loss) XP_EXCLUDES(m_mutex);
    void loop() XP_EXCLUDES(m_mutex);
    std::vector<Task> nextTasks() XP_EXCLUDES(m_mutex); // empty: the end
    void work(std::vector<Task> tasks) XP_EXCLUDES(m_mutex);
    void completeFromRecent(std::vector<Task> &tasks) XP_EXCLUDES(m_mutex);
    void healOne(Task &task);
    void lookAgainLater(const Task &task) XP_EXCLUDES(m_mutex);

    MetadataIndex &m_index;
    XPMutex m_mutex;
    std::condition_variable_any m_wake;
    std::deque<Task> m_tasks XP_GUARDED_BY(m_mutex); // by the time when they are due
    bool m_stopping XP_GUARDED_BY(m_mutex) = false;
    std::thread m_thread; // last
};
