#pragma once

#include "KPPool.h"
#include "PropertyValue.h"
#include "XPMutex.h"

#include <functional>
#include <memory>
#include <variant>

// What a shared object must derive from to be the object of a notification.
class XPNotificationObject
{
public:
    XPNotificationObject() = default;
    virtual ~XPNotificationObject() = default;
    XPNotificationObject(const XPNotificationObject &) = delete;
    XPNotificationObject &operator=(const XPNotificationObject &) = delete;
};

struct XPNotification
{
    // Nothing, a path, a value, or an object compared by identity.
    using Object =
        std::variant<std::monostate, QString, PropertyValue, std::shared_ptr<XPNotificationObject>>;

    QString name;
    Object object;
    PropertyValue::Dictionary userInfo;
};

// Keeps an observer registered for as long as it lives. After it is gone (or reset) on the main
// thread, the observer is not called again. Move-only; destroy it on the main thread.
class XPObservation
{
public:
    XPObservation() = default;
    explicit XPObservation(std::function<void()> cancel) : m_cancel(std::move(cancel)) {}
    ~XPObservation() { reset(); }
    XPObservation(XPObservation &&other) noexcept : m_cancel(std::exchange(other.m_cancel, {})) {}
    XPObservation &operator=(XPObservation &&other) noexcept
    {
        reset();
        m_cancel = std::exchange(other.m_cancel, {});
        return *this;
    }
    void reset()
    {
        if (auto cancel = std::exchange(m_cancel, {}))
            cancel();
    }

private:
    std::function<void()> m_cancel;
};

// Changes carried between subsystems by name.
//
// Posted on the main thread (that of QCoreApplication; without one, every thread), a
// notification is delivered before post() returns; posted elsewhere, it is queued to the main
// thread in the order posted, and nobody waits. Observers are called on the main thread, in the
// order registered, with no lock held: they may post, add and remove observers.
class XPNotificationCenter
{
public:
    using Observer = std::function<void(const XPNotification &)>;

    static XPNotificationCenter &instance();

    // Any thread.
    void post(const QString &name, const XPNotification::Object &object = {},
              const PropertyValue::Dictionary &userInfo = {});

    // Notifications of that name; with an object (not monostate), only those about it.
    [[nodiscard]] XPObservation addObserver(const QString &name, Observer observer,
                                            const XPNotification::Object &object = {});

private:
    XPNotificationCenter();
    ~XPNotificationCenter();
    struct Private;
    std::unique_ptr<Private> d;
};
