#include "XPPageCleanUp.h"

#include "XPTextLayer.h"

#include <QPainter>
#include <QTransform>
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
