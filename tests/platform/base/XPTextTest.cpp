#include "XPText.h"

#include <clocale>
#include <gtest/gtest.h>

static QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

TEST(XPText, LowerCaseIsTheSameInEveryLocale)
{
    const std::string before =
        std::setlocale(LC_ALL, nullptr);   // NOLINT(concurrency-mt-unsafe): one thread here
    std::setlocale(LC_ALL, "tr_TR.UTF-8"); // NOLINT(concurrency-mt-unsafe): as above
    EXPECT_EQ(lowerCase(text("TITLE")), text("title"));
    EXPECT_EQ(lowerCase(text("STRASSE ÀÉ")), text("strasse àé"));
    EXPECT_EQ(lowerCase(text("Straße")), text("straße"));
    std::setlocale(LC_ALL, before.c_str()); // NOLINT(concurrency-mt-unsafe): as above
}

TEST(XPText, FoldingFindsWhatPeopleTakeForTheSame)
{
    EXPECT_EQ(foldText(text("Straße")), foldText(text("STRASSE")));
    EXPECT_EQ(foldText(text("CAFÉ")), text("cafe"));
    EXPECT_EQ(foldText(text("Ὀδυσσεύς")), foldText(text("οδυσσευΣ")));
    EXPECT_EQ(foldText(text("ﬁle")), text("file"));
    EXPECT_NE(foldText(text("CAFÉ"), FoldText::Case), text("cafe"));
    EXPECT_EQ(foldText(text("CAFÉ"), FoldText::Diacritics), text("CAFE"));
}

TEST(XPText, DecomposedLeavesLoneSurrogatesAlone)
{
    const QString odd = text("é") + QChar(char16_t{0xDCFF});
    EXPECT_EQ(decomposed(odd), text("e\u0301") + QChar(char16_t{0xDCFF}));
}
