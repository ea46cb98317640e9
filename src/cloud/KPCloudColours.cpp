#include "KPCloudColours.h"

#include <algorithm>
#include <cmath>

static constexpr double leastContrast = 4.5;

// WCAG 2.1, "relative luminance".
static double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double KPCloudColours::contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor KPCloudColours::readable(const QColor &colour, const QColor &background)
{
    const bool isDark = luminance(background) < 0.18;
    const float step = isDark ? 0.02F : -0.02F;
    QColor result = colour;
    while (contrast(result, background) < leastContrast) {
        const float lightness = std::clamp(result.lightnessF() + step, 0.0F, 1.0F);
        result = QColor::fromHslF(std::max(0.0F, result.hslHueF()), result.hslSaturationF(),
                                  lightness, result.alphaF());
        if (lightness <= 0 || lightness >= 1)
            break;
    }
    return result;
}

QColor KPCloudColours::word(const Look &look, const Parameters &parameters, const QColor &text,
                            const QColor &background)
{
    if (look.isBlack)
        return text;
    if (look.isAbsent)
        return readable(QColor(Qt::lightGray), background);
    if (look.isBestMatch)
        return readable(QColor(Qt::red), background);
    const double hue = parameters.colour + look.relevance * parameters.colourRange;
    return readable(QColor::fromHsvF(static_cast<float>(hue - std::floor(hue)),
                                     static_cast<float>(parameters.saturation),
                                     static_cast<float>(parameters.brightness),
                                     static_cast<float>(parameters.alpha)),
                    background);
}
