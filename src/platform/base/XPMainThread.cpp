#include "XPMainThread.h"

#include "XPMutex.h"
#include "XPWakeUp.h"

#include <QCoreApplication>
#include <deque>

namespace {

// One function a wake-up: where one of them opens a dialog, the dialog's event loop calls the rest.
class Calls
{
public:
    void add(std::function<void()> call) XP_EXCLUDES(m_mutex)
    {
        {
            const XPLocker locker(m_mutex);
            m_waiting.push_back(std::move(call));
        }
        m_wakeUp.wake();
    }

private:
    void callNext() XP_EXCLUDES(m_mutex)
    {
        std::function<void()> call;
        {
            const XPLocker locker(m_mutex);
            if (m_waiting.empty())
                return;
            call = std::move(m_waiting.front());
            m_waiting.pop_front();
            if (!m_waiting.empty())
                m_wakeUp.wake();
        }
        call();
    }

    XPMutex m_mutex;
    std::deque<std::function<void()>> m_waiting XP_GUARDED_BY(m_mutex);
    XPWakeUp m_wakeUp{[this] { callNext(); }};
};

} // namespace

void xpOnMainThread(std::function<void()> call)
{
    if (QCoreApplication::instance() == nullptr)
        return;
    static auto &calls = *new Calls; // for the process: threads may outlive main()
    calls.add(std::move(call));
}
