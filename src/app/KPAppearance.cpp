#include "KPAppearance.h"

#include "XPLog.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>

static const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
static const QString object = QStringLiteral("/org/freedesktop/portal/desktop");
static const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
static const QString appearance = QStringLiteral("org.freedesktop.appearance");
static const QString colourScheme = QStringLiteral("color-scheme");

static constexpr uint prefersDark = 1;
static constexpr uint prefersLight = 2;
// A portal that is being started takes longer; its answer is taken when it comes.
static constexpr int patienceMs = 100;

KPAppearance::KPAppearance(KPCommandLine::ColourScheme scheme, QDBusConnection bus, QObject *parent)
    : QObject(parent), m_bus(std::move(bus)), m_original(QApplication::palette())
{
    if (scheme == KPCommandLine::ColourScheme::Desktop)
        ask();
    else
        apply(scheme == KPCommandLine::ColourScheme::Dark);
}

namespace {

struct Colours
{
    QColor window, base, button, text, quiet, accent, onAccent, line;
};

QPalette paletteOf(const Colours &colours)
{
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, const QColor &colour) {
        palette.setColor(QPalette::All, role, colour);
    };
    set(QPalette::Window, colours.window);
    set(QPalette::WindowText, colours.text);
    set(QPalette::Base, colours.base);
    set(QPalette::AlternateBase, colours.window);
    set(QPalette::Text, colours.text);
    set(QPalette::PlaceholderText, colours.quiet);
    set(QPalette::Button, colours.button);
    set(QPalette::ButtonText, colours.text);
    set(QPalette::BrightText, colours.onAccent);
    set(QPalette::ToolTipBase, colours.button);
    set(QPalette::ToolTipText, colours.text);
    set(QPalette::Highlight, colours.accent);
    set(QPalette::HighlightedText, colours.onAccent);
    set(QPalette::Link, colours.accent);
    set(QPalette::LinkVisited, colours.accent.darker(115));
    set(QPalette::Light, colours.button.lighter(125));
    set(QPalette::Midlight, colours.button.lighter(112));
    set(QPalette::Mid, colours.line); // the frames of fields
    set(QPalette::Dark, colours.line.darker(120));
    set(QPalette::Shadow, colours.line.darker(180));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colours.quiet);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.line);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, colours.text);
    return palette;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() < 0.5F;
}

} // namespace

QPalette KPAppearance::darkPalette()
{
    return paletteOf({.window = {0x23, 0x26, 0x29},
                      .base = {0x1b, 0x1d, 0x20},
                      .button = {0x31, 0x35, 0x39},
                      .text = {0xec, 0xee, 0xf0},
                      .quiet = {0x8a, 0x90, 0x96},
                      .accent = {0x4f, 0xb0, 0xc6},
                      .onAccent = {0x1b, 0x1d, 0x20},
                      .line = {0x5c, 0x60, 0x64}});
}

QPalette KPAppearance::lightPalette()
{
    return paletteOf({.window = {0xef, 0xf0, 0xf1},
                      .base = {0xff, 0xff, 0xff},
                      .button = {0xfc, 0xfc, 0xfc},
                      .text = {0x23, 0x26, 0x29},
                      .quiet = {0x6a, 0x70, 0x76},
                      .accent = {0x1d, 0x7a, 0x92},
                      .onAccent = {0xff, 0xff, 0xff},
                      .line = {0xbc, 0xbe, 0xc0}});
}

void KPAppearance::apply(bool dark)
{
    if (m_isDark == dark)
        return;
    m_isDark = dark;
    // The platform's own palette where it is of that kind: it may have the user's accent.
    if (isDark(m_original) == dark)
        QApplication::setPalette(m_original);
    else
        QApplication::setPalette(dark ? darkPalette() : lightPalette());
}

static QDBusMessage question()
{
    auto message =
        QDBusMessage::createMethodCall(service, object, interface, QStringLiteral("Read"));
    message << appearance << colourScheme;
    return message;
}

void KPAppearance::ask()
{
    if (!m_bus.isConnected())
        return;
    // Qt refuses a slot that takes a variant until it has made its own types known, which it does
    // when it is asked for a type's signature.
    (void)QDBusMetaType::typeToSignature(QMetaType::fromType<QDBusVariant>());
    if (!m_bus.connect(service, object, interface, QStringLiteral("SettingChanged"), this,
                       SLOT(settingChanged(QString, QString, QDBusVariant))))
        qCWarning(xpLog) << "changes of the desktop's colours are not heard";
    const QDBusMessage answer = m_bus.call(question(), QDBus::Block, patienceMs);
    if (const QDBusReply<QDBusVariant> reply = answer; reply.isValid())
        settingChanged(appearance, colourScheme, reply.value());
    else if (reply.error().type() == QDBusError::NoReply ||
             reply.error().type() == QDBusError::Timeout)
        askAgainLater();
}

void KPAppearance::askAgainLater()
{
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question()), this);
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
    // Read() wraps the value in a second variant, the signal does not. The kind is asked, as Qt
    // says of a number, too, that it can be converted to a variant.
    QVariant inner = value.variant();
    if (inner.metaType() == QMetaType::fromType<QDBusVariant>())
        inner = inner.value<QDBusVariant>().variant();
    const uint scheme = inner.toUInt();
    if (scheme == prefersDark || scheme == prefersLight)
        apply(scheme == prefersDark);
    else if (m_isDark)
        apply(isDark(m_original)); // no preference any more
}
