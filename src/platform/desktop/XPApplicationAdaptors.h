#pragma once

#include "XPApplicationBus.h"

#include <QDBusAbstractAdaptor>

// The two D-Bus interfaces of XPApplicationBus, which says what they mean. Threads: main.
class XPApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit XPApplicationAdaptor(XPApplicationBus *bus) : QDBusAbstractAdaptor(bus), m_bus(bus) {}

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface
    void Activate(const QVariantMap &platformData)
    {
        Q_EMIT m_bus->activateAsked(XPActivation::fromPlatformData(platformData));
    }
    void Open(const QStringList &uris, const QVariantMap &platformData)
    {
        m_bus->takeOpen(uris, platformData);
    }
    void ActivateAction(const QString &name, const QVariantList &parameters,
                        const QVariantMap &platformData)
    {
        m_bus->takeAction(name, parameters, platformData);
    }
    // NOLINTEND(readability-identifier-naming)

private:
    XPApplicationBus *m_bus;
};

class XPServicesAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.brindle.murn.Services")

public:
    explicit XPServicesAdaptor(XPApplicationBus *bus) : QDBusAbstractAdaptor(bus), m_bus(bus) {}

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface
    // Searches for the text.
    void SearchInMurn(const QString &text)
    {
        m_bus->takeAction(XPApplicationBus::searchAction, {text}, {});
    }
    // Files what the clipboard holds, once the user agrees.
    void CreateFiledFile() { m_bus->takeAction(XPApplicationBus::fileAction, {}, {}); }
    // NOLINTEND(readability-identifier-naming)

private:
    XPApplicationBus *m_bus;
};
