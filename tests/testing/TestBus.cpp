#include "TestBus.h"

TestBus::TestBus()
{
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"),
                    QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
    if (m_daemon.waitForStarted() && m_daemon.waitForReadyRead())
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

TestBus::~TestBus()
{
    for (const QString &name : std::as_const(m_names))
        QDBusConnection::disconnectFromBus(name);
    m_daemon.kill();
    m_daemon.waitForFinished();
}

QDBusConnection TestBus::connect(const char *name)
{
    // Qt keeps connections by name for the process.
    const QString unique =
        QStringLiteral("%1-%2-%3")
            .arg(QString::fromLatin1(name), QString::number(m_daemon.processId()),
                 QString::number(m_names.size()));
    m_names.append(unique);
    return QDBusConnection::connectToBus(m_address, unique);
}
