#include "KPPredicateBuilder.h"

#include "KPFileType.h"
#include "UserDefaults.h"

#include <gtest/gtest.h>

static QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

TEST(SearchWords, AreSplitAtBlanksAndQuotes)
{
    const std::pair<const char *, QStringList> cases[] = {
        {"", {}},
        {"  ", {}},
        {"one  two", {text("one"), text("two")}},
        {"tab\tinside \tx\t", {text("tab\tinside"), text("x")}},
        {"\"one two\" three", {text("one two"), text("three")}},
        {"a\"b  c\"d", {text("a"), text("b c"), text("d")}},
        {"open \"to the end", {text("open"), text("to the end")}},
        {"tag:\"two words\" x", {text("tag:two words"), text("x")}},
        {"tag: \"two words\"", {text("tag:two words")}},
        {"last:", {text("last:")}},
        {"a: b c:", {text("a:b"), text("c:")}},
    };
    for (const auto &[typed, words] : cases)
        EXPECT_EQ(componentsSeparatedByBlanksAndQuotes(text(typed)), words) << typed;
}

TEST(PredicateBuilder, TellsShortTexts)
{
    for (const char *one : {"", "a", "\xC3\xA9", "e\xCC\x81"})
        EXPECT_TRUE(KPPredicateBuilder::searchStringShortSoUseBeginsWith(text(one))) << one;
    for (const char *other : {"ab", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80"})
        EXPECT_FALSE(KPPredicateBuilder::searchStringShortSoUseBeginsWith(text(other))) << other;
}

TEST(PredicateBuilder, MakesAClauseOfEachWord)
{
    enum Where { Names = 0, Contents = 1, Others = 2, Both = 3 };
    const struct
    {
        const char *word;
        int where;
        bool isOneOfMany;
        const char *clause;
    } cases[] = {
        {"a", Both, false, R"((kMDItemDisplayName == "a*"cd))"},
        {"a", Names, true, R"(((kMDItemDisplayName == "*a*"cd)))"},
        {"ab", Names, false, R"(((kMDItemDisplayName == "*ab*"cd)))"},
        {"invoice", Both, false,
         R"(((kMDItemDisplayName == "*invoice*"cd || * == "invoice*"cdw || kMDItemTextContent == "invoice*"cdw)))"},
        {"invoice", Others, false,
         R"(((kMDItemDisplayName == "*invoice*"cd || * == "invoice*"cdw)))"},
        {"invoice", Contents, false,
         R"(((kMDItemDisplayName == "*invoice*"cd || kMDItemTextContent == "invoice*"cdw)))"},
        {"-draft", Contents, false,
         R"((!(kMDItemDisplayName == "*draft*"cd || kMDItemTextContent == "draft*"cdw)))"},
        {"!ab", Names, true, R"((!(kMDItemDisplayName == "*ab*"cd)))"},
        {"-a", Names, true, R"(((kMDItemDisplayName == "*-a*"cd)))"},
        {"name:-old", Both, false, R"((!(kMDItemDisplayName == "*old*"cd)))"},
        {"name:", Names, false, R"(((kMDItemDisplayName == "*name:*"cd)))"},
        {"tag:tax 2019", Both, false, R"(((kMDItemKXUserTags == "tax 2019"cd)))"},
        {"tag:tag:\"x\"", Both, false, R"(((kMDItemKXUserTags == "x"cd)))"},
        {"tag:", Names, false, R"(((kMDItemDisplayName == "*tag:*"cd)))"},
        {"rating:>=4", Both, false, "(kMDItemStarRating >=4)"},
        {"say\"so", Names, false, R"(((kMDItemDisplayName == "*say"so*"cd)))"},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(KPPredicateBuilder::searchForWord(text(each.word), (each.where & Contents) != 0,
                                                    (each.where & Others) != 0, true,
                                                    each.isOneOfMany),
                  text(each.clause))
            << each.word;
    }
    auto &settings = UserDefaults::standard();
    settings.setValue(QStringLiteral("KPCloudKeywords"), PropertyValue::boolean(true));
    EXPECT_EQ(KPPredicateBuilder::searchForWord(text("tag:x"), false, false, true, false),
              text(R"(((kMDItemKXUserTags == "x"cd) || (kMDItemKeywords == "x"cd)))"));
    settings.remove(QStringLiteral("KPCloudKeywords"));
}

TEST(PredicateBuilder, TakesAnExtensionForAType)
{
    const QString pdf = QStringLiteral("com.adobe.pdf");
    const struct
    {
        const char *typed;
        const char *name;
        bool isPdf;
    } cases[] = {
        {"report.pdf", "report", true},
        {"annual report.PDF", "annual report", true},
        {".pdf", "", true},
        {"\"my report.pdf\"", "\"my report\"", true},
        {"report", "report", false},
        {"report.", "report.", false},
        {"-report.pdf", "-report.pdf", false},
        {"x -@y.pdf", "x -@y.pdf", false},
        {"ann@example.pdf", "ann@example.pdf", false},
        {"http://example.pdf", "http://example.pdf", false},
        {"www.example.pdf", "www.example.pdf", false},
        {"example.com", "example.com", false},
        {"version 2.zzzunknown", "version 2.zzzunknown", false},
        {"", "", false},
    };
    for (const auto &each : cases) {
        QStringList types;
        EXPECT_EQ(KPPredicateBuilder::stripExtensionIfLooksGood(text(each.typed), &types),
                  text(each.name))
            << each.typed;
        EXPECT_EQ(types.contains(pdf), each.isPdf) << each.typed;
    }
    // Asked for by its dot, an extension that nobody declared is one too.
    QStringList types;
    EXPECT_EQ(KPPredicateBuilder::stripExtensionIfLooksGood(text(".zzzunknown"), &types),
              QString());
    EXPECT_EQ(types.size(), 1);
}

TEST(PredicateBuilder, MakesAClauseOfEachType)
{
    const std::pair<const char *, const char *> cases[] = {
        {"KPExtensionSearch_pdf", R"((kMDItemFSName == "*.pdf"c))"},
        {"KPExtensionSearch_", ""},
        {"KPkMDItemKind_Text file", R"((kMDItemKind == "Text file"))"},
        {"KPkMDItemKind_", ""},
        {"dyn.ah62d4rv4ge80k2p0", R"((kMDItemContentType == "*ge80k2p0"))"},
        {"dyn.ah62", R"((kMDItemContentType == "*dyn.ah62"))"},
        {"public.image", R"((kMDItemContentTypeTree == "public.image"))"},
        {"tree_public.text", R"((kMDItemContentTypeTree == "public.text"))"},
        {"com.adobe.pdf", R"((kMDItemContentType == "com.adobe.pdf"))"},
    };
    for (const auto &[type, clause] : cases)
        EXPECT_EQ(KPPredicateBuilder::mdSearchForUTI(text(type)), text(clause)) << type;
}

TEST(PredicateBuilder, JoinsWhatIsThere)
{
    const auto clauses = [](const QStringList &types, const char *typed,
                            std::optional<double> start, std::optional<double> end,
                            bool requireAll = true) {
        return KPPredicateBuilder::mdQueryFromSearch(types, text(typed), false, requireAll, false,
                                                     true, start, end);
    };
    using List = QStringList;
    EXPECT_EQ(clauses({}, "", {}, {}), List());
    EXPECT_EQ(clauses({}, "  ", {}, {}), List());
    EXPECT_EQ(
        clauses({}, "one two", {}, {}),
        List{text(
            R"((((kMDItemDisplayName == "*one*"cd)) && ((kMDItemDisplayName == "*two*"cd))))")});
    EXPECT_EQ(
        clauses({}, "one two", {}, {}, false),
        List{text(
            R"((((kMDItemDisplayName == "*one*"cd)) || ((kMDItemDisplayName == "*two*"cd))))")});
    EXPECT_EQ(clauses({}, "", 7, {}),
              List{text("(kMDItemContentModificationDate > $time.today(-7))")});
    EXPECT_EQ(clauses({}, "", 2, 1),
              List{text("(kMDItemContentModificationDate > $time.today(-2) && "
                        "kMDItemContentModificationDate < $time.today(-1))")});
    EXPECT_EQ(clauses({}, "", 0.000001, {}),
              List{text("(kMDItemContentModificationDate > $time.today(-0.000001))")});
    EXPECT_EQ(clauses({}, "", {}, 1), List());
    const QString pdf = text(R"((kMDItemContentType == "com.adobe.pdf"))");
    EXPECT_EQ(clauses({text("com.adobe.pdf"), text("com.adobe.pdf")}, "x.pdf", 7, {}),
              (List{text(R"(((kMDItemDisplayName == "*x.pdf*"cd)))"),
                    text("(kMDItemContentModificationDate > $time.today(-7))"), pdf}));
    EXPECT_EQ(clauses({text("KPExtensionSearch_"), text("com.adobe.pdf")}, "", {}, {}),
              List{QStringLiteral("( || ") + pdf + u')'});
    EXPECT_EQ(clauses({}, ".pdf", {}, {}).size(), 1);
}
