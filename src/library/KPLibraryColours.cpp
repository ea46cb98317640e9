#include "KPLibraryColours.h"

#include "UserDefaults.h"

// A setting's colour: four numbers from 0 to 1. Nothing: it is not a colour.
static std::optional<QColor> settingColour(const QString &key)
{
    const PropertyValue value = UserDefaults::standard().value(key);
    if (!value.isArray() || value.array().size() < 3)
        return {};
    const PropertyValue::Array &parts = value.array();
    const auto part = [&](qsizetype number) {
        return static_cast<float>(std::clamp(parts[number].doubleValue(), 0.0, 1.0));
    };
    return QColor::fromRgbF(part(0), part(1), part(2), parts.size() > 3 ? part(3) : 1);
}

static QColor withAlpha(QColor colour, double alpha)
{
    colour.setAlphaF(static_cast<float>(alpha));
    return colour;
}

KPLibraryColours::KPLibraryColours(const QPalette &desktop)
    : palette(desktop), isDark(desktop.color(QPalette::Window).lightness() < 128)
{
    const auto chosen = [&](const QString &key, QPalette::ColorRole role) {
        const auto colour = settingColour(key);
        const bool isOwn = UserDefaults::standard().isSaved(key);
        return colour && (isOwn || !isDark) ? *colour : desktop.color(role);
    };
    background = chosen(QStringLiteral("KPLibraryBackgroundColour"), QPalette::Base);
    text = chosen(QStringLiteral("KPLibraryTextColour"), QPalette::Text);
    // Whatever the desktop is, what lies on the desk follows the desk.
    isDark = background.lightness() < 128;
    palette.setColor(QPalette::Base, background);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::WindowText, text);
    muted = withAlpha(text, 0.68);
    accent = desktop.color(QPalette::Active, QPalette::Highlight);
    selection = withAlpha(accent, isDark ? 0.26 : 0.20);
    hover = withAlpha(text, 0.05);
    line = withAlpha(text, isDark ? 0.14 : 0.12);
    star = isDark ? QColor(0xE3, 0xA7, 0x3B) : QColor(0xB5, 0x74, 0x0A);
    flag = isDark ? QColor(0xE4, 0x6A, 0x55) : QColor(0xC8, 0x44, 0x2F);
    shadow = QColor::fromRgbF(0, 0, 0, isDark ? 0.55F : 0.22F);
}
