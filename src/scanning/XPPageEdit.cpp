#include "XPPageEdit.h"

#include <QPainter>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>

static const QString turnsKey = QStringLiteral("quarterTurns");
static const QString angleKey = QStringLiteral("straightenAngle");
static const QString cropKey = QStringLiteral("crop");
static const QString contrastKey = QStringLiteral("contrastPercentage");
static const QString coloursKey = QStringLiteral("colours");

PropertyValue::Dictionary XPPageEdit::saved() const
{
    PropertyValue::Array sides;
    for (const double side : {crop.x(), crop.y(), crop.width(), crop.height()})
        sides.append(PropertyValue::real(side));
    return {{turnsKey, PropertyValue::integer(quarterTurns)},
            {angleKey, PropertyValue::real(straightenAngle)},
            {cropKey, sides},
            {contrastKey, PropertyValue::real(contrastPercentage)},
            {coloursKey, PropertyValue::integer(static_cast<int>(colours))}};
}

XPPageEdit XPPageEdit::fromSaved(const PropertyValue::Dictionary &saved)
{
    XPPageEdit edit;
    edit.quarterTurns = static_cast<int>(saved.value(turnsKey).integerValue() % 4);
    edit.straightenAngle = std::clamp(saved.value(angleKey).doubleValue(), -45.0, 45.0);
    const PropertyValue::Array sides = saved.value(cropKey).array();
    if (sides.size() == 4) {
        const QRectF crop(sides[0].doubleValue(), sides[1].doubleValue(), sides[2].doubleValue(),
                          sides[3].doubleValue());
        const QRectF inside = crop.intersected(QRectF(0, 0, 1, 1));
        if (!inside.isEmpty())
            edit.crop = inside;
    }
    edit.contrastPercentage =
        std::clamp(saved.value(contrastKey).doubleValue(edit.contrastPercentage), 0.0, 400.0);
    edit.colours = static_cast<Colours>(std::clamp<qint64>(
        saved.value(coloursKey).integerValue(), 0, static_cast<int>(Colours::BlackAndWhite)));
    return edit;
}

// Turned about its middle; what comes into sight is paper.
static QImage straightened(const QImage &image, double angle)
{
    QImage turned(image.size(), QImage::Format_RGB32);
    turned.setDotsPerMeterX(image.dotsPerMeterX());
    turned.setDotsPerMeterY(image.dotsPerMeterY());
    turned.fill(Qt::white);
    QPainter painter(&turned);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QPointF middle(image.width() / 2.0, image.height() / 2.0);
    painter.translate(middle);
    painter.rotate(angle);
    painter.translate(-middle);
    painter.drawImage(0, 0, image);
    return turned;
}

// Each value farther from the middle by the factor, or nearer to it.
static QImage contrasted(QImage image, double factor)
{
    std::array<uchar, 256> table{};
    for (std::size_t value = 0; value < table.size(); ++value) {
        const double wanted = (static_cast<double>(value) - 127.5) * factor + 127.5;
        table[value] = static_cast<uchar>(std::clamp(std::lround(wanted), 0L, 255L));
    }
    if (image.format() != QImage::Format_Grayscale8 && image.format() != QImage::Format_RGB888)
        image = image.convertToFormat(image.isGrayscale() ? QImage::Format_Grayscale8
                                                          : QImage::Format_RGB888);
    const int bytes = image.width() * image.depth() / 8;
    for (int y = 0; y < image.height(); ++y) {
        uchar *line = image.scanLine(y);
        std::transform(line, line + bytes, line, [&](uchar value) { return table[value]; });
    }
    return image;
}

// Between ink and paper lies the value that parts the picture's own values best (Otsu, 1979).
static int inkThreshold(const QImage &grey)
{
    std::array<double, 256> counts{};
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *line = grey.constScanLine(y);
        for (int x = 0; x < grey.width(); ++x)
            ++counts[line[x]];
    }
    double total = 0;
    double sum = 0;
    for (std::size_t value = 0; value < counts.size(); ++value) {
        total += counts[value];
        sum += counts[value] * static_cast<double>(value);
    }
    double below = 0;
    double sumBelow = 0;
    double best = -1;
    int threshold = 127;
    for (std::size_t value = 0; value < counts.size(); ++value) {
        below += counts[value];
        sumBelow += counts[value] * static_cast<double>(value);
        const double above = total - below;
        if (below == 0 || above == 0)
            continue;
        const double distance = sumBelow / below - (sum - sumBelow) / above;
        if (below * above * distance * distance > best) {
            best = below * above * distance * distance;
            threshold = static_cast<int>(value);
        }
    }
    // A page of one colour alone has no ink to part from it.
    return best <= 0 ? 127 : threshold;
}

static QImage inBlackAndWhite(const QImage &image)
{
    const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
    const int threshold = inkThreshold(grey);
    QImage result(grey.size(), QImage::Format_Mono);
    result.setDotsPerMeterX(image.dotsPerMeterX());
    result.setDotsPerMeterY(image.dotsPerMeterY());
    result.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    result.fill(0);
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *from = grey.constScanLine(y);
        uchar *to = result.scanLine(y);
        for (int x = 0; x < grey.width(); ++x) {
            if (from[x] <= threshold)
                to[x / 8] = static_cast<uchar>(to[x / 8] | (0x80 >> (x % 8)));
        }
    }
    return result;
}

QImage XPPageEdit::applied(const QImage &image) const
{
    QImage result = image;
    if (const int turns = ((quarterTurns % 4) + 4) % 4) {
        result = result.transformed(QTransform().rotate(90.0 * turns));
        if (turns % 2) {
            result.setDotsPerMeterX(image.dotsPerMeterY());
            result.setDotsPerMeterY(image.dotsPerMeterX());
        }
    }
    if (straightenAngle != 0)
        result = straightened(result, straightenAngle);
    if (crop != QRectF(0, 0, 1, 1)) {
        const QRectF pixels(crop.x() * result.width(), crop.y() * result.height(),
                            crop.width() * result.width(), crop.height() * result.height());
        const QRect whole = pixels.toRect().intersected(result.rect());
        if (!whole.isEmpty())
            result = result.copy(whole);
    }
    if (contrastPercentage != 100)
        result = contrasted(result, contrastPercentage / 100);
    if (colours == Colours::Grey)
        result = result.convertToFormat(QImage::Format_Grayscale8);
    else if (colours == Colours::BlackAndWhite)
        result = inBlackAndWhite(result);
    return result;
}
