#pragma once

#include <QKeySequence>
#include <QObject>
#include <memory>

class XPKeyGrab;
class XPShortcutPortal;

// One key that works whatever program is in front: by the portal
// org.freedesktop.portal.GlobalShortcuts where the desktop has it, else grabbed from the X server.
// Where there is neither (a Wayland desktop without that portal) the key does nothing.
//
// The portal leaves the choice of the key to the user; ours is what it proposes.
// Threads: main. Nothing is registered before setKey().
class XPGlobalShortcut : public QObject
{
    Q_OBJECT

public:
    // `description` is what the desktop's dialog calls it, in the user's language.
    explicit XPGlobalShortcut(const QString &description, QObject *parent = nullptr);
    ~XPGlobalShortcut() override;

    // One key with its modifiers; an empty one lets go of what was registered.
    void setKey(const QKeySequence &key);

Q_SIGNALS:
    void pressed(const QString &activationToken);

private:
    void grab(const QKeySequence &key);

    const QString m_description;
    std::unique_ptr<XPShortcutPortal> m_portal;
    std::unique_ptr<XPKeyGrab> m_grab;
};
