#include "XPDropZoneGeometry.h"

#include <gtest/gtest.h>

using Geometry = XPDropZoneGeometry;

namespace {

const QRect laptop(0, 0, 1440, 900);
const QRect monitor(1440, -200, 2560, 1440);

Geometry::Screen plain(const QRect &rect)
{
    return {rect, rect};
}

struct Row
{
    const char *name = "";
    QList<Geometry::Screen> screens;
    Geometry::Wishes wishes;
    qsizetype screen = 0;
    QPoint on, off;
};

} // namespace

TEST(DropZoneGeometry, StandsAtTheOuterEdgeAsWished)
{
    constexpr int w = Geometry::width;
    const auto one = plain(laptop);
    const auto two = plain(monitor);
    const Geometry::Screen withPanels{laptop, QRect(0, 30, 1440, 830)};
    for (const Row &row : {
             Row{"the middle of the right", {one}, {}, 0, {1440 - w, 300}, {1438, 300}},
             Row{"left", {one}, {true, false, {}}, 0, {0, 300}, {2 - w, 300}},
             Row{"a wide strip", {one}, {false, true, {}}, 0, {1440 - w, 300}, {1420, 300}},
             Row{"a wide strip left", {one}, {true, true, {}}, 0, {0, 300}, {20 - w, 300}},
             Row{"the rightmost", {one, two}, {}, 1, {4000 - w, 370}, {3998, 370}},
             Row{"the leftmost", {two, one}, {true, false, {}}, 1, {0, 300}, {2 - w, 300}},
             Row{"moved", {one}, {false, false, 20.0}, 0, {1440 - w, 20}, {1438, 20}},
             Row{"moved away", {one}, {false, false, 5000.0}, 0, {1440 - w, 600}, {1438, 600}},
             Row{"not a number", {one}, {false, false, NAN}, 0, {1440 - w, 300}, {1438, 300}},
             Row{"below a panel", {withPanels}, {false, false, 0.0}, 0, {1440 - w, 30}, {1438, 30}},
             Row{"tiny", {plain({0, 0, 200, 100})}, {}, 0, {200 - w, 0}, {198, 0}},
         }) {
        SCOPED_TRACE(row.name);
        const Geometry made(row.screens, row.wishes);
        EXPECT_EQ(made.screen(), row.screen);
        EXPECT_EQ(made.onscreen(), QRect(row.on, QSize(w, Geometry::height)));
        EXPECT_EQ(made.offscreen(), QRect(row.off, QSize(w, Geometry::height)));
    }
}

TEST(DropZoneGeometry, AnotherWindowStandsBesideItOnTheScreen)
{
    constexpr int w = Geometry::width;
    const QSize window(460, 340);
    const Geometry right({plain(laptop)}, {});
    EXPECT_EQ(right.beside(window), QPoint(1440 - w - 12 - 460, 300));
    EXPECT_EQ(Geometry({plain(laptop)}, {true, false, {}}).beside(window), QPoint(w + 12, 300));
    EXPECT_EQ(Geometry({plain(laptop)}, {false, false, 600.0}).beside(window).y(), 900 - 340);
    EXPECT_EQ(right.beside({3000, 2000}), QPoint(0, 0));
}
