#include "XPStarsEditor.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace {

class StarsEditor : public testing::Test
{
protected:
    void SetUp() override
    {
        m_editor.resize(m_editor.sizeHint());
        m_editor.show();
    }
    QPoint star(int number) const
    {
        const int side = (m_editor.width() - 6) / 5;
        return {3 + (number - 1) * side + side / 2, m_editor.height() / 2};
    }
    QList<int> rated()
    {
        QList<int> all;
        for (const QList<QVariant> &each : m_rated)
            all.append(each.first().toInt());
        m_rated.clear();
        return all;
    }

    XPStarsEditor m_editor;
    QSignalSpy m_rated{&m_editor, &XPStarsEditor::rated};
};

} // namespace

TEST_F(StarsEditor, TheStarThatIsTheRatingTakesItAway)
{
    m_editor.setRating(3);
    EXPECT_EQ(rated(), QList<int>{}) << "showing is no rating";
    QTest::mouseClick(&m_editor, Qt::LeftButton, {}, star(4));
    QTest::mouseClick(&m_editor, Qt::LeftButton, {}, star(4));
    QTest::mouseClick(&m_editor, Qt::LeftButton, {}, star(1));
    EXPECT_EQ(rated(), (QList<int>{4, 0, 1}));
    QTest::mouseClick(&m_editor, Qt::RightButton, {}, star(5));
    QTest::mousePress(&m_editor, Qt::LeftButton, {}, star(5));
    QTest::mouseRelease(&m_editor, Qt::LeftButton, {}, {star(5).x(), -40});
    EXPECT_EQ(rated(), QList<int>{}) << "another button, and one let go elsewhere";
}

TEST_F(StarsEditor, DigitsAndArrowsRate)
{
    QTest::keyClick(&m_editor, Qt::Key_5);
    QTest::keyClick(&m_editor, Qt::Key_Left);
    QTest::keyClick(&m_editor, Qt::Key_0);
    QTest::keyClick(&m_editor, Qt::Key_Left); // there is nothing below none
    EXPECT_EQ(rated(), (QList<int>{5, 4, 0}));
    // The same rating once more: those of a selection may differ though they look alike.
    QTest::keyClick(&m_editor, Qt::Key_0);
    EXPECT_EQ(rated(), QList<int>{0});
}

TEST_F(StarsEditor, RollingPastDoesNotRate)
{
    QWheelEvent roll(QPointF(star(2)), m_editor.mapToGlobal(QPointF(star(2))), {}, {0, 120},
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&m_editor, &roll);
    EXPECT_FALSE(roll.isAccepted());
    EXPECT_EQ(rated(), QList<int>{});
}

TEST_F(StarsEditor, AssistiveProgramsSetItsValue)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&m_editor);
    ASSERT_TRUE(accessible);
    EXPECT_EQ(accessible->role(), QAccessible::Slider);
    EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty());
    QAccessibleValueInterface *value = accessible->valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->maximumValue().toInt(), 5);
    value->setCurrentValue(2);
    EXPECT_EQ(rated(), QList<int>{2});
}

TEST_F(StarsEditor, LooksChangeWithTheRatingAndUnderThePointer)
{
    const auto look = [this] { return m_editor.grab().toImage(); };
    const QImage none = look();
    m_editor.setRating(3.5);
    const QImage half = look();
    m_editor.setRating(4);
    EXPECT_NE(half, none);
    EXPECT_NE(half, look()) << "half a star is shown as such";
    const QImage four = look();
    QMouseEvent move(QEvent::MouseMove, QPointF(star(1)), m_editor.mapToGlobal(QPointF(star(1))),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&m_editor, &move);
    EXPECT_NE(look(), four) << "what a click would give";
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&m_editor, &leave);
    EXPECT_EQ(look(), four);
}
