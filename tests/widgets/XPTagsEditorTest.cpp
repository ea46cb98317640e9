#include "XPTagsEditor.h"

#include "KPTagChips.h"
#include "KPTagName.h"
#include "UserDefaults.h"
#include "XPSuggestionWindow.h"
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

TEST(TagEntry, EndsTagsWhereTheSettingSaysSo)
{
    const struct
    {
        const char *typed;
        bool commas;
        const char *finished, *rest;
    } cases[] = {
        {"two words, x", true, "two words", " x"},
        {"\"two words\"\n", true, "two words", ""},
        {"a\tb\n\nc", true, "a|b", "c"},
        {"one two", false, "one", "two"},
        {"\"two words\" three", false, "two words", "three"},
        {"\"still, being", false, "", "\"still, being"},
        {"\"torn\nnext", false, "\"torn", "next"},
        {" ,, ", false, "", ""},
    };
    for (const auto &each : cases) {
        const auto typed = XPTagEntry::split(QString::fromUtf8(each.typed), each.commas);
        EXPECT_EQ(typed.finished, list(each.finished)) << each.typed;
        EXPECT_EQ(typed.rest, QString::fromUtf8(each.rest)) << each.typed;
    }
    EXPECT_EQ(XPTagEntry::typed(QStringLiteral(" two words ")), u"\"two words\"");
    EXPECT_EQ(XPTagEntry::tagOfTyped(QStringLiteral("\"two words\"")), u"two words");
    EXPECT_EQ(XPTagEntry::tagOfTyped(QStringLiteral("5\" disk")), u"5\" disk");
}

TEST(TagsEditor, TakesASuggestionByOneKey)
{
    KPTagName::intializeGlobals();
    UserDefaults &defaults = UserDefaults::standard();
    const auto set = [&](const char *key, const PropertyValue &value) {
        defaults.setValue(QLatin1String(key), value);
    };
    set("KPShowSuggestionWindow", PropertyValue::boolean(true));
    set("KPCompletionDelay", PropertyValue::real(0));
    XPTagsEditor editor(XPTagsEditor::Purpose::Edit);
    editor.setCompletion([](const QString &typed) {
        QList<XPTagSuggestion> found;
        for (const char *tag : {"invoice", "insurance"}) {
            if (QString::fromLatin1(tag).startsWith(typed))
                found.append({QString::fromLatin1(tag), 3});
        }
        return found;
    });
    editor.show();
    QApplication::setActiveWindow(&editor);
    editor.focusEntry();
    auto *window = editor.findChild<XPSuggestionWindow *>();
    const auto type = [&](const char *text) {
        QTest::keyClicks(editor.entry(), QString::fromLatin1(text));
        return QTest::qWaitFor([&] { return window->isVisible(); });
    };
    ASSERT_TRUE(type("in"));
    QTest::keyClick(editor.entry(), Qt::Key_Tab);
    EXPECT_EQ(editor.tags(), list("invoice"));
    EXPECT_TRUE(editor.entry()->hasFocus());
    EXPECT_FALSE(window->isVisible());

    // Enter takes what was typed, until a suggestion was chosen.
    ASSERT_TRUE(type("ins"));
    QTest::keyClick(editor.entry(), Qt::Key_Return);
    EXPECT_EQ(editor.tags(), list("invoice|ins"));
    ASSERT_TRUE(type("in"));
    QTest::keyClick(editor.entry(), Qt::Key_Down);
    QTest::keyClick(editor.entry(), Qt::Key_Down);
    QTest::keyClick(editor.entry(), Qt::Key_Return);
    EXPECT_EQ(editor.tags(), list("invoice|ins|insurance"));

    // Without the window the rest stands in the entry, selected.
    set("KPShowSuggestionWindow", PropertyValue::boolean(false));
    QTest::keyClicks(editor.entry(), QStringLiteral("inv"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return editor.entry()->selectedText() == u"oice"; }));
    set("XPSkipTagAutoComplete", PropertyValue::boolean(true));
    editor.entry()->clear();
    QTest::keyClicks(editor.entry(), QStringLiteral("inv"));
    QCoreApplication::processEvents();
    EXPECT_EQ(editor.entry()->text(), u"inv");
    for (const char *key : {"KPShowSuggestionWindow", "KPCompletionDelay", "XPSkipTagAutoComplete"})
        defaults.remove(QLatin1String(key));
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
