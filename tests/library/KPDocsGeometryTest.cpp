#include "KPDocsGeometry.h"

#include <cmath>
#include <gtest/gtest.h>

static KPDocsGeometry grid(double roomWidth, double thumbnail, qsizetype count, int lines = 3)
{
    KPDocsGeometry geometry;
    geometry.setRoom({roomWidth, 600});
    geometry.setTextLines(lines);
    geometry.setCount(count);
    geometry.setThumbnailSize({thumbnail, thumbnail});
    return geometry;
}

TEST(DocsGeometry, FollowsItsFormulas)
{
    const KPDocsGeometry geometry = grid(1000, 100, 10);
    EXPECT_EQ(geometry.textRoom(), 42); // ceil(10 × 1.4 × 3)
    EXPECT_EQ(geometry.docRectSize(), QSizeF(100, 142));
    EXPECT_EQ(geometry.thumbnailGap(), 20);
    EXPECT_EQ(geometry.numColumns(), 8); // (1000 − 20) ÷ 120
    EXPECT_EQ(geometry.numRows(), 2);
    EXPECT_NEAR(geometry.gapSize(), 200.0 / 9, 1e-9);
    EXPECT_EQ(geometry.leftEdge(), 22);
    EXPECT_EQ(geometry.cellHeight(), 162);
    EXPECT_EQ(geometry.docRect(0), QRectF(22, 20, 100, 142));
    EXPECT_EQ(geometry.docRect(8), QRectF(22, 182, 100, 142));
    EXPECT_EQ(geometry.height(), 600);
    EXPECT_EQ(grid(1000, 100, 80).height(), 10 * 162);
}

TEST(DocsGeometry, GivesLabelsTheirSizeAndRoomByTheThumbnail)
{
    struct Row
    {
        double width;
        int font;
        double rooms[4];
    };
    for (const Row &row : {Row{50, 10, {0, 14, 28, 42}}, Row{100, 10, {0, 14, 28, 42}},
                           Row{101, 11, {0, 16, 31, 47}}, Row{149, 11, {0, 16, 31, 47}},
                           Row{150, 12, {0, 17, 34, 51}}, Row{768, 12, {0, 17, 34, 51}}}) {
        EXPECT_EQ(KPDocsGeometry::labelFontSize(row.width), row.font) << row.width;
        for (int lines = 0; lines < 4; ++lines)
            EXPECT_EQ(KPDocsGeometry::textRoom(row.width, lines), row.rooms[lines]) << row.width;
    }
    EXPECT_EQ(grid(1000, 100, 1, 0).docRectSize(), QSizeF(100, 100));
}

TEST(DocsGeometry, ZoomsBetweenItsEndsWithinTheRoom)
{
    EXPECT_EQ(KPDocsGeometry::widthForZoom(0), 50);
    EXPECT_EQ(KPDocsGeometry::widthForZoom(1), 768);
    EXPECT_NEAR(KPDocsGeometry::widthForZoom(0.2), 193.6, 1e-9);
    struct Row
    {
        double room, width, result;
    };
    for (const Row &row : {Row{788, 768, 768}, Row{787, 768, 767}, Row{1000, 193.6, 194},
                           Row{60, 50, 40}, Row{10, 50, 1}}) {
        KPDocsGeometry geometry = grid(row.room, 99, 1000);
        EXPECT_TRUE(geometry.setThumbnailWidth(row.width, true));
        EXPECT_EQ(geometry.thumbnailSize(), QSizeF(row.result, row.result)) << row.room;
        EXPECT_FALSE(geometry.setThumbnailWidth(row.width, true));
        EXPECT_GE(geometry.numColumns(), 1);
    }
}

TEST(DocsGeometry, GrowsPicturesAsLongAsAllAreInSight)
{
    for (const qsizetype count : {0, 1, 2, 3, 5, 7, 12, 20}) {
        for (const double width : {300.0, 700.0, 1280.0, 1920.0}) {
            KPDocsGeometry geometry = grid(width, 60, count);
            if (geometry.height() > 600)
                continue; // nothing to grow into
            geometry.setThumbnailWidth(60, true);
            const double fitted = geometry.thumbnailSize().width();
            EXPECT_GE(fitted, 60);
            EXPECT_LE(fitted, std::min(768.0, width - 20));
            EXPECT_EQ(fitted, std::trunc(fitted));
            EXPECT_EQ(geometry.height(), 600) << count << ' ' << width;
            if (fitted < std::min(764.0, width - 20)) {
                geometry.setThumbnailSize({fitted + 4, fitted + 4});
                EXPECT_GT(geometry.height(), 600) << count << ' ' << width;
            }
        }
    }
    KPDocsGeometry many = grid(1000, 60, 1000);
    many.setThumbnailWidth(60, true);
    EXPECT_EQ(many.thumbnailSize().width(), 60);
}

TEST(DocsGeometry, KeepsEveryDocumentInsideAndApart)
{
    for (int width = 60; width <= 2600; width += 37) {
        for (const double thumbnail : {50.0, 97.0, 194.0, 500.0, 768.0}) {
            KPDocsGeometry geometry = grid(width, 51, 40);
            geometry.setThumbnailWidth(thumbnail, false);
            const int columns = geometry.numColumns();
            const QRectF last = geometry.docRect(columns - 1);
            ASSERT_LE(last.right(), width) << width << ' ' << thumbnail;
            ASSERT_GE(geometry.docRect(0).left(), 0);
            for (int item = 1; item < 40; ++item)
                ASSERT_FALSE(geometry.docRect(item).intersects(geometry.docRect(item - 1)));
        }
    }
}

TEST(DocsGeometry, MapsPointsToDocuments)
{
    const KPDocsGeometry geometry = grid(1000, 100, 12); // 8 columns of 123
    struct Row
    {
        const char *what = "";
        QPointF point;
        qsizetype item = 0;
    };
    for (const Row &row :
         {Row{"in the first", {30, 30}, 0}, Row{"in the left margin", {2, 100}, 0},
          Row{"above all", {200, 1}, 1}, Row{"in the right margin", {995, 100}, 8},
          Row{"in the second row", {150, 200}, 9}, Row{"beyond the last", {990, 400}, 11},
          Row{"left of everything", {-50, -50}, 0}})
        EXPECT_EQ(geometry.hit(row.point).item, row.item) << row.what;
    EXPECT_EQ(grid(1000, 100, 0).hit({500, 500}).item, 0);
    for (qsizetype item = 0; item < 12; ++item) {
        const QRectF rect = geometry.docRect(item);
        EXPECT_EQ(geometry.itemUnder(rect.center()), item);
        EXPECT_EQ(geometry.itemUnder(rect.topLeft() - QPointF(3, 3)), item);
        EXPECT_FALSE(geometry.itemUnder(rect.topLeft() - QPointF(9, 9)));
    }
    EXPECT_FALSE(geometry.itemUnder(geometry.docRect(7).center() + QPointF(0, 162)) ==
                 geometry.itemUnder(geometry.docRect(7).center()));
    EXPECT_FALSE(geometry.itemUnder({500, 550}));
}

// What an enumeration of all documents says, for any rectangle.
TEST(DocsGeometry, FindsWhatARectangleTouchesAndDrawsAtLeastThat)
{
    KPDocsGeometry grouped = grid(640, 97, 0);
    grouped.setGroups({{.count = 7}, {.count = 9, .isOpen = false}, {.count = 1}, {.count = 30}});
    for (const KPDocsGeometry &geometry : {grid(640, 97, 47), grouped}) {
        for (int step = 0; step < 400; ++step) {
            const QRectF rect(step * 7 % 700 - 30, step * 13 % 1500 - 30, step * 5 % 300 + 1,
                              step * 11 % 400 + 1);
            QList<qsizetype> expected;
            for (qsizetype item = 0; item < geometry.count(); ++item) {
                if (geometry.docRect(item).intersects(rect))
                    expected.append(item);
            }
            QList<qsizetype> found;
            for (const KPDocsGeometry::Range &run : geometry.itemsIn(rect)) {
                for (qsizetype item = run.first; item <= run.last; ++item) {
                    if (geometry.docRect(item).intersects(rect)) // an edge alone is touched too
                        found.append(item);
                }
            }
            ASSERT_EQ(found, expected) << step;
            const KPDocsGeometry::Range drawn = geometry.rangeToDraw(rect);
            if (!expected.isEmpty()) {
                EXPECT_LE(drawn.first, expected.first()) << step;
                EXPECT_GE(drawn.last, expected.last()) << step;
            }
        }
    }
}

TEST(DocsGeometry, LaysGroupsOutBelowTheirHeaders)
{
    KPDocsGeometry geometry = grid(1000, 100, 0);
    geometry.setGroups({{.count = 10}, {.count = 5, .isOpen = false}, {.count = 3}});
    const double header = KPDocsGeometry::headerHeight;
    EXPECT_EQ(geometry.count(), 18);
    EXPECT_EQ(geometry.headerRect(1).top(), header + 2 * 162);
    EXPECT_EQ(geometry.headerRect(2).top(), 2 * header + 2 * 162);
    EXPECT_EQ(geometry.docRect(8).top(), header + 20 + 162);
    EXPECT_TRUE(geometry.docRect(12).isNull());
    EXPECT_EQ(geometry.docRect(15).top(), geometry.headerRect(2).bottom() + 20);
    EXPECT_EQ(geometry.docRect(17).bottom(), 3 * header + 3 * 162);
    const KPDocsGeometry::Hit onHeader = geometry.hit({50, header + 2 * 162 + 5});
    EXPECT_TRUE(onHeader.isOnHeader);
    EXPECT_EQ(onHeader.group, 1);
    const KPDocsGeometry::Hit below = geometry.hit({50, 5000});
    EXPECT_EQ(below.group, 2);
    EXPECT_EQ(below.item, 17);
    EXPECT_EQ(geometry.groupOfItem(14), 1);
    EXPECT_EQ(geometry.hit(geometry.docRect(16).center()).item, 16);
}
