#include "XPLauncherBadge.h"

#include "XPApplicationBus.h"

#include <QDBusMessage>

void XPLauncherBadge::show(int number)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    auto update = QDBusMessage::createSignal(XPApplicationBus::objectPath,
                                             QStringLiteral("com.canonical.Unity.LauncherEntry"),
                                             QStringLiteral("Update"));
    const QVariantMap properties = {{QStringLiteral("count"), static_cast<qint64>(number)},
                                    {QStringLiteral("count-visible"), number > 0}};
    update << QStringLiteral("application://%1.desktop").arg(XPApplicationBus::serviceName)
           << properties;
    bus.send(update);
}
