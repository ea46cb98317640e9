#pragma once

#include "KPDocServices.h"
#include "XPMutex.h"

#include <QObject>
#include <QStringList>
#include <condition_variable>
#include <deque>
#include <thread>

// What document records ask of the application: a thread for the file calls of renames, moves and
// trash, one at a time in the order given, and the window's views.
//
// The destructor finishes the calls that were asked for, so that no file is left half moved; who
// asked is not told any more.
// Threads: lives on the main thread; the calls run on a thread of its own.
class KPAppServices : public QObject, public KPDocServices
{
    Q_OBJECT

public:
    KPAppServices();
    ~KPAppServices() override;

    void revealInLibrary(const QStringList &paths) override;
    void openInfoWindow(const QStringList &paths) override;
    void runFileWork(std::function<void()> work, std::function<void()> done) override;

Q_SIGNALS:
    void revealAsked(const QStringList &paths);
    void infoAsked(const QStringList &paths);
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
