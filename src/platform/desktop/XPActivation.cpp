#include "XPActivation.h"

#include "XPX11.h"

#include <QGuiApplication>
#include <QWindow>
#include <array>
#include <optional>
#include <xcb/xcb.h>

static const QString tokenKey = QStringLiteral("activation-token");
static const QString startupIdKey = QStringLiteral("desktop-startup-id");
static constexpr qsizetype longestText = 1024; // of what another process says

static QString bounded(const QVariant &value)
{
    const QString text = value.typeId() == QMetaType::QString ? value.toString() : QString();
    return text.size() > longestText || text.contains(QChar::Null) ? QString() : text;
}

XPActivation XPActivation::fromEnvironment()
{
    return {bounded(qEnvironmentVariable("XDG_ACTIVATION_TOKEN")),
            bounded(qEnvironmentVariable("DESKTOP_STARTUP_ID"))};
}

XPActivation XPActivation::fromPlatformData(const QVariantMap &data)
{
    return {bounded(data.value(tokenKey)), bounded(data.value(startupIdKey))};
}

QVariantMap XPActivation::platformData() const
{
    QVariantMap data;
    if (!token.isEmpty())
        data.insert(tokenKey, token);
    if (!startupId.isEmpty())
        data.insert(startupIdKey, startupId);
    return data;
}

// X11: messages to the root window, by the Extended Window Manager Hints and the Startup
// Notification Protocol.
namespace {

class X11Messages
{
public:
    explicit X11Messages(xcb_connection_t *connection)
        : m_connection(connection), m_root(XPX11::root())
    {
    }

    void activate(xcb_window_t window, xcb_timestamp_t time) const
    {
        xcb_client_message_event_t event = message(window, "_NET_ACTIVE_WINDOW", 32);
        event.data.data32[0] = 1; // asked for by an application
        event.data.data32[1] = time;
        send(event, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        xcb_flush(m_connection);
    }

    // In pieces of 20 bytes, the last one with its NUL.
    void endStartup(const QString &id) const
    {
        QByteArray quoted = id.toUtf8();
        quoted.replace('\\', "\\\\").replace('"', "\\\"");
        const QByteArray text = "remove: ID=\"" + quoted + "\"" + QByteArray(1, '\0');
        const xcb_window_t sender = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, sender, m_root, -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        const char *type = "_NET_STARTUP_INFO_BEGIN";
        for (qsizetype at = 0; at < text.size(); at += 20) {
            xcb_client_message_event_t event = message(sender, type, 8);
            const QByteArray piece = text.mid(at, 20);
            std::copy(piece.begin(), piece.end(), event.data.data8);
            send(event, XCB_EVENT_MASK_PROPERTY_CHANGE);
            type = "_NET_STARTUP_INFO";
        }
        xcb_destroy_window(m_connection, sender);
        xcb_flush(m_connection);
    }

private:
    xcb_client_message_event_t message(xcb_window_t window, const char *type, uint8_t format) const
    {
        xcb_client_message_event_t event = {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = format;
        event.window = window;
        const auto cookie =
            xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(qstrlen(type)), type);
        if (auto *reply = xcb_intern_atom_reply(m_connection, cookie, nullptr)) {
            event.type = reply->atom;
            std::free(reply);
        }
        return event;
    }
    void send(const xcb_client_message_event_t &event, uint32_t mask) const
    {
        xcb_send_event(m_connection, 0, m_root, mask, reinterpret_cast<const char *>(&event));
    }

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
};

} // namespace

// The moment at which the user asked for it, which ends an id ("…_TIME123").
static xcb_timestamp_t timeOf(const QString &startupId)
{
    const qsizetype at = startupId.lastIndexOf(QStringLiteral("_TIME"));
    return at < 0 ? XCB_CURRENT_TIME : startupId.mid(at + 5).toUInt();
}

void XPActivation::bringToFront(QWindow *window) const
{
    if (window->windowStates().testFlag(Qt::WindowMinimized))
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
    window->setVisible(true);
    window->raise();
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // where Qt's Wayland looks for it
    window->requestActivate();
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr || startupId.isEmpty())
        return;
    const X11Messages messages(x11->connection());
    messages.activate(static_cast<xcb_window_t>(window->winId()), timeOf(startupId));
    messages.endStartup(startupId);
}
