#include "XPShortcutPortal.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

static const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
static const QString portal = QStringLiteral("/org/freedesktop/portal/desktop");
static const QString interface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
static const QString shortcutId = QStringLiteral("search");

namespace {

// (sa{sv}) of the portal.
struct Shortcut
{
    QString id;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Shortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Shortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

} // namespace

Q_DECLARE_METATYPE(Shortcut)

XPShortcutPortal::XPShortcutPortal(QDBusConnection bus, const QKeySequence &key,
                                   const QString &description)
    : m_bus(std::move(bus)), m_key(key), m_description(description)
{
    // The slot is looked up by the names of its types, which are unknown before their first use.
    qRegisterMetaType<QDBusObjectPath>();
    qDBusRegisterMetaType<Shortcut>();
    qDBusRegisterMetaType<QList<Shortcut>>();
    m_bus.connect(service, portal, interface, QStringLiteral("Activated"), this,
                  SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    createSession();
}

XPShortcutPortal::~XPShortcutPortal()
{
    if (m_session.path().isEmpty())
        return;
    m_bus.asyncCall(QDBusMessage::createMethodCall(service, m_session.path(),
                                                   QStringLiteral("org.freedesktop.portal.Session"),
                                                   QStringLiteral("Close")));
}

QString XPShortcutPortal::trigger(const QKeySequence &key)
{
    if (key.isEmpty())
        return {};
    const QKeyCombination combination = key[0];
    QString text;
    const Qt::KeyboardModifiers modifiers = combination.keyboardModifiers();
    const auto add = [&](Qt::KeyboardModifier modifier, const char *name) {
        if (modifiers.testFlag(modifier))
            text += QLatin1String(name) + u'+';
    };
    add(Qt::ControlModifier, "CTRL");
    add(Qt::AltModifier, "ALT");
    add(Qt::ShiftModifier, "SHIFT");
    add(Qt::MetaModifier, "LOGO");
    const QString name = QKeySequence(combination.key()).toString(QKeySequence::PortableText);
    return text + (name.size() == 1 ? name.toLower() : name);
}

// A portal answers by a signal of an object whose path the caller can know before he asks, so that
// no answer is missed.
void XPShortcutPortal::request(const QString &method, const QVariantList &arguments,
                               QVariantMap options)
{
    static int number = 0;
    const QString token = QStringLiteral("murn%1").arg(++number);
    QString sender = m_bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    const QString path =
        QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
    m_bus.connect(service, path, QStringLiteral("org.freedesktop.portal.Request"),
                  QStringLiteral("Response"), this, SLOT(answered(uint, QVariantMap)));
    options.insert(QStringLiteral("handle_token"), token);
    auto message = QDBusMessage::createMethodCall(service, portal, interface, method);
    QVariantList all = arguments;
    all.append(options);
    message.setArguments(all);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (watcher->isError())
            Q_EMIT refused();
    });
}

void XPShortcutPortal::createSession()
{
    request(QStringLiteral("CreateSession"), {},
            {{QStringLiteral("session_handle_token"), QStringLiteral("murn")}});
}

void XPShortcutPortal::bind()
{
    const QList<Shortcut> shortcuts = {{shortcutId,
                                        {{QStringLiteral("description"), m_description},
                                         {QStringLiteral("preferred_trigger"), trigger(m_key)}}}};
    request(QStringLiteral("BindShortcuts"),
            {QVariant::fromValue(m_session), QVariant::fromValue(shortcuts), QString()}, {});
}

void XPShortcutPortal::answered(uint response, const QVariantMap &results)
{
    if (response != 0) {
        Q_EMIT refused();
        return;
    }
    if (!m_session.path().isEmpty())
        return; // the shortcut is bound
    m_session = QDBusObjectPath(results.value(QStringLiteral("session_handle")).toString());
    if (m_session.path().isEmpty())
        Q_EMIT refused();
    else
        bind();
}

void XPShortcutPortal::activated(const QDBusObjectPath &session, const QString &shortcut,
                                 qulonglong timestamp, const QVariantMap &options)
{
    Q_UNUSED(timestamp)
    if (session == m_session && shortcut == shortcutId)
        Q_EMIT pressed(options.value(QStringLiteral("activation_token")).toString());
}
