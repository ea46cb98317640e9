#include "KPFilterBar.h"

#include "KPTagName.h"
#include "XPFactorySettings.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// The criteria, found and worked as somebody without a pointer finds and works them.
class FilterBar : public testing::Test
{
protected:
    void SetUp() override
    {
        KPTagName::intializeGlobals();
        XPFactorySettings::registerAll();
        m_bar.show();
        QApplication::setActiveWindow(&m_bar);
    }
    template <typename Widget>
    Widget *named(const char *id)
    {
        for (Widget *each : m_bar.findChildren<Widget *>()) {
            if (each->accessibleName() == qtTrId(id))
                return each;
        }
        ADD_FAILURE() << "nothing is called " << id;
        return nullptr;
    }

    KPFilterBar m_bar;
    QSignalSpy m_changed{&m_bar, &KPFilterBar::stateChanged};
    QSignalSpy m_left{&m_bar, &KPFilterBar::left};
};

} // namespace

TEST_F(FilterBar, EnterSearchesAtOnceAndOnlyForWhatIsNew)
{
    auto *search = named<QLineEdit>("KPSearch");
    QTest::keyClicks(search, QStringLiteral("dry  dock"));
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_EQ(m_changed.size(), 1);
    EXPECT_EQ(m_bar.state()->searchString(), QStringLiteral("dry dock"));
    QTest::keyClick(search, Qt::Key_Return);
    QTest::keyClicks(search, QStringLiteral(" "));
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_EQ(m_changed.size(), 1) << "the same search is not run again";
}

TEST_F(FilterBar, EscapeFirstClearsThenLeaves)
{
    auto *search = named<QLineEdit>("KPSearch");
    m_bar.focusSearch();
    QTest::keyClicks(search, QStringLiteral("rent"));
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_TRUE(search->text().isEmpty());
    EXPECT_EQ(m_left.size(), 0);
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_EQ(m_left.size(), 1);
    QTest::keyClick(search, Qt::Key_Down); // on to the documents
    EXPECT_EQ(m_left.size(), 2);
}

TEST_F(FilterBar, EachCriterionIsAChoiceWithAName)
{
    auto *tags = named<QLineEdit>("KPFilterTags");
    QTest::keyClicks(tags, QStringLiteral("work,"));
    auto *date = named<QComboBox>("KPFilterDate");
    QTest::keyClick(date, Qt::Key_Down);
    auto *rating = named<QComboBox>("KPFilterRating");
    QTest::keyClick(rating, Qt::Key_End);
    EXPECT_EQ(m_changed.size(), 3);
    const auto state = m_bar.state();
    EXPECT_EQ(state->searchTags(), QStringList{QStringLiteral("work")});
    EXPECT_FALSE(state->dateString().isEmpty());
    EXPECT_EQ(state->ratingString(), QStringLiteral(">= 5"));
    EXPECT_FALSE(m_bar.isEmpty());

    m_bar.clear();
    EXPECT_TRUE(m_bar.isEmpty());
    EXPECT_EQ(m_changed.size(), 3) << "clearing is the window's doing, which searches itself";
}
