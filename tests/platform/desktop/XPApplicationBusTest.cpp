#include "XPApplicationBus.h"

#include "TestBus.h"

#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTest>
#include <future>
#include <gtest/gtest.h>

using Claim = XPApplicationBus::Claim;

namespace {

constexpr int patience = 20'000;

class ApplicationBus : public testing::Test
{
protected:
    void SetUp() override
    {
        if (m_daemon.address().isEmpty())
            GTEST_SKIP() << "no dbus-daemon";
        ASSERT_EQ(m_bus.claim(), Claim::First);
        QObject::connect(&m_bus, &XPApplicationBus::openAsked, &m_bus,
                         [this](const QStringList &uris, const XPActivation &activation) {
                             m_opened.append(uris);
                             m_token = activation.token;
                         });
        QObject::connect(&m_bus, &XPApplicationBus::searchAsked, &m_bus,
                         [this](const QString &text) { m_searched.append(text); });
        QObject::connect(&m_bus, &XPApplicationBus::activateAsked, &m_bus,
                         [this] { ++m_activated; });
        QObject::connect(&m_bus, &XPApplicationBus::fileAsked, &m_bus, [this] { ++m_filed; });
    }

    // As a stranger would, with whatever arguments; the answer.
    QDBusMessage call(const char *interface, const char *method, const QVariantList &arguments)
    {
        auto message = QDBusMessage::createMethodCall(
            XPApplicationBus::serviceName, XPApplicationBus::objectPath,
            QString::fromLatin1(interface), QString::fromLatin1(method));
        message.setArguments(arguments);
        QDBusPendingCallWatcher watcher(m_stranger.asyncCall(message, patience));
        EXPECT_TRUE(QTest::qWaitFor([&] { return watcher.isFinished(); }, patience));
        return watcher.reply();
    }
    QDBusMessage application(const char *method, const QVariantList &arguments)
    {
        return call("org.freedesktop.Application", method, arguments);
    }

    TestBus m_daemon;
    XPApplicationBus m_bus{m_daemon.connect("program")};
    QDBusConnection m_stranger = m_daemon.connect("stranger");
    QList<QStringList> m_opened;
    QString m_token;
    QStringList m_searched;
    int m_activated = 0;
    int m_filed = 0;
};

} // namespace

TEST_F(ApplicationBus, IsOnePerUserUntilItIsReleased)
{
    XPApplicationBus second(m_daemon.connect("second"));
    EXPECT_EQ(second.claim(), Claim::Another);
    m_bus.release();
    EXPECT_EQ(second.claim(), Claim::First);
    XPApplicationBus homeless(QDBusConnection(QStringLiteral("no such connection")));
    EXPECT_EQ(homeless.claim(), Claim::NoBus);
}

TEST_F(ApplicationBus, HandsASecondStartToTheFirst)
{
    const QDBusConnection connection = m_daemon.connect("second");
    const QStringList uris = {QStringLiteral("file:///a%FF"), QStringLiteral("murn://tags/x")};
    auto asked = std::async(std::launch::async, [&] {
        XPApplicationBus second(connection);
        return second.claim() == Claim::Another &&
               !second.askToOpen(uris, {QStringLiteral("token"), {}}) &&
               !second.askToOpen({}, {}) &&
               !second.askForAction(XPApplicationBus::searchAction, {QStringLiteral("text")}, {});
    });
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return asked.wait_for(std::chrono::seconds(0)) == std::future_status::ready; },
        patience));
    EXPECT_TRUE(asked.get());
    EXPECT_EQ(m_opened, QList<QStringList>{uris}); // one list
    EXPECT_EQ(m_token, QStringLiteral("token"));
    EXPECT_EQ(m_activated, 1);
    EXPECT_EQ(m_searched, QStringList{QStringLiteral("text")});
}

TEST_F(ApplicationBus, SurvivesNonsense)
{
    const QVariantMap none;
    const QString huge(XPApplicationBus::longestText + 1, u'x');
    QStringList many;
    many.fill(QStringLiteral("file:///x"), XPApplicationBus::mostUris + 1);
    const QVariantMap odd = {{QStringLiteral("activation-token"), -1},
                             {QStringLiteral("desktop-startup-id"), huge}};

    EXPECT_EQ(application("Open", {many, none}).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(m_opened.isEmpty());
    // What can be used of a list is; what is left of it is too little to open.
    EXPECT_EQ(application("Open", {QStringList{QString(), huge}, odd}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_TRUE(m_opened.isEmpty());
    EXPECT_EQ(m_activated, 1);
    EXPECT_TRUE(m_token.isEmpty());

    for (const QVariantList &parameters :
         {QVariantList{-1}, QVariantList{QStringList()}, QVariantList{QByteArray("\xff\xfe")},
          QVariantList{QVariantMap(odd)}, QVariantList{huge}}) {
        EXPECT_EQ(application("ActivateAction",
                              {XPApplicationBus::searchAction, QVariant(parameters), odd})
                      .type(),
                  QDBusMessage::ReplyMessage);
    }
    for (const QString &text : std::as_const(m_searched))
        EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(application("ActivateAction", {huge, QVariant(QVariantList()), none}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(m_filed, 0);

    // Arguments of other kinds are the bus's own error.
    for (const QVariantList &arguments :
         {QVariantList{}, QVariantList{-1}, QVariantList{QByteArray("\xff"), none},
          QVariantList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}})
        EXPECT_EQ(application("Open", arguments).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call("com.brindle.murn.Services", "SearchInMurn", {-1}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(
        call("com.brindle.murn.Services", "SearchInMurn", {QStringLiteral("still there")}).type(),
        QDBusMessage::ReplyMessage);
    EXPECT_EQ(m_searched.last(), QStringLiteral("still there"));
}
