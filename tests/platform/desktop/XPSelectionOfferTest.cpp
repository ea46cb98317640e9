#include "XPSelectionOffer.h"

#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>
#include <map>
#include <thread>
#include <xcb/xcb.h>

using Kind = XPError::Kind;
using namespace std::chrono_literals;

namespace {

// An X server without a screen that anybody sees.
class Server
{
public:
    Server()
    {
        m_server.setProgram(QStringLiteral("Xvfb"));
        m_server.setArguments({QStringLiteral("-displayfd"), QStringLiteral("1"),
                               QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        m_server.start();
        QByteArray said;
        while (!said.contains('\n') && m_server.waitForReadyRead(20'000))
            said += m_server.readAllStandardOutput();
        if (!said.trimmed().isEmpty())
            qputenv("DISPLAY", ":" + said.trimmed());
        m_isThere = said.contains('\n');
    }
    ~Server()
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
class Program
{
public:
    enum class Manner { Gives, Pieces, DiesInPieces, Refuses, Silent, SavesFile };
    Program(const char *selection, Manner manner, const QByteArray &bytes)
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
    ~Program()
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

using Manner = Program::Manner;

class SelectionOffer : public testing::Test
{
protected:
    static void SetUpTestSuite() { server = new Server; }
    static void TearDownTestSuite() { delete server; }
    void SetUp() override
    {
        if (!server->isThere())
            GTEST_SKIP() << "no Xvfb here";
    }
    // What comes, or the kind of the failure as a number.
    static QByteArray read(Manner manner, const QByteArray &bytes)
    {
        const Program program("CLIPBOARD", manner, bytes);
        XPSelectionOffer offer({}, {QStringLiteral("image/png")});
        if (manner == Manner::Silent)
            offer.setPatience(1ms);
        const auto answer = offer.read(QStringLiteral("image/png"));
        if (answer)
            return *answer;
        EXPECT_FALSE(offer.read(QStringLiteral("image/png"))); // not asked again
        return "error " + QByteArray::number(static_cast<int>(answer.error().kind));
    }
    static QByteArray failed(Kind kind)
    {
        return "error " + QByteArray::number(static_cast<int>(kind));
    }
    static Server *server;
};

Server *SelectionOffer::server = nullptr;

} // namespace

TEST_F(SelectionOffer, IsReadInOneOrInPiecesAndSurvivesItsSource)
{
    QByteArray large(3'000'001, 'x');
    large[2'999'999] = 'y';
    EXPECT_EQ(read(Manner::Gives, "bytes"), "bytes");
    EXPECT_EQ(read(Manner::Pieces, large), large);
    EXPECT_EQ(read(Manner::Refuses, "bytes"), "");
    EXPECT_EQ(read(Manner::DiesInPieces, large), failed(Kind::NotFound));
    EXPECT_EQ(read(Manner::Silent, "bytes"), failed(Kind::Io));
    XPSelectionOffer nobody({}, {});
    EXPECT_EQ(nobody.read(QStringLiteral("image/png")).error().kind, Kind::NotFound);
}

TEST_F(SelectionOffer, IsGivenUpWhenItIsCancelled)
{
    const Program program("CLIPBOARD", Manner::Silent, {});
    XPSelectionOffer offer({}, {});
    std::thread stopper([&offer] { offer.cancel(); });
    EXPECT_EQ(offer.read(QStringLiteral("image/png")).error().kind, Kind::Cancelled);
    stopper.join();
}

TEST_F(SelectionOffer, HasItsSourceWriteAFile)
{
    using Answer = XPDataOffer::Answer;
    struct Row
    {
        QByteArray says;
        Answer answer;
    };
    for (const Row &row : {Row{"S", Answer::Writes}, Row{"F", Answer::WantsToBeRead},
                           Row{"E", Answer::Refuses}, Row{"", Answer::Refuses}}) {
        const Program program("XdndSelection", Manner::SavesFile, row.says);
        XPSelectionOffer offer({"XdndSelection", program.window, 0},
                               {XPDataOffer::directSaveFormat, XPDataOffer::anyBytesFormat});
        EXPECT_EQ(offer.promisedName(), QByteArray("promise.x"));
        const auto answer = offer.save("file:///wanted");
        ASSERT_TRUE(answer);
        EXPECT_EQ(*answer, row.answer) << row.says.toStdString();
    }
}
