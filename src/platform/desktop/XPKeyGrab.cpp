#include "XPKeyGrab.h"

#include "XPX11.h"

#include <QGuiApplication>
#include <array>
#include <memory>
#include <xcb/xcb.h>

// The lock keys whose state must not matter: caps lock, num lock where it usually is, both.
static constexpr std::array<uint16_t, 4> locks = {0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                                  XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};
static constexpr uint16_t lockMask = XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2;

// The symbol of X for a key; 0: none that we grab. Latin-1 characters are their own symbols.
static uint32_t symbolOf(Qt::Key key)
{
    static constexpr uint32_t firstFunctionKey = 0xffbe; // XK_F1
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return firstFunctionKey + static_cast<uint32_t>(key - Qt::Key_F1);
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return static_cast<uint32_t>(key - Qt::Key_A) + 'a';
    return key >= Qt::Key_Space && key <= Qt::Key_ydiaeresis ? static_cast<uint32_t>(key) : 0;
}

static uint16_t modifiersOf(Qt::KeyboardModifiers modifiers)
{
    unsigned mask = 0;
    if (modifiers.testFlag(Qt::ShiftModifier))
        mask |= XCB_MOD_MASK_SHIFT;
    if (modifiers.testFlag(Qt::ControlModifier))
        mask |= XCB_MOD_MASK_CONTROL;
    if (modifiers.testFlag(Qt::AltModifier))
        mask |= XCB_MOD_MASK_1;
    if (modifiers.testFlag(Qt::MetaModifier))
        mask |= XCB_MOD_MASK_4;
    return static_cast<uint16_t>(mask);
}

// The keys of the keyboard that carry the symbol without shift.
static QList<uint8_t> codesOf(xcb_connection_t *connection, uint32_t symbol)
{
    const xcb_setup_t *setup = xcb_get_setup(connection);
    const auto count = static_cast<uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(connection, setup->min_keycode, count);
    const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, decltype(&std::free)> reply(
        xcb_get_keyboard_mapping_reply(connection, cookie, nullptr), &std::free);
    QList<uint8_t> codes;
    if (!reply || reply->keysyms_per_keycode == 0)
        return codes;
    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    for (int number = 0; number < count; ++number) {
        if (symbols[number * reply->keysyms_per_keycode] == symbol)
            codes.append(static_cast<uint8_t>(setup->min_keycode + number));
    }
    return codes;
}

bool XPKeyGrab::isPossible()
{
    return XPX11::connection() != nullptr;
}

XPKeyGrab::XPKeyGrab(const QKeySequence &key, std::function<void()> pressed)
    : m_connection(XPX11::connection()), m_pressed(std::move(pressed))
{
    const uint32_t symbol = key.isEmpty() ? 0 : symbolOf(key[0].key());
    if (m_connection == nullptr || symbol == 0)
        return;
    m_root = XPX11::root();
    m_modifiers = modifiersOf(key[0].keyboardModifiers());
    for (const uint8_t code : codesOf(m_connection, symbol)) {
        bool isOurs = true;
        for (const uint16_t lock : locks) {
            const auto cookie = xcb_grab_key_checked(
                m_connection, 1, m_root, static_cast<uint16_t>(m_modifiers | lock), code,
                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            if (auto *error = xcb_request_check(m_connection, cookie)) {
                isOurs = false;
                std::free(error);
            }
        }
        if (isOurs)
            m_codes.append(code);
    }
    if (isGrabbed())
        qGuiApp->installNativeEventFilter(this);
}

XPKeyGrab::~XPKeyGrab()
{
    for (const uint8_t code : std::as_const(m_codes)) {
        for (const uint16_t lock : locks)
            xcb_ungrab_key(m_connection, code, m_root, static_cast<uint16_t>(m_modifiers | lock));
    }
    if (m_connection != nullptr)
        xcb_flush(m_connection);
}

bool XPKeyGrab::nativeEventFilter(const QByteArray &type, void *message, qintptr *result)
{
    Q_UNUSED(result)
    if (type != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_key_press_event_t *>(message);
    // Only a few of the state's bits are modifiers; pointer buttons lie above.
    constexpr uint16_t modifierMask = 0xff;
    if ((event->response_type & 0x7f) != XCB_KEY_PRESS || !m_codes.contains(event->detail) ||
        (event->state & modifierMask & ~lockMask) != m_modifiers)
        return false;
    m_pressed();
    return true;
}
