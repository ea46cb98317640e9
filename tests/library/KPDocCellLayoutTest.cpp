#include "KPDocCellLayout.h"

#include <QFont>
#include <gtest/gtest.h>

TEST(DocCellLayout, NothingOverlapsAndNothingLeavesItsCell)
{
    const QFont font;
    for (int zoom = 0; zoom <= 100; zoom += 5) {
        for (int width = 60; width <= 2600; width += 131) {
            const KPDocCellLayout layout(zoom / 100.0, width, font);
            ASSERT_GE(layout.columns(), 1);
            const QRect cell(QPoint(), layout.cell());
            EXPECT_LE(layout.columns() * cell.width(), std::max(width, cell.width())) << width;
            EXPECT_LE(layout.thumbnail(), std::max(1, width - 20));
            EXPECT_TRUE(cell.contains(layout.frame())) << zoom << ' ' << width;
            EXPECT_TRUE(cell.contains(layout.picture()));
            QRect above = layout.picture();
            for (int line = 0; line < KPDocCellLayout::lines; ++line) {
                const QRect text = layout.line(line);
                EXPECT_FALSE(text.intersects(above)) << line;
                EXPECT_TRUE(layout.frame().contains(text)) << line << ' ' << zoom << ' ' << width;
                above = text;
            }
        }
    }
}

TEST(DocCellLayout, PicturesGrowWithTheZoomWithinTheirBounds)
{
    const QFont font;
    int before = 0;
    for (int zoom = -10; zoom <= 110; ++zoom) {
        const int side = KPDocCellLayout(zoom / 100.0, 4000, font).thumbnail();
        EXPECT_GE(side, before);
        before = side;
    }
    EXPECT_EQ(KPDocCellLayout(-1, 4000, font).thumbnail(), KPDocCellLayout::smallestThumbnail);
    EXPECT_EQ(before, KPDocCellLayout::largestThumbnail);
    EXPECT_LT(KPDocCellLayout(0, 4000, font).titleFont().pointSizeF(),
              KPDocCellLayout(1, 4000, font).titleFont().pointSizeF());
}
