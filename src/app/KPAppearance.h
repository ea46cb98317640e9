#pragma once

#include "KPCommandLine.h"

#include <QDBusVariant>
#include <QObject>
#include <QPalette>

// Dark or light, as the desktop says: portal org.freedesktop.portal.Settings, namespace
// org.freedesktop.appearance, key color-scheme. Where there is no portal, or the platform theme
// has a dark palette of its own already, Qt's palette stays. Threads: main.
class KPAppearance : public QObject
{
    Q_OBJECT

public:
    // Asks without waiting; the answer, and each later change, is applied when it comes.
    explicit KPAppearance(KPCommandLine::ColourScheme scheme, QObject *parent = nullptr);

    static QPalette darkPalette();

private Q_SLOTS:
    void settingChanged(const QString &area, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void apply(bool dark);

    const QPalette m_original;
    bool m_dark = false; // what we applied
};
