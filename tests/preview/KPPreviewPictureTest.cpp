#include "KPPreviewPicture.h"

#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace {

// Half red, half blue: where the border between them is seen tells the place of the picture.
QImage halves(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int y = 0; y < height; ++y) {
        for (int x = width / 2; x < width; ++x)
            image.setPixelColor(x, y, Qt::blue);
    }
    return image;
}

class PreviewPicture : public testing::Test
{
protected:
    PreviewPicture()
    {
        m_picture.resize(400, 300);
        m_picture.show();
    }
    // Points at which the red begins, the border lies and the blue ends, in the middle row.
    struct Seen
    {
        int left = -1, border = -1, right = -1;
    };
    Seen seen()
    {
        const QImage image = m_picture.grab().toImage();
        Seen seen;
        const int y = image.height() / 2;
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (seen.left < 0 && colour.red() > 200 && colour.blue() < 60)
                seen.left = x;
            if (colour.blue() > 200 && colour.red() < 60) {
                seen.right = x;
                if (seen.border < 0)
                    seen.border = x;
            }
        }
        return seen;
    }
    void wheel(int angle, Qt::KeyboardModifiers modifiers = {}, const QPointF &at = {200, 150})
    {
        QWheelEvent event(at, m_picture.mapToGlobal(at), {}, {0, angle}, {}, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&m_picture, &event);
    }

    KPPreviewPicture m_picture;
};

} // namespace

TEST_F(PreviewPicture, IsSeenAsAWholeButNeverLargerThanItsPixels)
{
    m_picture.setPicture(halves(4000, 1000), true);
    const Seen large = seen();
    EXPECT_GE(large.left, 10);
    EXPECT_LE(large.right, 390);
    EXPECT_GT(large.right - large.left, 340);
    EXPECT_NEAR(large.border, 200, 2);
    m_picture.setPicture(halves(40, 30), true);
    const Seen small = seen();
    EXPECT_NEAR(small.right - small.left, 39, 2);
    m_picture.setPicture({}, true);
    EXPECT_EQ(seen().left, -1);
    m_picture.zoomBy(2); // nothing to enlarge
    EXPECT_TRUE(m_picture.isFitted());
}

TEST_F(PreviewPicture, KeepsWhatIsUnderThePointerWhileZooming)
{
    m_picture.setPicture(halves(2000, 1500), true);
    const int border = seen().border;
    for (int i = 0; i < 5; ++i)
        wheel(120, Qt::ControlModifier, QPointF(border, 150));
    EXPECT_FALSE(m_picture.isFitted());
    EXPECT_NEAR(seen().border, border, 3);
    for (int i = 0; i < 12; ++i)
        wheel(-120, Qt::ControlModifier, QPointF(border, 150));
    EXPECT_TRUE(m_picture.isFitted()) << "smaller than the whole there is nothing";
    m_picture.zoomBy(1e9);
    EXPECT_GT(m_picture.neededSide(), 2000);
    EXPECT_LE(m_picture.neededSide(), 2000 * KPPreviewPicture::largestZoom + 1);
}

TEST_F(PreviewPicture, MovesToItsEdgesAndNoFurther)
{
    m_picture.setPicture(halves(2000, 1500), true);
    m_picture.showPixels({200, 150});
    ASSERT_FALSE(m_picture.isFitted());
    int steps = 0;
    while (m_picture.moveBy({300, 0}) && steps < 50)
        ++steps;
    EXPECT_GT(steps, 1);
    EXPECT_LT(steps, 50);
    EXPECT_EQ(seen().left, -1) << "the right edge: blue only";
    EXPECT_TRUE(m_picture.moveBy({-300, 0})) << "back at once, not what was asked for in vain";
    m_picture.fit();
    QSignalSpy turned(&m_picture, &KPPreviewPicture::turnRequested);
    wheel(-60);
    EXPECT_EQ(turned.count(), 0) << "half a notch";
    wheel(-60);
    wheel(120);
    ASSERT_EQ(turned.count(), 2);
    EXPECT_EQ(turned.at(0).first().toInt(), 1);
    EXPECT_EQ(turned.at(1).first().toInt(), -1);
}

TEST_F(PreviewPicture, TakesABetterPictureOfTheSameWithoutMoving)
{
    m_picture.setPicture(halves(500, 375), true);
    m_picture.setOriginalSize({2000, 1500});
    m_picture.showPixels({200, 150});
    m_picture.moveBy({37, 0});
    const Seen before = seen();
    m_picture.setPicture(halves(2000, 1500), false);
    EXPECT_NEAR(seen().border, before.border, 3);
    m_picture.setPicture(halves(2000, 1500), true);
    EXPECT_TRUE(m_picture.isFitted()) << "another one is seen as a whole first";
    QTest::mouseDClick(&m_picture, Qt::LeftButton, {}, {200, 150});
    EXPECT_FALSE(m_picture.isFitted());
    QTest::mouseDClick(&m_picture, Qt::LeftButton, {}, {200, 150});
    EXPECT_TRUE(m_picture.isFitted());
}
