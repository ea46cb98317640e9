#pragma once

#include "XPMutex.h"

#include <QObject>
#include <condition_variable>
#include <deque>
#include <functional>
#include <thread>

// A thread that makes the file calls of moves, copies, renames and trash, one at a time in
// the order in which the main thread gives them: a slow or frozen volume never blocks a window.
//
// The program makes one at start-up; current() is how the classes below the window find it. Work
// that takes minutes has another of its own, made later, so that renames need not wait for it. The
// destructor finishes the calls that were asked for, so that no file is left half moved; who asked
// is not told any more.
// Threads: lives on the main thread; the calls run on a thread of its own.
class XPFileWorker : public QObject
{
    Q_OBJECT

public:
    XPFileWorker();
    ~XPFileWorker() override;

    // The program's worker; nothing before there is one and after its end.
    static XPFileWorker *current();

    // Runs `work` on the worker's thread, then `done` on the main thread.
    void run(std::function<void()> work, std::function<void()> done) XP_EXCLUDES(m_mutex);

Q_SIGNALS:
    void workDone(QPrivateSignal); // for itself, to the main thread

private:
    struct Task
    {
        std::function<void()> work, done;
    };
    void runTasks() XP_EXCLUDES(m_mutex);
    void tellDone() XP_EXCLUDES(m_mutex);

    XPMutex m_mutex;
    std::condition_variable_any m_wakeUp;
    std::deque<Task> m_waiting XP_GUARDED_BY(m_mutex);
    std::deque<std::function<void()>> m_done XP_GUARDED_BY(m_mutex);
    bool m_isEnding XP_GUARDED_BY(m_mutex) = false;
    std::thread m_thread;
};
