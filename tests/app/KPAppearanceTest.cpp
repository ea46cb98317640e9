#include "KPAppearance.h"

#include "TestBus.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QSet>
#include <QTest>
#include <gtest/gtest.h>

namespace {

constexpr int patience = 20'000;

// The desktop's settings, as far as colours go. On a thread of its own, as another program.
class Portal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    void serve(const QDBusConnection &bus)
    {
        QDBusConnection connection = bus;
        connection.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                  QDBusConnection::ExportAllSlots |
                                      QDBusConnection::ExportAllSignals);
        connection.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    void change(uint scheme)
    {
        m_scheme = scheme;
        Q_EMIT SettingChanged(QStringLiteral("org.freedesktop.appearance"),
                              QStringLiteral("color-scheme"), QDBusVariant(scheme));
    }
    uint m_scheme = 1;

Q_SIGNALS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name of the interface
    void SettingChanged(const QString &area, const QString &key, const QDBusVariant &value);

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name of the interface
    QDBusVariant Read(const QString &area, const QString &key)
    {
        Q_UNUSED(area)
        Q_UNUSED(key)
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_scheme))); // wrapped twice
    }
};

bool isDark(const QPalette &palette, QPalette::ColorGroup group, QPalette::ColorRole role)
{
    return palette.color(group, role).lightnessF() < 0.5F;
}

} // namespace

TEST(Appearance, FollowsThePortalWhileItRuns)
{
    TestBus daemon;
    if (daemon.address().isEmpty())
        GTEST_SKIP() << "no dbus-daemon";
    Portal portal;
    portal.serve(daemon.connect("portal"));
    const QPalette before = QApplication::palette();
    QLineEdit field;
    {
        const KPAppearance appearance(KPCommandLine::ColourScheme::Desktop,
                                      daemon.connect("program"));
        const auto fieldIsDark = [&] {
            return isDark(field.palette(), QPalette::Active, QPalette::Base) &&
                   !isDark(field.palette(), QPalette::Active, QPalette::Text);
        };
        EXPECT_TRUE(QTest::qWaitFor(fieldIsDark, patience));
        portal.change(2);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !fieldIsDark(); }, patience));
        portal.change(1);
        EXPECT_TRUE(QTest::qWaitFor(fieldIsDark, patience));
        portal.change(0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !fieldIsDark(); }, patience));
    }
    QApplication::setPalette(before);
}

TEST(Appearance, LeavesNoRoleInTheOtherKindsColours)
{
    using Scheme = KPCommandLine::ColourScheme;
    const QPalette before = QApplication::palette();
    for (const bool dark : {true, false}) {
        const KPAppearance appearance(dark ? Scheme::Dark : Scheme::Light);
        const QPalette palette = QApplication::palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            for (const auto role : {QPalette::Window, QPalette::Base, QPalette::AlternateBase,
                                    QPalette::Button, QPalette::ToolTipBase})
                EXPECT_EQ(isDark(palette, group, role), dark) << role;
            for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                    QPalette::ToolTipText})
                EXPECT_NE(palette.color(group, role).lightnessF() < 0.5F, dark) << role;
        }
    }
    QApplication::setPalette(before);
}

// On a dark window too, and where a point is several pixels.
TEST(Appearance, OutlinesFieldsAndLeavesNoSeams)
{
    using Scheme = KPCommandLine::ColourScheme;
    const QPalette before = QApplication::palette();
    for (const auto scheme : {Scheme::Dark, Scheme::Light}) {
        const KPAppearance appearance(scheme);
        QLineEdit field;
        QListWidget list;
        list.setFrameShape(QFrame::NoFrame);
        list.addItem(new QListWidgetItem(QApplication::windowIcon(), QStringLiteral("x")));
        list.item(0)->setSizeHint({0, 32});
        list.setCurrentRow(0);
        QMenuBar menus;
        menus.addMenu(QStringLiteral("File"));
        menus.addMenu(QStringLiteral("Edit"));
        for (const double scale : {1.0, 1.5, 2.0}) {
            const auto picture = [&](QWidget &widget) {
                widget.resize(120, 40);
                QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
                image.setDevicePixelRatio(scale);
                widget.render(&image);
                return image;
            };
            const QImage frame = picture(field);
            const int middle = frame.height() / 2;
            const QColor edge = frame.pixelColor(0, middle);
            const QColor inside = frame.pixelColor(frame.width() / 2, middle);
            EXPECT_GT(std::abs(edge.lightnessF() - inside.lightnessF()), 0.1F) << scale;

            const auto coloursOf = [](const QImage &image, int y) {
                QSet<QRgb> colours;
                for (int x = image.width() / 4; x < image.width() * 3 / 4; ++x)
                    colours.insert(image.pixel(x, y));
                return colours.size();
            };
            EXPECT_EQ(coloursOf(picture(list), int(4 * scale)), 1) << scale;
            const QImage bar = picture(menus);
            for (int y = bar.height() - int(2 * scale); y < bar.height(); ++y)
                EXPECT_EQ(coloursOf(bar, y), 1) << scale;
        }
    }
    QApplication::setPalette(before);
}

#include "KPAppearanceTest.moc"
