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
        static_cast<QWidget &>(m_bar).show();
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
    QSignalSpy m_changed{&m_bar, &KPFilterBar::stateAsked};
};

} // namespace

TEST_F(FilterBar, EachCriterionIsAChoiceWithAName)
{
    const auto asked = [this] { return m_changed.last().first().value<KPSearchState::Ptr>(); };
    QTest::keyClicks(named<QLineEdit>("KPFilterTags"), QStringLiteral("work,"));
    ASSERT_EQ(m_changed.size(), 1);
    EXPECT_EQ(asked()->searchTags(), QStringList{QStringLiteral("work")});
    m_bar.show(asked());
    QTest::keyClick(named<QComboBox>("KPFilterDate"), Qt::Key_Down);
    EXPECT_FALSE(asked()->dateString().isEmpty());
    m_bar.show(asked());
    QTest::keyClick(named<QComboBox>("KPFilterRating"), Qt::Key_End);
    EXPECT_EQ(asked()->ratingString(), QStringLiteral(">= 5"));
    EXPECT_EQ(m_changed.size(), 3) << "what is shown is not asked for again";
}
