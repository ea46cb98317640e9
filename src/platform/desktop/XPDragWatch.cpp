#include "XPDragWatch.h"

#include "XPX11.h"

#include <QGuiApplication>
#include <chrono>
#include <memory>
#include <xcb/xfixes.h>

using namespace std::chrono_literals;

static constexpr auto lookInterval = 50ms;
static constexpr const char *selection = "XdndSelection";

bool XPDragWatch::isPossible()
{
    return XPX11::connection() != nullptr;
}

XPDragWatch::XPDragWatch(QObject *parent) : QObject(parent)
{
    m_look.setInterval(lookInterval);
    connect(&m_look, &QTimer::timeout, this, [this] {
        if (isButtonDown())
            return;
        m_look.stop();
        Q_EMIT ended();
    });
    xcb_connection_t *connection = XPX11::connection();
    if (connection == nullptr)
        return;
    const xcb_query_extension_reply_t *fixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (fixes == nullptr || fixes->present == 0)
        return;
    std::free(xcb_xfixes_query_version_reply(
        connection,
        xcb_xfixes_query_version(connection, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION),
        nullptr));
    m_notice = fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    xcb_xfixes_select_selection_input(connection, XPX11::root(), XPX11::atom(selection),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    xcb_flush(connection);
    qGuiApp->installNativeEventFilter(this);
}

XPDragWatch::~XPDragWatch()
{
    if (m_notice >= 0 && XPX11::connection() != nullptr)
        xcb_xfixes_select_selection_input(XPX11::connection(), XPX11::root(),
                                          XPX11::atom(selection), 0);
}

bool XPDragWatch::isButtonDown()
{
    xcb_connection_t *connection = XPX11::connection();
    const std::unique_ptr<xcb_query_pointer_reply_t, decltype(&std::free)> pointer(
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, XPX11::root()), nullptr),
        &std::free);
    constexpr unsigned buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    return pointer && (pointer->mask & buttons) != 0;
}

bool XPDragWatch::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_xfixes_selection_notify_event_t *>(message);
    if ((event->response_type & 0x7f) != m_notice || event->selection != XPX11::atom(selection) ||
        event->owner == XCB_NONE || XPX11::isOurs(event->owner) || !isButtonDown())
        return false;
    const bool isNew = !m_look.isActive();
    m_look.start();
    if (isNew)
        Q_EMIT began();
    return false;
}
