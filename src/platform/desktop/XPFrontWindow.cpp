#include "XPFrontWindow.h"

#include "XPX11.h"

#include <QScreen>
#include <QWindow>
#include <memory>
#include <xcb/xcb.h>

static constexpr const char *activeWindow = "_NET_ACTIVE_WINDOW";

static uint32_t active()
{
    return XPX11::connection() == nullptr ? 0
                                          : XPX11::property(XPX11::root(), activeWindow).value(0);
}

std::optional<XPFrontWindow> XPFrontWindow::ofAnotherProgram()
{
    const uint32_t window = active();
    if (window == 0 || XPX11::isOurs(window))
        return {};
    return XPFrontWindow(window);
}

// In the server's pixels, on the root window.
static QRect placeOf(uint32_t window)
{
    xcb_connection_t *connection = XPX11::connection();
    const auto size = xcb_get_geometry(connection, window);
    const auto corner = xcb_translate_coordinates(connection, window, XPX11::root(), 0, 0);
    const std::unique_ptr<xcb_get_geometry_reply_t, decltype(&std::free)> geometry(
        xcb_get_geometry_reply(connection, size, nullptr), &std::free);
    const std::unique_ptr<xcb_translate_coordinates_reply_t, decltype(&std::free)> at(
        xcb_translate_coordinates_reply(connection, corner, nullptr), &std::free);
    if (!geometry || !at)
        return {};
    return {at->dst_x, at->dst_y, geometry->width, geometry->height};
}

bool XPFrontWindow::isFullScreen(const QScreen &screen)
{
    const uint32_t window = active();
    if (window == 0 || XPX11::isOurs(window) ||
        !XPX11::property(window, "_NET_WM_STATE").contains(XPX11::atom("_NET_WM_STATE_FULLSCREEN")))
        return false;
    // Screens keep their corner in the server's pixels; only their size is scaled.
    const QRect points = screen.geometry();
    const QRect pixels(points.topLeft(), points.size() * screen.devicePixelRatio());
    return placeOf(window).intersects(pixels);
}

bool XPFrontWindow::isChangeNotice(const void *event)
{
    const auto *notice = static_cast<const xcb_property_notify_event_t *>(event);
    return XPX11::connection() != nullptr &&
           (notice->response_type & 0x7f) == XCB_PROPERTY_NOTIFY &&
           notice->window == XPX11::root() && notice->atom == XPX11::atom(activeWindow);
}

// As the user's own wish: not one that the window manager would keep from taking the focus.
static void giveKeyboardTo(uint32_t window)
{
    constexpr uint32_t byUser = 2;
    XPX11::ask(window, activeWindow, {byUser, XCB_CURRENT_TIME, 0, 0, 0});
}

void XPFrontWindow::activate() const
{
    if (XPX11::connection() != nullptr)
        giveKeyboardTo(m_window);
}

void XPFrontWindow::take(QWindow &window)
{
    window.requestActivate();
    if (XPX11::connection() != nullptr)
        giveKeyboardTo(static_cast<uint32_t>(window.winId()));
}
