#include "Karvex.h"
#include "TestBus.h"
#include "TestHome.h"
#include "XPFileUrls.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QProcess>
#include <csignal>
#include <gtest/gtest.h>

// What the desktop's shells ask of the library, answered by the program that the bus starts.
class LibraryService : public testing::Test
{
protected:
    void SetUp() override
    {
        if (m_daemon.address().isEmpty())
            GTEST_SKIP() << "no dbus-daemon";
        m_invoice = m_folder.file(QStringLiteral("Invoice 7 & more.pdf"), "%PDF-1.4\n");
        m_folder.file(QStringLiteral("Other.pdf"), "%PDF-1.4\n");
        ASSERT_FALSE(Karvex::setUserTags(QStringList{QStringLiteral("work")}, m_invoice));
        // What a search finds is then no matter of when the index has read the folder.
        for (const QStringList &words :
             {QStringList{QStringLiteral("index"), QStringLiteral("add"), m_folder.path()},
              QStringList{QStringLiteral("index"), QStringLiteral("sync")}})
            ASSERT_EQ(QProcess::execute(QStringLiteral(MURNCTL), words), 0);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_daemon.address());
        m_program.setProcessEnvironment(environment);
        m_program.setProcessChannelMode(QProcess::ForwardedChannels);
        m_bus = m_daemon.connect("caller");
        m_program.start(QStringLiteral(MURN_LIBRARY), QStringList());
        ASSERT_TRUE(isThere(true));
    }
    void TearDown() override
    {
        if (m_program.state() == QProcess::NotRunning)
            return;
        m_program.terminate();
        EXPECT_TRUE(m_program.waitForFinished());
        EXPECT_EQ(m_program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(m_program.exitCode(), 0);
    }

    bool isThere(bool wanted)
    {
        constexpr int rounds = 200; // each a call over the bus and a wait for an end
        for (int round = 0; round < rounds; ++round) {
            if (m_bus.interface()->isServiceRegistered(name).value() == wanted)
                return true;
            if (m_program.waitForFinished(50))
                return !wanted;
        }
        return false;
    }
    QDBusMessage call(const char *place, const char *interface, const char *method,
                      const QVariantList &arguments)
    {
        auto message = QDBusMessage::createMethodCall(
            name, QLatin1String("/com/brindle/murn/") + QLatin1String(place),
            QLatin1String(interface), QLatin1String(method));
        message.setArguments(arguments);
        return m_bus.call(message);
    }
    QStringList strings(const QDBusMessage &answer)
    {
        EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
        return answer.arguments().value(0).toStringList();
    }
    QStringList search(const QString &text, uint limit = 10)
    {
        return strings(call("Library", "com.brindle.murn.Library", "Search", {text, limit}));
    }

    const QString name = QStringLiteral("com.brindle.murn.Library");
    TestBus m_daemon;
    TestFolder m_folder;
    QString m_invoice;
    QDBusConnection m_bus{QString()};
    QProcess m_program;
};

TEST_F(LibraryService, AnswersEveryInterface)
{
    const QString address = QString::fromLatin1(XPFileUrls::encoded(m_invoice));
    EXPECT_EQ(search(QStringLiteral("invo")), QStringList{address});
    EXPECT_EQ(search(QStringLiteral("pdf"), 1).size(), 1);
    EXPECT_EQ(strings(call("Library", name.toLatin1(), "Tags", {address})),
              QStringList{QStringLiteral("work")});

    const char *shell = "org.gnome.Shell.SearchProvider2";
    EXPECT_EQ(strings(call("SearchProvider", shell, "GetInitialResultSet",
                           {QStringList{QStringLiteral("invoice"), QStringLiteral("7")}})),
              QStringList{address});
    const QDBusMessage metas =
        call("SearchProvider", shell, "GetResultMetas",
             {QStringList{address, QStringLiteral("file:///gone"), QStringLiteral("nonsense")}});
    const auto described =
        qdbus_cast<QList<QVariantMap>>(metas.arguments().value(0).value<QDBusArgument>());
    ASSERT_EQ(described.size(), 1);
    EXPECT_EQ(described[0][QStringLiteral("name")].toString(),
              QStringLiteral("Invoice 7 & more.pdf"));
    EXPECT_TRUE(
        described[0][QStringLiteral("description")].toString().endsWith(QStringLiteral("work")));

    const QDBusMessage matches =
        call("Runner", "org.kde.krunner1", "Match", {QStringLiteral("invoice")});
    ASSERT_EQ(matches.type(), QDBusMessage::ReplyMessage) << matches.errorMessage().toStdString();
    EXPECT_EQ(matches.signature(), QStringLiteral("a(sssida{sv})"));
}

TEST_F(LibraryService, OutlivesNonsense)
{
    for (const QString &text : {QString(), QString(100'000, u'x'), QStringLiteral("\"*)(&&=="),
                                QStringLiteral("kMDItemFSName == '"), QString(QChar(0xFFFD))})
        (void)search(text);
    EXPECT_EQ(search(QStringLiteral("invoice"), 0xFFFFFFFFU).size(), 1);
    for (const char *uri : {"", "file://", "file:///%00%ff", "http://host/a", "-rf", "file:///.."})
        EXPECT_EQ(strings(call("Library", name.toLatin1(), "Tags", {QLatin1String(uri)})),
                  QStringList());
    EXPECT_EQ(call("Library", name.toLatin1(), "Search", {QStringLiteral("a")}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(call("Library", name.toLatin1(), "Delete", {}).type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(isThere(true));
}

TEST_F(LibraryService, IsThereOnce)
{
    QProcess second;
    second.setProcessEnvironment(m_program.processEnvironment());
    second.start(QStringLiteral(MURN_LIBRARY), QStringList());
    EXPECT_TRUE(second.waitForFinished());
    EXPECT_NE(second.exitCode(), 0);
    EXPECT_EQ(search(QStringLiteral("invoice")).size(), 1);
}
