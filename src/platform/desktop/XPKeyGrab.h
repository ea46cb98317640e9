#pragma once

#include <QAbstractNativeEventFilter>
#include <QKeySequence>
#include <QList>
#include <functional>

struct xcb_connection_t;

// A key that the X server gives to this program, whichever window has the focus: a passive grab
// on the root window, with and without the lock keys. Threads: main. Let go of by the destructor.
class XPKeyGrab : public QAbstractNativeEventFilter
{
public:
    // False: this is no X11 session, or no such key on the keyboard, or another program has it.
    static bool isPossible();
    XPKeyGrab(const QKeySequence &key, std::function<void()> pressed);
    ~XPKeyGrab() override;
    bool isGrabbed() const { return !m_codes.isEmpty(); }

private:
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

    xcb_connection_t *m_connection;
    uint32_t m_root = 0;
    uint16_t m_modifiers = 0;
    QList<uint8_t> m_codes;
    const std::function<void()> m_pressed;
};
