#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>

// A D-Bus daemon of the test's own, gone with this object, and connections to it.
class TestBus
{
public:
    TestBus();
    ~TestBus();
    TestBus(const TestBus &) = delete;
    TestBus &operator=(const TestBus &) = delete;

    // Connections of different names are different peers.
    QDBusConnection connect(const char *name);
    QString address() const { return m_address; } // empty: there is no daemon

private:
    QProcess m_daemon;
    QString m_address;
    QStringList m_names;
};
