#pragma once

#include <QString>
#include <QVariantMap>

class QWindow;

// Why a window may come to the front: what the desktop handed to the program that was started, for
// the one that is running already. The token is that of xdg-activation, the id that of the Startup
// Notification Protocol, which X11 uses; both of freedesktop.org. Either may be empty.
// Threads: main.
struct XPActivation
{
    QString token;
    QString startupId;

    // Of this process. Call before QGuiApplication is made, which takes them out.
    static XPActivation fromEnvironment();
    // As org.freedesktop.Application passes them on. Anything else in there is left alone.
    static XPActivation fromPlatformData(const QVariantMap &data);
    QVariantMap platformData() const;

    // Shows the window, in front and with the focus as far as the desktop permits, and ends the
    // desktop's sign that a program is being started.
    void bringToFront(QWindow *window) const;
};
