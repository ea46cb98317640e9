#include "XPShortcutPortal.h"

#include "TestBus.h"

#include <QDBusArgument>
#include <QDBusContext>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

constexpr int patience = 20'000;

// As much of a desktop's portal as a shortcut needs.
class Portal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")

public:
    explicit Portal(const QDBusConnection &bus) : m_bus(bus)
    {
        m_bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                             QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    uint answer = 0; // to the user's question
    int bound = 0;

Q_SIGNALS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name of the interface
    void Activated(const QDBusObjectPath &session, const QString &shortcut, qulonglong timestamp,
                   const QVariantMap &options);

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface
    QDBusObjectPath CreateSession(const QVariantMap &options)
    {
        return respond(options, 0,
                       {{QStringLiteral("session_handle"), QStringLiteral("/session/1")}});
    }
    QDBusObjectPath BindShortcuts(const QDBusMessage &message)
    {
        ++bound;
        const auto options = qdbus_cast<QVariantMap>(message.arguments().at(3));
        return respond(options, answer, {});
    }
    // NOLINTEND(readability-identifier-naming)

private:
    QDBusObjectPath respond(const QVariantMap &options, uint response, const QVariantMap &results)
    {
        QString sender = message().service().mid(1);
        sender.replace(u'.', u'_');
        const QString path =
            QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                .arg(sender, options.value(QStringLiteral("handle_token")).toString());
        auto signal = QDBusMessage::createSignal(
            path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        signal << response << results;
        m_bus.send(signal);
        return QDBusObjectPath(path);
    }
    QDBusConnection m_bus;
};

class ShortcutPortal : public testing::Test
{
protected:
    void SetUp() override
    {
        if (m_daemon.address().isEmpty())
            GTEST_SKIP() << "no dbus-daemon";
    }
    TestBus m_daemon;
    const QKeySequence m_key{Qt::CTRL | Qt::ALT | Qt::Key_M};
};

} // namespace

TEST_F(ShortcutPortal, BindsAKeyAndHearsIt)
{
    Portal portal(m_daemon.connect("portal"));
    XPShortcutPortal shortcut(m_daemon.connect("program"), m_key, QStringLiteral("Search"));
    QSignalSpy pressed(&shortcut, &XPShortcutPortal::pressed);
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal.bound == 1; }, patience));
    const QVariantMap token = {{QStringLiteral("activation_token"), QStringLiteral("t")}};
    // Not ours, then ours.
    Q_EMIT portal.Activated(QDBusObjectPath(QStringLiteral("/session/2")), QStringLiteral("search"),
                            1, token);
    Q_EMIT portal.Activated(QDBusObjectPath(QStringLiteral("/session/1")), QStringLiteral("search"),
                            1, token);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !pressed.isEmpty(); }, patience));
    EXPECT_EQ(pressed.size(), 1);
    EXPECT_EQ(pressed.first().first().toString(), QStringLiteral("t"));
}

TEST_F(ShortcutPortal, SaysWhenItIsRefused)
{
    XPShortcutPortal lonely(m_daemon.connect("program"), m_key, QStringLiteral("Search"));
    QSignalSpy absent(&lonely, &XPShortcutPortal::refused);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !absent.isEmpty(); }, patience));

    Portal portal(m_daemon.connect("portal"));
    portal.answer = 1;
    XPShortcutPortal shortcut(m_daemon.connect("program"), m_key, QStringLiteral("Search"));
    QSignalSpy refused(&shortcut, &XPShortcutPortal::refused);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !refused.isEmpty(); }, patience));
}

TEST(ShortcutTrigger, IsSpelledAsThePortalWantsIt)
{
    const struct
    {
        QKeySequence key;
        const char *trigger;
    } cases[] = {
        {QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_M), "CTRL+ALT+m"},
        {QKeySequence(Qt::META | Qt::SHIFT | Qt::Key_F5), "SHIFT+LOGO+F5"},
        {QKeySequence(), ""},
    };
    for (const auto &each : cases)
        EXPECT_EQ(XPShortcutPortal::trigger(each.key), QLatin1String(each.trigger));
}

#include "XPShortcutPortalTest.moc"
