#include "XPCloudLayout.h"
#include "XPBestMatch.h"

#include <QPointF>
#include <cmath>
#include <gtest/gtest.h>

// Every character is half as wide as the font is large.
class EvenFonts : public XPCloudFonts
{
public:
    double width(const QString &text, double size) const override
    {
        return static_cast<double>(text.size()) * size / 2;
    }
    double ascent(double size) const override { return size * 0.8; }
    double descent(double size) const override { return size * 0.2; }
};

static XPCloudItem word(const QString &name, double count = 1, bool selected = false)
{
    return {QStringLiteral("user:") + name.toLower(), name, name, count, selected};
}

class CloudLayout : public testing::Test
{
protected:
    void show(const QList<XPCloudItem> &items, double width)
    {
        m_layout.setViewWidth(width + 10);
        m_layout.setItems(items);
        m_layout.layOut();
    }
    double right(qsizetype item) const { return m_layout.rects()[item].right(); }
    double gapAfter(qsizetype item) const
    {
        return m_layout.rects()[item + 1].left() - right(item);
    }

    EvenFonts m_fonts;
    XPCloudLayout m_layout{&m_fonts};
};

TEST_F(CloudLayout, SizesGrowWithTheSquareRootOfUse)
{
    show({word(QStringLiteral("a"), 1), word(QStringLiteral("b"), 26),
          word(QStringLiteral("c"), 101)},
         300);
    const auto &items = m_layout.drawnItems();
    EXPECT_DOUBLE_EQ(m_layout.fontSize(items[0]), 11.01);
    EXPECT_DOUBLE_EQ(m_layout.relativeRelevance(items[1]), 0.5);
    EXPECT_DOUBLE_EQ(m_layout.fontSize(items[2]), 19.01);
    show({word(QStringLiteral("a"), 7), word(QStringLiteral("b"), 7)}, 300);
    EXPECT_DOUBLE_EQ(m_layout.fontSize(m_layout.drawnItems()[1]), 13.41);
    m_layout.setOneWordPerLine(true);
    EXPECT_DOUBLE_EQ(m_layout.fontSize(m_layout.drawnItems()[1]), 15.51);
    show({}, 300);
    EXPECT_EQ(m_layout.minRelevance(), 1e6);
    EXPECT_EQ(m_layout.maxRelevance(), -1e6);
}

TEST_F(CloudLayout, CutsNamesOf42CharactersAndMore)
{
    const XPCloudItem longest = word(QStringLiteral("  ") + QString(41, u'x') + u' ');
    EXPECT_EQ(longest.itemDisplayName(true), QString(41, u'x'));
    const XPCloudItem tooLong = word(QString(42, u'x'));
    EXPECT_EQ(tooLong.itemDisplayName(true), QString(41, u'x') + u'…');
    EXPECT_EQ(tooLong.itemDisplayName(false).size(), 42);
    const XPCloudItem emoji = word(QString(40, u'x') + QStringLiteral("😀x"));
    EXPECT_EQ(emoji.itemDisplayName(true), QString(40, u'x') + u'…') << "no half of a character";
}

TEST_F(CloudLayout, JustifiesAllLinesButKeepsTheLastTogether)
{
    // 13.41 / 2 a character: words of 67.05 points.
    const QString ten(10, u'w');
    show({word(ten), word(ten), word(ten), word(ten), word(ten)}, 200);
    EXPECT_DOUBLE_EQ(m_layout.rects()[0].left(), 5);
    EXPECT_NEAR(right(1), 205, 1e-9) << "two fit, spread to both edges";
    EXPECT_NEAR(gapAfter(0), 200 - 2 * 67.05, 1e-9) << "however wide the gap becomes";
    EXPECT_DOUBLE_EQ(m_layout.rects()[2].left(), 5);
    EXPECT_EQ(m_layout.lineCount(), 3);
    show({word(ten), word(ten)}, 400);
    EXPECT_NEAR(gapAfter(0), 14.25, 1e-9);
    show({word(ten), word(ten)}, 2 * 67.05 + 7.125);
    EXPECT_EQ(m_layout.lineCount(), 1) << "with the smallest gap they just fit";
    show({word(ten), word(ten)}, 2 * 67.05 + 7.1);
    EXPECT_EQ(m_layout.lineCount(), 2);
}

TEST_F(CloudLayout, GivesAWordThatIsTooWideALineOfItsOwn)
{
    show({word(QStringLiteral("a")), word(QString(30, u'w')), word(QStringLiteral("b"))}, 60);
    EXPECT_EQ(m_layout.lineCount(), 3);
    EXPECT_GT(right(1), 60);
    EXPECT_EQ(m_layout.buildLineStartingAtIndex(3, {}, nullptr), 23) << "well past the end";
}

TEST_F(CloudLayout, NeedsTheHeightOfItsLines)
{
    show({}, 100);
    EXPECT_EQ(m_layout.requiredHeightToFitAllTags(), 20);
    show({word(QStringLiteral("a")), word(QStringLiteral("b"))}, 100);
    EXPECT_DOUBLE_EQ(m_layout.lineHeight(), 17);
    EXPECT_EQ(m_layout.requiredHeightToFitAllTags(), std::ceil(17 + 3.8));
    m_layout.setOneWordPerLine(true);
    EXPECT_EQ(m_layout.requiredHeightToFitAllTags(), std::ceil(2 * 17 + 3.8));
}

TEST_F(CloudLayout, FindsTheWordUnderAPoint)
{
    show({word(QStringLiteral("one"), 1), word(QStringLiteral("two"), 9, true)}, 300);
    const XPCloudItem &two = m_layout.drawnItems()[1];
    EXPECT_DOUBLE_EQ(m_layout.itemSize(two).width(), 3 * XPCloudLayout::selectedFontSize / 2 + 20);
    EXPECT_DOUBLE_EQ(m_layout.itemSize(two).height(), XPCloudLayout::selectedFontSize + 2);
    EXPECT_EQ(m_layout.pointToItem(m_layout.rects()[1].center()), 1);
    EXPECT_EQ(m_layout.pointToItem({right(0) + 1, m_layout.rects()[0].center().y()}), std::nullopt);
}

TEST(BestMatch, IsTheFirstThatBeginsWithWhatWasTyped)
{
    XPBestMatch match(QStringLiteral("IN"));
    const auto best = [&match] {
        return match.item() ? match.item()->displayName : QStringLiteral("none");
    };
    match.setBestMatchIfBetter(word(QStringLiteral("invoice"), 1, true));
    EXPECT_EQ(best(), u"none") << "a selected word never is";
    match.setBestMatchIfBetter(word(QStringLiteral("linen")));
    EXPECT_EQ(best(), u"linen");
    match.setBestMatchIfBetter(word(QStringLiteral("index")));
    EXPECT_EQ(best(), u"index");
    match.setBestMatchIfBetter(word(QStringLiteral("Inbox")));
    EXPECT_EQ(best(), u"index") << "both begin with it";
}
