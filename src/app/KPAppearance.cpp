#include "KPAppearance.h"

#include "KPFusionStyle.h"
#include "XPLog.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QStyle>
#include <QWidget>

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
    : QObject(parent), m_bus(std::move(bus)), m_original(QApplication::palette()),
      m_desktopHasAStyle(QApplication::style()->objectName() != u"fusion")
{
    if (!m_desktopHasAStyle)
        QApplication::setStyle(new KPFusionStyle);
    if (scheme == KPCommandLine::ColourScheme::Desktop)
        ask();
    else
        apply(scheme == KPCommandLine::ColourScheme::Dark);
}

namespace {

struct Tones
{
    QRgb window, panel, field, line, text, muted, accent, onAccent, raised;
};

constexpr Tones lightTones{0xFFF5F4F1, 0xFFFAF9F7, 0xFFFFFFFF, 0xFFDAD8D2, 0xFF23231F,
                           0xFF69675F, 0xFF2476AD, 0xFFFFFFFF, 0xFFFAF9F7};
constexpr Tones darkTones{0xFF26272A, 0xFF2C2D31, 0xFF1F2023, 0xFF3A3B40, 0xFFE9E7E1,
                          0xFFA09E97, 0xFF5AA9DE, 0xFF10202C, 0xFF34353A};

// Every role of every group, so that no field keeps the other kind's colours.
QPalette paletteOf(const Tones &tones)
{
    const QColor window(tones.window);
    const QColor text(tones.text);
    const QColor muted(tones.muted);
    const QColor line(tones.line);
    const QColor raised(tones.raised);
    QPalette palette(text, raised, raised.lighter(110), line.darker(140), line, text,
                     QColor(Qt::white), QColor(tones.field), window);
    palette.setColor(QPalette::AlternateBase, QColor(tones.panel));
    palette.setColor(QPalette::Mid, line); // the frames of fields, the lines between panes
    palette.setColor(QPalette::Highlight, QColor(tones.accent));
    palette.setColor(QPalette::HighlightedText, QColor(tones.onAccent));
    palette.setColor(QPalette::Link, QColor(tones.accent));
    palette.setColor(QPalette::ToolTipBase, QColor(tones.panel));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, muted);
    QColor faint = muted;
    faint.setAlphaF(0.55F);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, line);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, muted);
    return palette;
}

} // namespace

static bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() < 0.5F;
}

void KPAppearance::apply(bool dark)
{
    if (m_isDark == dark)
        return;
    m_isDark = dark;
    // The desktop's own palette where it is of that kind: it may have the user's accent.
    const bool keepsOriginal = m_desktopHasAStyle && isDark(m_original) == dark;
    QApplication::setPalette(keepsOriginal ? m_original : paletteOf(dark ? darkTones : lightTones));
    // Style sheets that name roles of the palette are not asked again by themselves.
    for (QWidget *widget : QApplication::allWidgets()) {
        if (const QString sheet = widget->styleSheet(); !sheet.isEmpty()) {
            widget->setStyleSheet({});
            widget->setStyleSheet(sheet);
        }
    }
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
