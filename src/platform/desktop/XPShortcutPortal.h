#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QKeySequence>
#include <QObject>
#include <functional>

// A session of the portal org.freedesktop.portal.GlobalShortcuts with one shortcut in it.
//
// Asks without waiting, in its three steps: a session, the shortcut in it, and then its presses.
// Threads: main. The session ends with this object.
class XPShortcutPortal : public QObject
{
    Q_OBJECT

public:
    XPShortcutPortal(QDBusConnection bus, const QKeySequence &key, const QString &description);
    ~XPShortcutPortal() override;

    // As the portal spells a key, by the specification of shortcuts of freedesktop.org:
    // "CTRL+ALT+m".
    static QString trigger(const QKeySequence &key);

Q_SIGNALS:
    void refused(); // there is no such portal, or it or the user said no
    void pressed(const QString &activationToken);

private Q_SLOTS:
    void answered(uint response, const QVariantMap &results);
    void activated(const QDBusObjectPath &session, const QString &shortcut, qulonglong timestamp,
                   const QVariantMap &options);

private:
    void createSession();
    void bind();
    void request(const QString &method, const QVariantList &arguments, QVariantMap options);

    QDBusConnection m_bus;
    const QKeySequence m_key;
    const QString m_description;
    QDBusObjectPath m_session; // empty before there is one
};
