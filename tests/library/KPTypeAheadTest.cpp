#include "KPTypeAhead.h"

#include "UserDefaults.h"

#include <QKeyEvent>
#include <gtest/gtest.h>

namespace {

class TypeAhead : public testing::Test
{
protected:
    void SetUp() override { setDelay(3600); }
    static void setDelay(double seconds)
    {
        UserDefaults::standard().setValue(QStringLiteral("KPTypeAheadTimeoutDelay"),
                                          PropertyValue::real(seconds));
    }
    bool type(const QString &text, Qt::KeyboardModifiers modifiers = {})
    {
        bool isTaken = false;
        for (const QChar each : text) {
            const QKeyEvent event(QEvent::KeyPress, 0, modifiers, QString(each));
            int row = -1;
            isTaken = m_typed.take(
                event,
                {static_cast<int>(m_names.size()), [this](int number) { return m_names[number]; }},
                m_row, &row);
            m_row = row < 0 ? m_row : row;
        }
        return isTaken;
    }

    QStringList m_names{QStringLiteral("2024-01 a"), QStringLiteral("2024-03 b"),
                        QStringLiteral("Ärger"),     QStringLiteral("Area"),
                        QStringLiteral("b c"),       QStringLiteral("b d")};
    int m_row = -1;
    KPTypeAhead m_typed;
};

} // namespace

TEST_F(TypeAhead, FindsTheNextNameThatBeginsSo)
{
    EXPECT_TRUE(type(QStringLiteral("2024-03")));
    EXPECT_EQ(m_row, 1);
    m_typed.reset();
    type(QStringLiteral("AR")); // case and marks aside
    EXPECT_EQ(m_row, 2);
    m_typed.reset();
    type(QStringLiteral("are"));
    EXPECT_EQ(m_row, 3);
    m_typed.reset();
    type(QStringLiteral("b d"));
    EXPECT_EQ(m_row, 5);
    EXPECT_TRUE(type(QStringLiteral("x"))) << "a name that is not there is still a name";
    EXPECT_EQ(m_row, 5);
}

TEST_F(TypeAhead, GoesOnWithTheSameLetterAndBeginsAnewAfterAWhile)
{
    type(QStringLiteral("b"));
    EXPECT_EQ(m_row, 4);
    type(QStringLiteral("b"));
    EXPECT_EQ(m_row, 5);
    type(QStringLiteral("b"));
    EXPECT_EQ(m_row, 4);
    m_typed.reset();
    setDelay(0);
    type(QStringLiteral("2a")); // two words
    EXPECT_EQ(m_row, 2);
}

TEST_F(TypeAhead, LeavesOtherKeysAlone)
{
    EXPECT_FALSE(type(QStringLiteral("a"), Qt::ControlModifier));
    EXPECT_FALSE(type(QStringLiteral(" ")));
    EXPECT_FALSE(type(QStringLiteral("\r")));
    EXPECT_TRUE(type(QStringLiteral("A"), Qt::ShiftModifier));
}
