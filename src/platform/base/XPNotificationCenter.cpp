#include "XPNotificationCenter.h"

#include "XPWakeUp.h"

#include <QCoreApplication>
#include <QHash>
#include <QThread>
#include <deque>

using Observer = XPNotificationCenter::Observer;

namespace {

struct Registration
{
    Observer observer;
    XPNotification::Object object;
    std::atomic<bool> cancelled = false; // also seen by a delivery that is under way

    bool isAbout(const XPNotification &notification) const
    {
        return std::holds_alternative<std::monostate>(object) || object == notification.object;
    }
};

using Registrations = QList<std::shared_ptr<Registration>>;

} // namespace

struct XPNotificationCenter::Private
{
    XPMutex mutex;
    QHash<QString, Registrations> registrations XP_GUARDED_BY(mutex);
    std::deque<XPNotification> queue XP_GUARDED_BY(mutex); // from other threads
    std::unique_ptr<XPWakeUp> wakeUp XP_GUARDED_BY(mutex); // made when first needed

    void deliver(const XPNotification &notification) XP_EXCLUDES(mutex);
    void enqueue(XPNotification notification) XP_EXCLUDES(mutex);
    void deliverQueue() XP_EXCLUDES(mutex);
    void cancel(const QString &name, const std::shared_ptr<Registration> &registration)
        XP_EXCLUDES(mutex);
};

void XPNotificationCenter::Private::deliver(const XPNotification &notification)
{
    Registrations observers;
    {
        const XPLocker locker(mutex);
        observers = registrations.value(notification.name);
    }
    for (const auto &registration : observers) {
        if (!registration->cancelled && registration->isAbout(notification))
            registration->observer(notification);
    }
}

void XPNotificationCenter::Private::enqueue(XPNotification notification)
{
    const XPLocker locker(mutex);
    queue.push_back(std::move(notification));
    if (!wakeUp)
        wakeUp = std::make_unique<XPWakeUp>([this] { deliverQueue(); });
    wakeUp->wake();
}

// One at a time, so that an observer which spins the event loop keeps the order.
void XPNotificationCenter::Private::deliverQueue()
{
    for (;;) {
        XPNotification next;
        {
            const XPLocker locker(mutex);
            if (queue.empty())
                return;
            next = std::move(queue.front());
            queue.pop_front();
        }
        deliver(next);
    }
}

void XPNotificationCenter::Private::cancel(const QString &name,
                                           const std::shared_ptr<Registration> &registration)
{
    registration->cancelled = true;
    const XPLocker locker(mutex);
    const auto found = registrations.find(name);
    if (found == registrations.end())
        return;
    found->removeOne(registration);
    if (found->isEmpty())
        registrations.erase(found);
}

XPNotificationCenter::XPNotificationCenter() : d(std::make_unique<Private>())
{
}

XPNotificationCenter::~XPNotificationCenter() = default;

// Never destroyed: observers may be taken away while the process ends.
XPNotificationCenter &XPNotificationCenter::instance()
{
    static auto &center = *new XPNotificationCenter;
    return center;
}

void XPNotificationCenter::post(const QString &name, const XPNotification::Object &object,
                                const PropertyValue::Dictionary &userInfo)
{
    const QCoreApplication *application = QCoreApplication::instance();
    if (!application || QThread::currentThread() == application->thread())
        d->deliver({name, object, userInfo});
    else
        d->enqueue({name, object, userInfo});
}

XPObservation XPNotificationCenter::addObserver(const QString &name, Observer observer,
                                                const XPNotification::Object &object)
{
    auto registration = std::make_shared<Registration>();
    registration->observer = std::move(observer);
    registration->object = object;
    {
        const XPLocker locker(d->mutex);
        d->registrations[name].append(registration);
    }
    return XPObservation([this, name, registration] { d->cancel(name, registration); });
}
