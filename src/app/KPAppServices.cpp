#include "KPAppServices.h"

KPAppServices::KPAppServices()
{
    connect(this, &KPAppServices::workDone, this, &KPAppServices::tellDone, Qt::QueuedConnection);
    m_thread = std::thread([this] { runTasks(); });
}

KPAppServices::~KPAppServices()
{
    {
        const XPLocker lock(m_mutex);
        m_isEnding = true;
    }
    m_wakeUp.notify_one();
    m_thread.join();
}

void KPAppServices::revealInLibrary(const QStringList &paths)
{
    Q_EMIT revealAsked(paths);
}

void KPAppServices::openInfoWindow(const QStringList &paths)
{
    Q_EMIT infoAsked(paths);
}

void KPAppServices::runFileWork(std::function<void()> work, std::function<void()> done)
{
    {
        const XPLocker lock(m_mutex);
        m_waiting.push_back({std::move(work), std::move(done)});
    }
    m_wakeUp.notify_one();
}

// The thread.
void KPAppServices::runTasks()
{
    XPLocker lock(m_mutex);
    for (;;) {
        while (m_waiting.empty() && !m_isEnding)
            m_wakeUp.wait(lock);
        if (m_waiting.empty())
            return;
        Task task = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        task.work();
        task.work = nullptr; // with what it holds, here where it ran
        lock.lock();
        m_done.push_back(std::move(task.done));
        Q_EMIT workDone(QPrivateSignal());
    }
}

void KPAppServices::tellDone()
{
    std::function<void()> done;
    {
        const XPLocker lock(m_mutex);
        if (m_done.empty())
            return;
        done = std::move(m_done.front());
        m_done.pop_front();
    }
    done();
}
