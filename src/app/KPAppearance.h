#pragma once

#include "KPCommandLine.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>
#include <optional>

// Dark or light, as the desktop says: portal org.freedesktop.portal.Settings, namespace
// org.freedesktop.appearance, key color-scheme; read at the start, before the first window, and
// followed while the program runs. Where there is no portal, or the platform theme has a palette
// of the wanted kind already, Qt's palette stays.
// Threads: main. Waits for the portal a moment at the most.
class KPAppearance : public QObject
{
    Q_OBJECT

public:
    explicit KPAppearance(KPCommandLine::ColourScheme scheme,
                          QDBusConnection bus = QDBusConnection::sessionBus(),
                          QObject *parent = nullptr);

private Q_SLOTS:
    void settingChanged(const QString &area, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void askAgainLater();
    void apply(bool dark);

    QDBusConnection m_bus;
    const QPalette m_original;
    const bool m_desktopHasAStyle; // where it brings none, its palette is Qt's grey
    std::optional<bool> m_isDark;  // what was applied
};
