#include "XPWakeUp.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimerEvent>

XPWakeUp::XPWakeUp(std::function<void()> call, std::chrono::milliseconds delay)
    : m_call(std::move(call)), m_delay(delay)
{
    moveToThread(QCoreApplication::instance()->thread());
}

void XPWakeUp::wake()
{
    if (!m_woken.exchange(true))
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

bool XPWakeUp::event(QEvent *event)
{
    if (event->type() == QEvent::User) {
        (void)m_woken.load(); // meets wake(), after which all that its thread made is seen here
        if (m_delay.count() > 0)
            startTimer(m_delay);
        else
            fire();
        return true;
    }
    if (event->type() == QEvent::Timer) {
        killTimer(static_cast<QTimerEvent *>(event)->timerId());
        fire();
        return true;
    }
    return QObject::event(event);
}

// Open for the next wake() before the call: what comes during it is not missed.
void XPWakeUp::fire()
{
    m_woken.exchange(false);
    m_call();
}
