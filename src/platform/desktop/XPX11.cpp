#include "XPX11.h"

#include <QGuiApplication>
#include <QHash>
#include <memory>
#include <xcb/xcb.h>

template <typename Reply>
static std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

xcb_connection_t *XPX11::connection()
{
    const auto *x11 = qGuiApp == nullptr
                          ? nullptr
                          : qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

// The screen that "DISPLAY" names, on which the windows are.
static int screenNumber()
{
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) == 0)
        return 0;
    std::free(host);
    return screen;
}

uint32_t XPX11::root()
{
    static const int wanted = screenNumber();
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection()));
    for (int i = 0; i < wanted && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    return screens.data->root;
}

uint32_t XPX11::atom(const char *name)
{
    static QHash<QByteArray, uint32_t> known;
    uint32_t &atom = known[name];
    if (atom == 0) {
        const auto cookie =
            xcb_intern_atom(connection(), 0, static_cast<uint16_t>(qstrlen(name)), name);
        if (const auto reply = owned(xcb_intern_atom_reply(connection(), cookie, nullptr)))
            atom = reply->atom;
    }
    return atom;
}

uint32_t XPX11::ownerOf(const char *selection)
{
    const auto cookie = xcb_get_selection_owner(connection(), atom(selection));
    const auto reply = owned(xcb_get_selection_owner_reply(connection(), cookie, nullptr));
    return reply ? reply->owner : 0;
}

bool XPX11::isOurs(uint32_t window)
{
    const xcb_setup_t *setup = xcb_get_setup(connection());
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

QList<uint32_t> XPX11::property(uint32_t window, const char *name)
{
    constexpr uint32_t most = 256;
    const auto cookie =
        xcb_get_property(connection(), 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, most);
    const auto reply = owned(xcb_get_property_reply(connection(), cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *values = static_cast<const uint32_t *>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

void XPX11::ask(uint32_t window, const char *what, const std::array<uint32_t, 5> &values)
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(what);
    std::copy(values.begin(), values.end(), event.data.data32);
    xcb_send_event(connection(), 0, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&event));
    xcb_flush(connection());
}
