#include "KPStatusLine.h"

#include "KPDocIcons.h"
#include "XPMutex.h"
#include "XPPrompts.h"

#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

class StatusLine : public testing::Test
{
protected:
    void SetUp() override
    {
        KPDocIcons::registerIcons();
        m_line.resize(900, 28);
        m_line.show();
    }
    QToolButton *stop() const
    {
        for (auto *button : m_line.findChildren<QToolButton *>()) {
            if (button->isVisible() && button->objectName() != u"problems")
                return button;
        }
        return nullptr;
    }
    bool shows(const QString &text) const
    {
        for (const QLabel *label : m_line.findChildren<QLabel *>()) {
            if (label->isVisible() && label->text().contains(text))
                return true;
        }
        return false;
    }

    KPStatusLine m_line;
};

struct Told : public XPPrompts
{
    explicit Told(QString *list) : m_text(list) {}
    void ask(const Question &question, std::function<void(int)> answer) override
    {
        answer(question.cancelButton);
    }
    void alert(const QString &, const QString &text) override { *m_text = text; }
    QString *m_text;
};

} // namespace

TEST_F(StatusLine, CountsDocumentsInTheUsersNumbers)
{
    m_line.showCounts(12345, 0, 0);
    EXPECT_TRUE(shows(QLocale().toString(12345)));
    m_line.showCounts(12345, 678, 5'000'000);
    EXPECT_TRUE(shows(QStringLiteral("678")));
    EXPECT_TRUE(shows(QStringLiteral("MB")));
}

TEST_F(StatusLine, LongWorkShowsItsProgressAndCanBeStopped)
{
    QSignalSpy searchStopped(&m_line, &KPStatusLine::stopSearchRequested);
    QSignalSpy editStopped(&m_line, &KPStatusLine::stopEditRequested);
    EXPECT_FALSE(stop());
    m_line.showSearching(true);
    EXPECT_FALSE(stop()) << "most searches are over before anybody could read of them";
    ASSERT_TRUE(QTest::qWaitFor([&] { return stop() != nullptr; }));
    EXPECT_FALSE(stop()->accessibleName().isEmpty());
    QTest::mouseClick(stop(), Qt::LeftButton);
    EXPECT_EQ(searchStopped.size(), 1);
    m_line.showSearching(false);

    m_line.showEditing(1, 3);
    EXPECT_FALSE(stop()) << "over before anybody could read of it";
    m_line.showEditing(40, 300);
    ASSERT_TRUE(stop());
    const auto *bar = stop()->parentWidget()->findChild<QProgressBar *>();
    EXPECT_EQ(bar->maximum(), 300);
    EXPECT_EQ(bar->value(), 40);
    QTest::mouseClick(stop(), Qt::LeftButton);
    EXPECT_EQ(editStopped.size(), 1);
    m_line.endEditing();
    EXPECT_FALSE(stop());
}

TEST_F(StatusLine, ListsProblemsAsPlainTextAndNotWithoutEnd)
{
    xpGuiThread.assertHere();
    QString text;
    XPPrompts::install(std::make_unique<Told>(&text));
    auto *button = m_line.findChild<QToolButton *>(QStringLiteral("problems"));
    EXPECT_FALSE(button->isVisible());
    QStringList problems;
    for (int number = 0; number < 500; ++number)
        problems.append(QStringLiteral("/a/<b>%1 cannot be read").arg(number));
    m_line.showProblems(problems);
    ASSERT_TRUE(button->isVisible());
    EXPECT_FALSE(button->toolTip().contains(u"<b>0"));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_TRUE(text.contains(u"<b>0 cannot be read"));
    EXPECT_LT(text.count(u'\n'), 20);
    EXPECT_TRUE(text.contains(qtTrId("KPAndMore", 500 - static_cast<int>(text.count(u'\n')))));
    m_line.showProblems({});
    EXPECT_FALSE(button->isVisible());
    XPPrompts::install(nullptr);
}

// What is done in a moment must not flicker by.
TEST_F(StatusLine, TellsOfTheIndexOnlyWhenItTakesLong)
{
    m_line.showIndex(QStringLiteral("Reading folders"));
    EXPECT_FALSE(shows(QStringLiteral("Reading folders")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return shows(QStringLiteral("Reading folders")); }));
    m_line.showIndex({});
    EXPECT_FALSE(shows(QStringLiteral("Reading folders")));
}
