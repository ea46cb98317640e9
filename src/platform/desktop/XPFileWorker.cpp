#include "XPFileWorker.h"

static XPFileWorker *theWorker = nullptr;

XPFileWorker::XPFileWorker()
{
    connect(this, &XPFileWorker::workDone, this, &XPFileWorker::tellDone, Qt::QueuedConnection);
    m_thread = std::thread([this] { runTasks(); });
    if (theWorker == nullptr)
        theWorker = this;
}

XPFileWorker::~XPFileWorker()
{
    if (theWorker == this)
        theWorker = nullptr;
    {
        const XPLocker lock(m_mutex);
        m_isEnding = true;
    }
    m_wakeUp.notify_one();
    m_thread.join();
}

XPFileWorker *XPFileWorker::current()
{
    return theWorker;
}

void XPFileWorker::run(std::function<void()> work, std::function<void()> done)
{
    {
        const XPLocker lock(m_mutex);
        m_waiting.push_back({std::move(work), std::move(done)});
    }
    m_wakeUp.notify_one();
}

// The thread.
void XPFileWorker::runTasks()
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

void XPFileWorker::tellDone()
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
