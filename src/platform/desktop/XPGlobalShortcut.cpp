#include "XPGlobalShortcut.h"

#include "XPKeyGrab.h"
#include "XPLog.h"
#include "XPShortcutPortal.h"

XPGlobalShortcut::XPGlobalShortcut(const QString &description, QObject *parent)
    : QObject(parent), m_description(description)
{
}

XPGlobalShortcut::~XPGlobalShortcut() = default;

void XPGlobalShortcut::setKey(const QKeySequence &key)
{
    m_grab.reset();
    m_portal.reset();
    if (key.isEmpty())
        return;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        grab(key);
        return;
    }
    m_portal = std::make_unique<XPShortcutPortal>(bus, key, m_description);
    connect(m_portal.get(), &XPShortcutPortal::pressed, this, &XPGlobalShortcut::pressed);
    connect(m_portal.get(), &XPShortcutPortal::refused, this, [this, key] { grab(key); });
}

void XPGlobalShortcut::grab(const QKeySequence &key)
{
    if (!XPKeyGrab::isPossible()) {
        qCWarning(xpLog) << "this desktop gives no program a key of its own";
        return;
    }
    m_grab = std::make_unique<XPKeyGrab>(key, [this] { Q_EMIT pressed({}); });
    if (!m_grab->isGrabbed())
        qCWarning(xpLog) << "the key belongs to another program, or is not on the keyboard";
}
