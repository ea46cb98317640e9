#include "XPTagsEditor.h"

#include "KPTagChips.h"
#include "KPTagName.h"
#include "XPTagChip.h"
#include "XPTagEntry.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

static QStringList list(const char *texts)
{
    return QString::fromUtf8(texts).split(u'|', Qt::SkipEmptyParts);
}

TEST(TagEntry, CutsCleansAndSpellsTags)
{
    KPTagName::intializeGlobals();
    const struct
    {
        const char *typed, *present, *known, *expected;
    } cases[] = {
        {"work", "", "", "work"},
        {" a , b\tc\nd", "", "", "a|b|c|d"},
        {",, ,", "", "", ""},
        {"Work,WORK", "", "", "Work"},
        {"work", "Work", "", ""},
        {"CAFE\u0301", "", "Caf\u00e9", "Cafe\u0301"},
        {"two%20words", "", "", "two words"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(
            XPTagEntry::tags(QString::fromUtf8(each.typed), list(each.present), list(each.known)),
            list(each.expected))
            << each.typed;
}

TEST(TagsEditor, IsUsableByKeyboardAlone)
{
    KPTagName::intializeGlobals();
    XPTagsEditor editor(XPTagsEditor::Purpose::Filter);
    editor.show();
    QApplication::setActiveWindow(&editor);
    editor.focusEntry();
    QSignalSpy edited(&editor, &XPTagsEditor::tagsEdited);
    QTest::keyClicks(editor.entry(), QStringLiteral("one,two"));
    EXPECT_EQ(editor.tags(), list("one")) << "the second is still being typed";
    QTest::keyClick(editor.entry(), Qt::Key_Return);
    EXPECT_EQ(editor.tags(), list("one|two"));
    EXPECT_EQ(edited.size(), 2);

    QTest::keyClick(editor.entry(), Qt::Key_Left);
    auto *chip = qobject_cast<XPTagChip *>(QApplication::focusWidget());
    ASSERT_TRUE(chip);
    QTest::keyClick(chip, Qt::Key_Space);
    EXPECT_EQ(editor.excludedTags(), list("two"));
    EXPECT_TRUE(chip->accessibleName().contains(u"without"));
    QTest::keyClick(chip, Qt::Key_Delete);
    EXPECT_EQ(editor.excludedTags(), list(""));
    EXPECT_EQ(QApplication::focusWidget(), editor.entry());
    EXPECT_EQ(edited.size(), 4);
}

TEST(TagChips, StayInTheirLineAndCountTheRest)
{
    const QFontMetrics metrics((QFont()));
    const QStringList tags = list("invoice|work|a rather long tag that fits nowhere|x|y");
    for (int width = 40; width < 600; width += 7) {
        const QRect line(0, 0, width, 20);
        const auto chips = KPTagChips::layout(tags, line, metrics);
        ASSERT_FALSE(chips.isEmpty());
        if (width > 80) {
            EXPECT_GE(chips.first().rect.left(), 0) << width;
            EXPECT_LE(chips.last().rect.right(), width) << width;
        }
        if (chips.size() <= tags.size() && chips.size() > 1) {
            EXPECT_TRUE(chips.last().text.startsWith(u'+') || chips.size() == tags.size());
        }
    }
}
