#include "KPLook.h"

#include "UserDefaults.h"

#include <QApplication>

static constexpr double bodySize = 13;

QFont KPLook::font(Type type)
{
    QFont font = QApplication::font();
    const auto resize = [&font](double size) {
        if (font.pixelSize() > 0)
            font.setPixelSize(qRound(font.pixelSize() * size / bodySize));
        else
            font.setPointSizeF(font.pointSizeF() * size / bodySize);
    };
    switch (type) {
    case Type::Caption:
        resize(11);
        font.setWeight(QFont::DemiBold);
        break;
    case Type::Facts:
        resize(12);
        break;
    case Type::Body:
        break;
    case Type::Title:
        resize(14);
        font.setWeight(QFont::DemiBold);
        break;
    case Type::Heading:
        resize(24);
        break;
    }
    return font;
}

static QColor tint(QColor colour, double alpha)
{
    colour.setAlphaF(static_cast<float>(alpha));
    return colour;
}

bool KPLook::isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() < 0.5F;
}

QColor KPLook::line(const QPalette &palette)
{
    return palette.color(QPalette::Mid);
}

QColor KPLook::muted(const QPalette &palette)
{
    return palette.color(QPalette::PlaceholderText);
}

QColor KPLook::panel(const QPalette &palette)
{
    return palette.color(QPalette::AlternateBase);
}

QColor KPLook::hover(const QPalette &palette)
{
    return tint(palette.color(QPalette::WindowText), 0.05);
}

QColor KPLook::selection(const QPalette &palette)
{
    return tint(palette.color(QPalette::Highlight), isDark(palette) ? 0.26 : 0.20);
}

QColor KPLook::chip(const QPalette &palette)
{
    return tint(palette.color(QPalette::Highlight), isDark(palette) ? 0.18 : 0.13);
}

QColor KPLook::star(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xE3, 0xA7, 0x3B) : QColor(0xB5, 0x74, 0x0A);
}

QColor KPLook::flag(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xE4, 0x6A, 0x55) : QColor(0xC8, 0x44, 0x2F);
}

QColor KPLook::brown(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xD8, 0xA5, 0x6B) : QColor(0x8A, 0x4B, 0x16);
}

// Red, green, blue and alpha; nothing: not chosen, or none of the kind.
static std::optional<QColor> chosen(const QString &setting)
{
    const UserDefaults &defaults = UserDefaults::standard();
    if (!defaults.isSaved(setting))
        return {};
    const PropertyValue::Array parts = defaults.value(setting).array();
    if (parts.size() != 4)
        return {};
    const auto part = [&parts](int number) {
        return static_cast<float>(std::clamp(parts.at(number).doubleValue(), 0.0, 1.0));
    };
    return QColor::fromRgbF(part(0), part(1), part(2), part(3));
}

QColor KPLook::desk(const QPalette &palette)
{
    const auto own = chosen(QStringLiteral("KPLibraryBackgroundColour"));
    return own.value_or(isDark(palette) ? QColor(0x1F, 0x20, 0x23) : QColor(0xEB, 0xEB, 0xE3));
}

QColor KPLook::deskText(const QPalette &palette)
{
    return chosen(QStringLiteral("KPLibraryTextColour"))
        .value_or(palette.color(QPalette::WindowText));
}
