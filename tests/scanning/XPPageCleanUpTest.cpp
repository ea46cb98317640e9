#include "XPPageCleanUp.h"

#include "XPTextLayer.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

// A page of text at 150 dots an inch.
static QImage page(bool hasText = true)
{
    QImage image(1240, 1754, QImage::Format_RGB32);
    image.fill(Qt::white);
    if (!hasText)
        return image;
    QPainter painter(&image);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(30);
    painter.setFont(font);
    for (int line = 0; line < 30; ++line)
        painter.drawText(
            120, 160 + line * 46,
            QStringLiteral("The harbour master asks for the papers of ship %1").arg(line + 17));
    return image;
}

TEST(PageCleanUp, TurnsPagesUprightByTheirText)
{
    if (!XPTextLayer::isAvailable())
        GTEST_SKIP() << "no tesseract";
    for (int turns = 0; turns < 4; ++turns) {
        const QImage lies = page().transformed(QTransform().rotate(-90.0 * turns));
        const auto found = XPPageCleanUp::of(lies, {.turnUpright = true});
        EXPECT_EQ(found.edit.quarterTurns, turns);
        EXPECT_EQ(found.edit.crop, QRectF(0, 0, 1, 1)) << "was not asked for";
    }
}

TEST(PageCleanUp, LeavesEmptyPagesAlone)
{
    const auto found =
        XPPageCleanUp::of(page(false), {.cropAndStraighten = true, .turnUpright = true});
    EXPECT_TRUE(found.isBlank);
    EXPECT_TRUE(found.edit.isNone());
}

// Forty pages as they lie on the glass of a scanner: at an angle, out of the middle, under a lid
// that is dark, with the noise of the lamp. At 100 dots an inch, a millimetre is four of them.
TEST(PageCleanUp, FindsThePaperAndItsAngle)
{
    QRandomGenerator random(7);
    const QSizeF size(700, 1000);
    const QPointF middle(500, 700);
    int missed = 0;
    for (int number = 0; number < 40; ++number) {
        const double degrees = random.bounded(12.0) - 6;
        const QPointF at = middle + QPointF(random.bounded(60) - 30, random.bounded(60) - 30);
        QImage glass(1000, 1400, QImage::Format_RGB32);
        glass.fill(QColor::fromHsv(0, 0, random.bounded(20, 90)));
        QPainter painter(&glass);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.translate(at);
        painter.rotate(degrees);
        painter.fillRect(QRectF(QPointF(-350, -500), size), QColor(245, 243, 235));
        for (int line = 0; line < 30; ++line) {
            for (int word = 0; word < 8; ++word)
                painter.fillRect(QRectF(-290 + word * 70, -430 + line * 28,
                                        24 + (line * 7 + word * 13) % 36, 11),
                                 QColor(40, 40, 60));
        }
        painter.end();
        for (int y = 0; y < glass.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(glass.scanLine(y));
            for (int x = 0; x < glass.width(); ++x) {
                const int noise = static_cast<int>(random.bounded(20)) - 10;
                const int value = std::clamp(qGray(line[x]) + noise, 0, 255);
                line[x] = qRgb(value, value, value);
            }
        }
        const auto edit = XPPageCleanUp::of(glass, {.cropAndStraighten = true}).edit;
        // Turning back moves the paper about the middle of the glass.
        const QPointF now = QTransform().rotate(-degrees).map(at - middle) + middle;
        const QRectF paper(now - QPointF(350, 500), size);
        const QRectF found(edit.crop.x() * 1000, edit.crop.y() * 1400, edit.crop.width() * 1000,
                           edit.crop.height() * 1400);
        const double farthest = std::max(
            {std::abs(found.left() - paper.left()), std::abs(found.right() - paper.right()),
             std::abs(found.top() - paper.top()), std::abs(found.bottom() - paper.bottom())});
        missed += std::abs(edit.straightenAngle + degrees) > 0.2 || farthest > 4 ? 1 : 0;
    }
    EXPECT_EQ(missed, 0);
}
