#include "XPTagEditorController.h"

#include "Karvex.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPTagsEditor.h"

#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

class TagEditor : public testing::Test
{
protected:
    TagEditor()
    {
        UserDefaults::standard().setValue(QStringLiteral("KPImportOnlyUpdateCommonTags"),
                                          PropertyValue::boolean(true));
    }
    QString makeFile(const char *name, const QStringList &tags, double rating = 0) const
    {
        QString path = m_folder.file(QString::fromLatin1(name));
        EXPECT_FALSE(Karvex::setUserTags(tags, path));
        EXPECT_FALSE(Karvex::setRating(rating, path));
        return path;
    }
    KPFileEdit edit() const
    {
        return m_edited.isEmpty() ? KPFileEdit() : m_edited.last().first().value<KPFileEdit>();
    }
    QLineEdit *entry() const { return m_editor.findChild<XPTagsEditor *>()->entry(); }
    QToolButton *button(const QString &text) const
    {
        for (auto *each : m_editor.findChildren<QToolButton *>()) {
            if (each->accessibleName() == text)
                return each;
        }
        return nullptr;
    }

    const QString work = QStringLiteral("work");
    const QString mine = QStringLiteral("mine");
    TestFolder m_folder;
    XPTagEditorController m_editor{nullptr};
    QSignalSpy m_edited{&m_editor, &XPTagEditorController::edited};
    const QString a = makeFile("a", {work, mine}, 2);
    const QString b = makeFile("b", {QStringLiteral("other"), QStringLiteral("Work")}, 5);
};

TEST_F(TagEditor, ShowsWhatAllShareAndWritesOnlyWhatWasTouched)
{
    m_editor.editFiles(KPCommonTags::read({a, b}));
    EXPECT_EQ(m_editor.findChild<XPTagsEditor *>()->tags(), QStringList{QStringLiteral("Work")});
    EXPECT_FALSE(m_editor.writeCommonTags()) << "nothing was touched";
    QTest::keyClicks(entry(), QStringLiteral("new one"));
    QTest::keyClick(entry(), Qt::Key_Return, Qt::ControlModifier);
    ASSERT_EQ(m_edited.size(), 1);
    EXPECT_EQ(edit().paths, (QStringList{a, b}));
    EXPECT_EQ(edit().tags->after, (QStringList{QStringLiteral("Work"), QStringLiteral("new one")}));
    EXPECT_FALSE(edit().rating) << "the ratings differ and were not touched";
    EXPECT_FALSE(m_editor.isVisible());
}

TEST_F(TagEditor, GivesToAllAndTakesFromAllWhatSomeHave)
{
    m_editor.editFiles(KPCommonTags::read({a, b}));
    ASSERT_TRUE(button(mine));
    QTest::mouseClick(button(mine), Qt::LeftButton, {}, QPoint(4, 4));
    button(QStringLiteral("other"))->menu()->actions().last()->setChecked(true);
    ASSERT_TRUE(m_editor.writeCommonTags());
    EXPECT_EQ(edit().tags->before, (QStringList{QStringLiteral("Work"), QStringLiteral("other")}));
    EXPECT_EQ(edit().tags->after, (QStringList{QStringLiteral("Work"), mine}));
}

TEST_F(TagEditor, LeavesOutWhatCannotBeReadAndSaysSo)
{
    const QString torn = makeFile("torn", {});
    ASSERT_FALSE(XPExtendedAttributes::write(torn, Karvex::spotlightKey(Karvex::userTagsKey),
                                             "bplist00garbage"));
    const auto files = KPCommonTags::read({a, torn, m_folder.path(QStringLiteral("gone"))});
    EXPECT_EQ(files.unreadable.size(), 2);
    EXPECT_EQ(files.paths, QStringList{a});
    EXPECT_EQ(files.common, (QStringList{work, mine}));
    m_editor.editFiles(KPCommonTags::read({torn}));
    EXPECT_FALSE(entry()->isEnabled());
}

TEST_F(TagEditor, ReplacesAllTagsWhenTheSettingSaysSo)
{
    UserDefaults::standard().setValue(QStringLiteral("KPImportOnlyUpdateCommonTags"),
                                      PropertyValue::boolean(false));
    m_editor.editFiles(KPCommonTags::read({a, b}));
    EXPECT_FALSE(m_editor.writeCommonTags());
    QTest::keyClicks(entry(), QStringLiteral("x,"));
    ASSERT_TRUE(m_editor.writeCommonTags());
    EXPECT_EQ(edit().tags->before.size(), 3);
}

TEST(TagEditorTexts, SayHowManyAndHowRated)
{
    EXPECT_EQ(XPTagEditorController::ratingString(0.0), u"not rated");
    EXPECT_EQ(XPTagEditorController::ratingString(4.0), u"rated 4/5");
    EXPECT_EQ(XPTagEditorController::ratingString({}), u"various ratings");
    EXPECT_TRUE(XPTagEditorController::windowTitleForFileCount(1, QStringLiteral("a\u202Eb"))
                    .contains(u"a"));
    EXPECT_TRUE(XPTagEditorController::windowTitleForFileCount(1200, {}).contains(u"1,200"));
}
