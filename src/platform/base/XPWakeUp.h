#pragma once

#include <QObject>

#include <atomic>
#include <chrono>
#include <functional>

// Has a function called on the main thread soon: any number of wake() before it make one call.
//
// It carries no data: what is to be done lies under a lock of its owner, which thread-sanitizer
// builds can follow, and Qt's event queue only says that there is something. Needs a
// QCoreApplication, before which it must not be made; without a running event loop nothing is
// called. Threads: make it anywhere, wake() anywhere. Its owner lives for the process.
class XPWakeUp : public QObject
{
public:
    // `delay` after the first wake(), so that a burst of them is one call.
    explicit XPWakeUp(std::function<void()> call, std::chrono::milliseconds delay = {});

    void wake();

protected:
    bool event(QEvent *event) override;

private:
    void fire();

    const std::function<void()> m_call;
    const std::chrono::milliseconds m_delay;
    std::atomic<bool> m_woken = false;
};
