#include "KPPrompts.h"

#include "XPMutex.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// Questions as the window shows them, answered with the keys and the pointer.
class Prompts : public testing::Test
{
protected:
    void SetUp() override
    {
        xpGuiThread.assertHere();
        m_window.show();
    }
    QMessageBox *ask(int cancelButton)
    {
        xpGuiThread.assertHere();
        m_prompts.ask({QStringLiteral("Rename <b>it</b>?"),
                       QStringLiteral("See <a href='file:///'>this</a>."),
                       {QStringLiteral("Keep"), QStringLiteral("Use")},
                       cancelButton},
                      [this](int answer) { m_answers.append(answer); });
        return box();
    }
    QMessageBox *box() const // the one in sight: one that was answered goes a little later
    {
        for (auto *each : m_window.findChildren<QMessageBox *>()) {
            if (each->isVisible())
                return each;
        }
        return nullptr;
    }
    static QPushButton *button(QMessageBox *box, const char *text)
    {
        for (QAbstractButton *each : box->buttons()) {
            if (each->text() == QLatin1String(text))
                return qobject_cast<QPushButton *>(each);
        }
        return nullptr;
    }

    QWidget m_window;
    KPPrompts m_prompts{&m_window};
    QList<int> m_answers;
};

} // namespace

TEST_F(Prompts, AnswerWithTheButtonThatWasChosen)
{
    QTest::mouseClick(button(ask(-1), "Use"), Qt::LeftButton);
    EXPECT_EQ(m_answers, QList<int>{1});
    EXPECT_TRUE(QTest::qWaitFor([this] { return box() == nullptr; }));
}

TEST_F(Prompts, ReturnTakesTheFirstWhichIsTheSafeOne)
{
    QTest::keyClick(ask(-1), Qt::Key_Return);
    EXPECT_EQ(m_answers, QList<int>{0});
}

TEST_F(Prompts, EscapeCancels)
{
    QTest::keyClick(ask(1), Qt::Key_Escape);
    EXPECT_EQ(m_answers, QList<int>{1});
}

TEST_F(Prompts, TheCloseButtonCancels)
{
    ask(0)->close();
    EXPECT_EQ(m_answers, QList<int>{0});
}

TEST_F(Prompts, AQuestionWithoutACancelButtonCanBeLeftUnanswered)
{
    QTest::keyClick(ask(-1), Qt::Key_Escape);
    ask(-1)->close();
    EXPECT_EQ(m_answers, (QList<int>{-1, -1}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return box() == nullptr; }));
}

// As filing does: the second question stands while the box of the first is still going.
TEST_F(Prompts, AnAnswerMayLeadToAnotherQuestion)
{
    xpGuiThread.assertHere();
    m_prompts.ask({QStringLiteral("First"), {}, {QStringLiteral("Yes"), QStringLiteral("No")}, 1},
                  [this](int first) {
                      m_answers.append(first);
                      ask(1);
                  });
    QTest::mouseClick(button(box(), "Yes"), Qt::LeftButton);
    ASSERT_TRUE(box());
    EXPECT_TRUE(box()->text().startsWith(u"Rename"));
    QTest::mouseClick(button(box(), "Keep"), Qt::LeftButton);
    EXPECT_EQ(m_answers, (QList<int>{0, 0}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return box() == nullptr; }));
}

TEST_F(Prompts, StandOverTheWindowInFrontButOverNoDialog)
{
    QWidget other;
    other.show();
    QApplication::setActiveWindow(&other);
    ask(0);
    EXPECT_EQ(other.findChildren<QMessageBox *>().size(), 1);
    EXPECT_EQ(box(), nullptr);
    QDialog dialog(&m_window);
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    EXPECT_NE(ask(0), nullptr);
}

TEST_F(Prompts, NamesAreShownAsPlainTextAndBlockOnlyTheirWindow)
{
    const QMessageBox *shown = ask(1);
    EXPECT_EQ(shown->textFormat(), Qt::PlainText);
    EXPECT_EQ(shown->windowModality(), Qt::WindowModal);
    EXPECT_TRUE(shown->text().contains(u"<b>"));
    delete shown;
    EXPECT_EQ(m_answers, QList<int>{}) << "a box that goes with its window answers nothing";

    xpGuiThread.assertHere();
    m_prompts.alert(QStringLiteral("Full"), QStringLiteral("No room"));
    ASSERT_TRUE(box());
    EXPECT_EQ(box()->informativeText(), QStringLiteral("No room"));
    QTest::keyClick(box(), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([this] { return box() == nullptr; }));
}
