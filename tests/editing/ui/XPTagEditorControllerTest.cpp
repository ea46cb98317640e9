#include "XPTagEditorController.h"

#include "KPTagName.h"
#include "Karvex.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPTagsTokenFieldController.h"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

class TagEditor : public testing::Test
{
protected:
    TagEditor()
    {
        UserDefaults::standard().setValue(QStringLiteral("KPUseCommas"),
                                          PropertyValue::boolean(true));
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

TEST_F(TagEditor, AsAPanelGoesOnWithReturnAndWritesWhatItLeaves)
{
    XPTagEditorController panel(nullptr, XPTagEditorController::Form::Panel);
    QSignalSpy written(&panel, &XPTagEditorController::edited);
    QSignalSpy next(&panel, &XPTagEditorController::nextWanted);
    QLineEdit *field = panel.findChild<XPTagsEditor *>()->entry();
    panel.follow({a});
    EXPECT_FALSE(panel.isVisible()) << "nobody asked for it";
    panel.editTagsForFilePaths({a});
    QTest::keyClicks(field, QStringLiteral("one"));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(next.size(), 0) << "the tag alone was ended";
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(next.size(), 1);
    ASSERT_EQ(written.size(), 1);
    EXPECT_EQ(written.last().first().value<KPFileEdit>().tags->after.last(), u"one");
    EXPECT_TRUE(panel.isVisible());

    QTest::keyClicks(field, QStringLiteral("two"));
    panel.follow({b});
    ASSERT_EQ(written.size(), 2) << "what was typed for the first is not lost";
    EXPECT_EQ(written.last().first().value<KPFileEdit>().paths, QStringList{a});
    EXPECT_EQ(panel.findChild<XPTagsEditor *>()->tags().first(), u"other");
    panel.follow({b});
    EXPECT_EQ(written.size(), 2);
}

TEST_F(TagEditor, AsASearchAsksForTagsAndEditsNothing)
{
    XPTagEditorController search(nullptr, XPTagEditorController::Form::Search);
    QSignalSpy written(&search, &XPTagEditorController::edited);
    QSignalSpy wanted(&search, &XPTagEditorController::searchWanted);
    search.askForTags();
    QLineEdit *field = search.findChild<XPTagsEditor *>()->entry();
    QTest::keyClicks(field, QStringLiteral("one,"));
    QTest::keyClicks(field, QStringLiteral("two words"));
    QTest::keyClick(field, Qt::Key_Return, Qt::ControlModifier);
    ASSERT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted.first().first().toStringList(),
              (QStringList{QStringLiteral("one"), QStringLiteral("two words")}));
    EXPECT_EQ(written.size(), 0);
    EXPECT_FALSE(search.isVisible());
}

// Tags come and go before the field, and buttons below it: both are made later than "Done".
TEST_F(TagEditor, IsWalkedThroughInTheOrderInSight)
{
    m_editor.editFiles(KPCommonTags::read({a}));
    m_editor.editFiles(KPCommonTags::read({a, b}));
    QApplication::setActiveWindow(&m_editor);
    ASSERT_EQ(QApplication::focusWidget(), entry());
    QStringList forward;
    QStringList back;
    for (const auto &[key, seen] : {std::pair(Qt::Key_Tab, &forward), {Qt::Key_Backtab, &back}}) {
        do {
            QTest::keyClick(QApplication::focusWidget(), key);
            const QWidget *stop = QApplication::focusWidget();
            const auto *push = qobject_cast<const QPushButton *>(stop);
            seen->append(push ? push->text() : stop->accessibleName());
        } while (QApplication::focusWidget() != entry() && seen->size() < 20);
    }
    const QStringList order{
        QStringLiteral("mine"),    QStringLiteral("other"),
        qtTrId("KPTagEditorDone"), qtTrId("KPCancel"),
        qtTrId("KPRating"),        qtTrId("KPChipTag").arg(QStringLiteral("Work")),
        qtTrId("KPTags")};
    std::reverse(back.begin(), back.end() - 1);
    EXPECT_EQ(forward.join(u'|').toStdString(), order.join(u'|').toStdString());
    EXPECT_EQ(back.join(u'|').toStdString(), order.join(u'|').toStdString());
}

TEST(TagsTokenField, TurnsTagsIntoTypedTextAndBack)
{
    KPTagName::intializeGlobals();
    using Field = XPTagsTokenFieldController;
    EXPECT_EQ(Field::displayStringToUserString(QStringLiteral(" two words")), u"\"two words\"");
    EXPECT_EQ(Field::displayStringToUserString(QStringLiteral("one")), u"one");
    EXPECT_EQ(Field::userStringToDisplayString(QStringLiteral("\"two \"words\"")), u"two words");
    const QStringList typed{
        QStringLiteral("\"Token two\""), QStringLiteral("TOKEN TWO"), {}, QStringLiteral("b")};
    const QString first = QStringLiteral("Token two");
    EXPECT_EQ(Field::tagDisplayNamesForEditingStrings(typed, true, false),
              (QStringList{first, QStringLiteral("b")}));
    EXPECT_EQ(Field::tagDisplayNamesForEditingStrings(typed, false, false).size(), 3);
    EXPECT_EQ(Field::grepStringForTags({first, QStringLiteral("b")}), u"tag:\"Token two\" tag:b");
}

TEST(TagEditorTexts, SayHowManyAndHowRated)
{
    EXPECT_EQ(XPTagEditorController::ratingString(0.0), u"not rated");
    EXPECT_EQ(XPTagEditorController::ratingString(4.0), u"rated 4/5");
    EXPECT_EQ(XPTagEditorController::ratingString({}), u"various ratings");
    EXPECT_TRUE(XPTagEditorController::windowTitleForFileCount(1, QStringLiteral("a\u202Eb"))
                    .contains(u"a"));
    EXPECT_TRUE(XPTagEditorController::windowTitleForFileCount(1200, {}).contains(u"1,200"));
    EXPECT_FALSE(XPTagEditorController::windowTitleForFileCount(0, {}).contains(u'0'));
}
