#include "XPURLToPDF.h"

#include "XPFileDescriptor.h"
#include "XPTranslations.h"

#include <QEventLoop>
#include <QTimer>
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <list>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

// Pages of this machine. A browser opens connections ahead on which it says nothing, so that each
// has a thread of its own.
class Server
{
public:
    Server() : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *any = reinterpret_cast<sockaddr *>(&address);
        EXPECT_EQ(::bind(m_socket.get(), any, size), 0);
        EXPECT_EQ(::listen(m_socket.get(), 16), 0);
        EXPECT_EQ(::getsockname(m_socket.get(), any, &size), 0);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { serve(); });
    }
    ~Server()
    {
        ::shutdown(m_socket.get(), SHUT_RDWR);
        m_thread.join();
    }
    QString address(const char *page) const
    {
        return QStringLiteral("http://127.0.0.1:%1/%2").arg(m_port).arg(QLatin1String(page));
    }

private:
    static QByteArray answerTo(const QByteArray &request)
    {
        const QByteArray page = request.split(' ').value(1);
        if (page == "/moved")
            return "HTTP/1.0 302 Found\r\nLocation: /page\r\n\r\n";
        if (page != "/page")
            return "HTTP/1.0 404 Not Found\r\nContent-Type: text/html\r\n\r\n<p>gone";
        return "HTTP/1.0 200 OK\r\nContent-Type: text/html; charset=utf-8\r\n\r\n"
               "<title>Ein  Titel</title><body style='height: 3000px'><p>The words of the page.";
    }
    static void answer(const XPFileDescriptor &caller)
    {
        QByteArray request(4096, '\0');
        const ssize_t got = ::recv(caller.get(), request.data(), 4096, 0);
        const QByteArray answer = answerTo(request.first(std::max<ssize_t>(got, 0)));
        (void)::send(caller.get(), answer.constData(), static_cast<size_t>(answer.size()),
                     MSG_NOSIGNAL);
    }
    void serve() const
    {
        std::list<std::jthread> callers;
        for (;;) {
            XPFileDescriptor caller(::accept(m_socket.get(), nullptr, nullptr));
            if (!caller.isOpen())
                return;
            callers.emplace_back([caller = std::move(caller)] { answer(caller); });
        }
    }

    const XPFileDescriptor m_socket;
    quint16 m_port = 0;
    std::thread m_thread;
};

class Capture : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!XPBrowserProcess::findProgram())
            GTEST_SKIP() << XPBrowserProcess::whatToInstall().toStdString();
    }

    // Nothing: it failed, and `error` says why.
    std::optional<XPURLToPDF::Page> capture(const QString &address,
                                            const XPURLToPDF::Options &options = {})
    {
        XPURLToPDF capture(options);
        std::optional<XPURLToPDF::Page> page;
        error.reset();
        QEventLoop loop; // it gives up by itself
        QObject::connect(&capture, &XPURLToPDF::captured, &loop,
                         [&](const XPURLToPDF::Page &found) {
                             page = found;
                             loop.quit();
                         });
        QObject::connect(&capture, &XPURLToPDF::failed, &loop, [&](const XPError &why) {
            error = why;
            loop.quit();
        });
        capture.start(address);
        loop.exec();
        return page;
    }

    const Server server;
    std::optional<XPError> error;
};

} // namespace

TEST_F(Capture, MakesADocumentOfAPage)
{
    const auto page = capture(server.address("moved"));
    ASSERT_TRUE(page) << error->message.toStdString();
    EXPECT_EQ(page->title, QStringLiteral("Ein Titel"));
    EXPECT_EQ(page->url, server.address("page")) << "where it went";
    EXPECT_TRUE(page->pdf.startsWith("%PDF-"));
    EXPECT_EQ(page->pdf.count("/Type /Page\n"), 1) << "one long page";
    XPURLToPDF::Options options;
    options.paginates = true;
    const auto pages = capture(server.address("page"), options);
    ASSERT_TRUE(pages);
    EXPECT_GT(pages->pdf.count("/Type /Page\n"), 1);
}

TEST_F(Capture, SaysWhyThereIsNone)
{
    XPTranslations::install(QLocale::c());
    EXPECT_FALSE(capture(server.address("none")));
    EXPECT_EQ(error->kind, XPError::Kind::NotFound) << error->message.toStdString();
    EXPECT_TRUE(error->message.contains(u"404"));
    EXPECT_FALSE(capture(QStringLiteral("http://127.0.0.1:1/")));
    EXPECT_EQ(error->kind, XPError::Kind::NotFound) << error->message.toStdString();
}

TEST(CaptureAddress, IsOneOfTheWeb)
{
    const auto of = [](const char *text) {
        return XPURLToPDF::addressFrom(QString::fromUtf8(text)).value_or(QString());
    };
    EXPECT_EQ(of(" example.org/a b "), QStringLiteral("https://example.org/a%20b"));
    EXPECT_EQ(of("http://bücher.example/ü"), QStringLiteral("http://xn--bcher-kva.example/%C3%BC"));
    for (const char *none : {"", "file:///etc/passwd", "javascript:alert(1)", "ftp://a.b/c",
                             "http://", "data:text/html,x", "about:blank"})
        EXPECT_EQ(of(none), QString()) << none;
}
