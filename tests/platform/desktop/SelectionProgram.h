#pragma once

#include <QByteArray>
#include <QProcess>
#include <atomic>
#include <thread>
#include <xcb/xcb.h>

// Two programs beside the one under test: an X server, and one that offers something there.

// An X server without a screen that anybody sees.
class VirtualServer
{
public:
    VirtualServer()
    {
        m_server.setProgram(QStringLiteral("Xvfb"));
        m_server.setArguments({QStringLiteral("-displayfd"), QStringLiteral("1"),
                               QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                               // The last client may leave before the next comes.
                               QStringLiteral("-noreset")});
        m_server.start();
        QByteArray said;
        while (!said.contains('\n') && m_server.waitForReadyRead(20'000))
            said += m_server.readAllStandardOutput();
        if (!said.trimmed().isEmpty())
            qputenv("DISPLAY", ":" + said.trimmed());
        m_isThere = said.contains('\n');
    }
    ~VirtualServer()
    {
        m_server.kill();
        m_server.waitForFinished();
        qunsetenv("DISPLAY");
    }
    bool isThere() const { return m_isThere; }

private:
    QProcess m_server;
    bool m_isThere = false;
};

// Another program: owns a selection, and answers each request as the test says.
class SelectionProgram
{
public:
    enum class Manner { Gives, Pieces, DiesInPieces, Refuses, Silent, SavesFile };
    SelectionProgram(const char *selection, Manner manner, const QByteArray &bytes)
        : m_manner(manner), m_bytes(bytes), m_connection(xcb_connect(nullptr, nullptr))
    {
        const auto *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom("XdndDirectSave0"),
                            atom("text/plain"), 8, 9, "promise.x");
        xcb_set_selection_owner(m_connection, window, atom(selection), XCB_CURRENT_TIME);
        std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection),
                                            nullptr)); // until the server knows
        m_thread = std::thread([this] { serve(); });
    }
    ~SelectionProgram()
    {
        m_ends = true;
        xcb_client_message_event_t wake = {};
        wake.response_type = XCB_CLIENT_MESSAGE;
        wake.format = 32;
        wake.window = window;
        xcb_send_event(m_connection, 0, window, 0, reinterpret_cast<const char *>(&wake));
        xcb_flush(m_connection);
        m_thread.join();
        xcb_disconnect(m_connection);
    }
    uint32_t window = 0;

private:
    uint32_t atom(const char *name)
    {
        auto *reply = xcb_intern_atom_reply(
            m_connection,
            xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(qstrlen(name)), name), nullptr);
        const uint32_t atom = reply->atom;
        std::free(reply);
        return atom;
    }
    void put(uint32_t requestor, uint32_t property, const QByteArray &bytes)
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, requestor, property,
                            XCB_ATOM_STRING, 8, static_cast<uint32_t>(bytes.size()),
                            bytes.constData());
    }
    void serve()
    {
        while (auto *event = xcb_wait_for_event(m_connection)) {
            const uint8_t type = event->response_type & 0x7f;
            if (type == XCB_SELECTION_REQUEST)
                answer(*reinterpret_cast<xcb_selection_request_event_t *>(event));
            else if (type == XCB_PROPERTY_NOTIFY)
                goOn(*reinterpret_cast<xcb_property_notify_event_t *>(event));
            std::free(event);
            xcb_flush(m_connection);
            if (m_ends)
                return;
        }
    }
    void answer(const xcb_selection_request_event_t &request)
    {
        if (m_manner == Manner::Silent)
            return;
        xcb_selection_notify_event_t notify = {};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.requestor = request.requestor;
        notify.selection = request.selection;
        notify.target = request.target;
        notify.property = m_manner == Manner::Refuses ? XCB_NONE : request.property;
        if (m_manner == Manner::Gives)
            put(request.requestor, request.property, m_bytes);
        else if (m_manner == Manner::SavesFile)
            saveFile(request);
        else if (m_manner == Manner::Pieces || m_manner == Manner::DiesInPieces)
            beginPieces(request);
        xcb_send_event(m_connection, 0, request.requestor, 0,
                       reinterpret_cast<const char *>(&notify));
    }
    void saveFile(const xcb_selection_request_event_t &request)
    {
        auto *url = xcb_get_property_reply(
            m_connection,
            xcb_get_property(m_connection, 0, window, atom("XdndDirectSave0"), 0, 0, 1000),
            nullptr);
        const QByteArray wanted(static_cast<const char *>(xcb_get_property_value(url)),
                                xcb_get_property_value_length(url));
        std::free(url);
        put(request.requestor, request.property, wanted == "file:///wanted" ? m_bytes : "E");
    }
    void beginPieces(const xcb_selection_request_event_t &request)
    {
        const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection, request.requestor, XCB_CW_EVENT_MASK, &mask);
        const auto size = static_cast<uint32_t>(m_bytes.size());
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor,
                            request.property, atom("INCR"), 32, 1, &size);
        m_property = request.property;
        m_at = 0;
    }
    void goOn(const xcb_property_notify_event_t &notice)
    {
        if (notice.state != XCB_PROPERTY_DELETE || notice.atom != m_property)
            return;
        if (m_manner == Manner::DiesInPieces && m_at > 0) {
            xcb_destroy_window(m_connection, window);
            return;
        }
        const QByteArray piece = m_bytes.mid(m_at, 100'000);
        put(notice.window, m_property, piece);
        m_at += piece.size();
    }

    const Manner m_manner;
    const QByteArray m_bytes;
    xcb_connection_t *m_connection;
    std::thread m_thread;
    std::atomic<bool> m_ends = false;
    uint32_t m_property = 0;
    qsizetype m_at = 0;
};
