#include "KPCloudContents.h"
#include "KPCloudColours.h"
#include "KPTagClicks.h"
#include "KPTagMime.h"
#include "XPTranslations.h"

#include <QMimeData>
#include <cmath>
#include <gtest/gtest.h>

namespace {

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

} // namespace

static KPTagName *tag(const QString &name)
{
    return KPTagName::tagNameForUserEnteredTag(name);
}

static KPSearcher::TagSets manyTags(int count)
{
    KPSearcher::TagSets sets;
    for (int number = 0; number < count; ++number)
        sets.append(
            {tag(QStringLiteral("many%1").arg((number * 7919) % 1000, 4, 10, QLatin1Char('0'))),
             10000 - number});
    return sets;
}

static QStringList names(const QList<XPCloudItem> &items)
{
    QStringList names;
    for (const XPCloudItem &item : items)
        names.append(item.displayName);
    return names;
}

static QStringList shown(const KPSearcher::TagSets &sets, const KPCloudContents::Wishes &wishes,
                         int kind = KPCloudContents::userTags)
{
    const KPCloudContents contents(sets, kind, wishes, nullptr);
    return names(contents.items(contents.candidates().size()));
}

TEST(CloudContents, ChoosesByUseAndShowsByName)
{
    const KPCloudContents contents(manyTags(600), KPCloudContents::userTags, {}, nullptr);
    ASSERT_EQ(contents.candidates().size(), 500);
    EXPECT_EQ(contents.candidates().last().count, 10000 - 499);
    QStringList few = names(contents.items(20));
    ASSERT_EQ(few.size(), 20);
    EXPECT_TRUE(few.contains(manyTags(1).first().tag->displayName()));
    const QStringList asShown = few;
    few.sort();
    EXPECT_EQ(asShown, few);
}

TEST(CloudContents, FitsTheHeightOrAllButALine)
{
    EvenFonts fonts;
    for (const double height : {0.0, 16.0, 40.0, 90.0, 250.0, 1000.0, 100000.0}) {
        SCOPED_TRACE(height);
        XPCloudLayout layout(&fonts);
        layout.setViewWidth(210);
        const KPCloudContents contents(manyTags(600), KPCloudContents::userTags, {}, nullptr);
        contents.fill(layout, height);
        const double lines = std::floor(height / layout.lineHeight());
        if (height >= 100000) {
            EXPECT_EQ(layout.drawnItems().size(), 500);
        } else {
            EXPECT_LE(layout.lineCount(), lines);
            EXPECT_GE(layout.lineCount(), lines - 1);
        }
    }
}

TEST(CloudContents, LeavesOutWhatIsNotWanted)
{
    const KPSearcher::TagSets sets = {{tag(QStringLiteral("Straße")), 9},
                                      {tag(QStringLiteral("letter")), 5},
                                      {tag(QStringLiteral("paid")), 2}};
    EXPECT_EQ(shown(sets, {QStringLiteral("STRA"), {}, {}}), QStringList{QStringLiteral("Straße")});
    EXPECT_EQ(shown(sets, {{}, {}, {tag(QStringLiteral("LETTER"))}}),
              (QStringList{QStringLiteral("paid"), QStringLiteral("Straße")}));
    KPTagName *always = tag(QStringLiteral("always"));
    EXPECT_TRUE(shown(sets, {{}, {always}, {}}).contains(u"always"));
    EXPECT_FALSE(shown(sets, {QStringLiteral("paid"), {always}, {}}).contains(u"always"));
    XPTranslations::install(QLocale::c());
    KPTagName *unknown = KPTagName::tagNameWithDisplayName(
        qtTrId("KPUnknownUTITagTemplate").arg(QStringLiteral("xyz")), QStringLiteral("uti:dyn.x"));
    EXPECT_TRUE(shown({{unknown, 3}}, {}, KPCloudContents::fileTypes).isEmpty());
}

TEST(TagClicks, NarrowWidenAndExclude)
{
    KPTagName *tax = tag(QStringLiteral("Tax"));
    KPTagName *pdf = KPTagName::tagNameForUTITag(QStringLiteral("com.adobe.pdf"), {});
    KPTagName *png = KPTagName::tagNameForUTITag(QStringLiteral("public.png"), {});
    for (KPTagName *each : {tax, pdf}) {
        SCOPED_TRACE(each->keyName().toStdString());
        auto state = KPTagClicks::click(nullptr, each, false);
        EXPECT_TRUE(KPTagClicks::isSelected(state, each));
        EXPECT_FALSE(KPTagClicks::isSelected(KPTagClicks::click(state, each, false), each));
        state = KPTagClicks::click(state, each, true);
        EXPECT_TRUE(KPTagClicks::isExcluded(state, each));
        EXPECT_FALSE(KPTagClicks::isSelected(state, each)) << "never both";
        EXPECT_FALSE(KPTagClicks::isExcluded(KPTagClicks::showWith(state, each), each));
        EXPECT_FALSE(KPTagClicks::isExcluded(KPTagClicks::clear(state, each), each));
    }
    const auto state = KPTagClicks::showWith(KPTagClicks::showWith(nullptr, pdf), png);
    EXPECT_FALSE(KPTagClicks::isSelected(state, pdf)) << "two types would widen";
}

TEST(CloudColours, StandOutFromEveryBackground)
{
    const KPCloudColours::Parameters parameters;
    for (const QColor &background :
         {QColor(0xFAF9F7), QColor(0x2C2D31), QColor(Qt::white), QColor(Qt::black)}) {
        for (int tenth = 0; tenth <= 10; ++tenth) {
            const double relevance = tenth / 10.0;
            for (const KPCloudColours::Look &look :
                 {KPCloudColours::Look{relevance}, KPCloudColours::Look{relevance, false, true},
                  KPCloudColours::Look{relevance, false, false, true}}) {
                const QColor colour =
                    KPCloudColours::word(look, parameters, QColor(Qt::gray), background);
                EXPECT_GE(KPCloudColours::contrast(colour, background), 4.5)
                    << background.name().toStdString() << ' ' << relevance;
            }
        }
    }
}

TEST(TagMime, BringsTheUsersTagsAcross)
{
    KPTagName *odd = tag(QStringLiteral("ä/ b:c"));
    KPTagName *pdf = KPTagName::tagNameForUTITag(QStringLiteral("com.adobe.pdf"), {});
    const std::unique_ptr<QMimeData> data(KPTagMime::mimeData({odd, pdf}));
    EXPECT_EQ(KPTagMime::tags(data.get()), KPTagName::Tags{odd});
    QMimeData hostile;
    hostile.setData(KPTagMime::type, QByteArray("user:\0\xff\xfe\0uti:x\0:\0", 15));
    EXPECT_TRUE(KPTagMime::tags(&hostile).size() <= 1);
}
