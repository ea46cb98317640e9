#pragma once

#include "XPFileWorker.h"
#include "XPMutex.h"
#include "XPProgress.h"

#include <QList>
#include <memory>
#include <optional>
#include <type_traits>

// Work on documents that may take minutes: on a thread of its own, one piece after the other, shown
// and stopped as its task says, so that renames and edits need not wait for it.
// Threads: main. The end of this object asks all of it to stop, and waits for that.
class KPLongWork
{
public:
    KPLongWork() = default;
    ~KPLongWork()
    {
        for (const XPProgress::Task &task : std::as_const(m_tasks))
            task->isStopAsked = true;
    }
    KPLongWork(const KPLongWork &) = delete;
    KPLongWork &operator=(const KPLongWork &) = delete;

    // Runs `work` there, then `done` here with what it returned. Work is to look at the task, also
    // before it begins.
    template <typename Work, typename Done>
    void run(const XPProgress::Task &task, Work work, Done done) XP_REQUIRES(xpGuiThread)
    {
        auto result = std::make_shared<std::optional<std::invoke_result_t<Work>>>();
        m_tasks.append(task);
        XPProgress::current().begin(task);
        m_worker.run([result, work] { result->emplace(work()); },
                     [this, task, result, done] {
                         m_tasks.removeOne(task);
                         XPProgress::current().end(task);
                         done(std::move(**result));
                     });
    }

private:
    QList<XPProgress::Task> m_tasks;
    XPFileWorker m_worker; // ends first
};
