#include "KPAppearance.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

static const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
static const QString object = QStringLiteral("/org/freedesktop/portal/desktop");
static const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
static const QString appearance = QStringLiteral("org.freedesktop.appearance");
static const QString colourScheme = QStringLiteral("color-scheme");

static constexpr uint prefersDark = 1;

KPAppearance::KPAppearance(KPCommandLine::ColourScheme scheme, QObject *parent)
    : QObject(parent), m_original(QApplication::palette())
{
    if (scheme == KPCommandLine::ColourScheme::Desktop)
        ask();
    else
        apply(scheme == KPCommandLine::ColourScheme::Dark);
}

QPalette KPAppearance::darkPalette()
{
    const QColor window(0x23, 0x26, 0x29);
    const QColor base(0x1b, 0x1d, 0x20);
    const QColor text(0xec, 0xee, 0xf0);
    const QColor quiet(0x8a, 0x90, 0x96);
    const QColor button(0x31, 0x35, 0x39);
    const QColor accent(0x4f, 0xb0, 0xc6);
    QPalette palette(text, button, button.lighter(130), button.darker(170), button.darker(130),
                     text, QColor(Qt::white), base, window);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Mid, quiet.darker(150)); // the frames of fields
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, base);
    palette.setColor(QPalette::Link, accent);
    palette.setColor(QPalette::ToolTipBase, button);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, quiet);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, quiet);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, quiet);
    return palette;
}

void KPAppearance::apply(bool dark)
{
    const bool originalIsDark = m_original.color(QPalette::Window).lightnessF() < 0.5F;
    if (m_dark == dark || (dark && originalIsDark))
        return;
    m_dark = dark;
    QApplication::setPalette(dark ? darkPalette() : m_original);
}

void KPAppearance::ask()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(service, object, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    auto message =
        QDBusMessage::createMethodCall(service, object, interface, QStringLiteral("Read"));
    message << appearance << colourScheme;
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            settingChanged(appearance, colourScheme, reply.value());
        watcher->deleteLater();
    });
}

void KPAppearance::settingChanged(const QString &area, const QString &key,
                                  const QDBusVariant &value)
{
    if (area != appearance || key != colourScheme)
        return;
    // Read() wraps the value in a second variant.
    QVariant inner = value.variant();
    if (inner.canConvert<QDBusVariant>())
        inner = inner.value<QDBusVariant>().variant();
    apply(inner.toUInt() == prefersDark);
}
