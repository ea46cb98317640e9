#include "KPRequestMatcher.h"

#include <gtest/gtest.h>

using Comparison = KPSearchRequest::Comparison;

static KPFoundDocument invoice()
{
    KPFoundDocument document;
    document.path = QStringLiteral("/home/work/Rechnung_2024-03 Müller & Strauß.pdf");
    document.tags = {QStringLiteral("Work"), QStringLiteral("Cafe\u0301 Noir")};
    document.rating = 3.5;
    return document;
}

struct WordsCase
{
    const char *words;
    bool matches;
};

class MatcherWords : public testing::TestWithParam<WordsCase>
{
};

TEST_P(MatcherWords, BeginWordsOfTheNameOrOfATag)
{
    KPSearchRequest request;
    request.words = QString::fromUtf8(GetParam().words);
    EXPECT_EQ(KPRequestMatcher(request).matches(invoice()), GetParam().matches) << GetParam().words;
}

INSTANTIATE_TEST_SUITE_P(
    Words, MatcherWords,
    testing::Values(WordsCase{"", true}, WordsCase{"  ", true}, WordsCase{"rech", true},
                    WordsCase{"nung", false}, WordsCase{"2024", true}, WordsCase{"024", false},
                    WordsCase{"2024-03", true}, WordsCase{".pdf", true}, WordsCase{"pdf", true},
                    WordsCase{"MULLER strauss", true}, WordsCase{"strauß", true},
                    WordsCase{"rechnung absent", false}, WordsCase{"cafe rech", true},
                    WordsCase{"CAFÉ\tnoir", true}, WordsCase{"home", false}, WordsCase{"&", true}));

TEST(Matcher, FindsCharactersOfScriptsWithoutBlanksAnywhere)
{
    KPFoundDocument document;
    document.path = QStringLiteral("/東京請求書.pdf");
    KPSearchRequest request;
    request.words = QStringLiteral("請求");
    EXPECT_TRUE(KPRequestMatcher(request).matches(document));
}

TEST(Matcher, ComparesTagsByDecomposedLowerCase)
{
    const auto matches = [](QStringList with, QStringList without) {
        KPSearchRequest request;
        request.tags = with;
        request.notTags = without;
        return KPRequestMatcher(request).matches(invoice());
    };
    EXPECT_TRUE(matches({QStringLiteral("WORK"), QStringLiteral("caf\u00e9 noir")}, {}));
    EXPECT_FALSE(matches({QStringLiteral("Wor")}, {}));
    EXPECT_FALSE(matches({QStringLiteral("cafe noir")}, {}));
    EXPECT_FALSE(matches({}, {QStringLiteral("work")}));
    EXPECT_TRUE(matches({}, {QStringLiteral("home")}));
}

TEST(Matcher, ComparesRatingsAndCountsUnratedAsZero)
{
    const auto matches = [](double stars, Comparison comparison, double limit) {
        KPFoundDocument document = invoice();
        document.rating = stars;
        KPSearchRequest request;
        request.rating = {comparison, limit};
        return KPRequestMatcher(request).matches(document);
    };
    EXPECT_TRUE(matches(3.5, Comparison::Greater, 3));
    EXPECT_FALSE(matches(3, Comparison::Greater, 3));
    EXPECT_TRUE(matches(3, Comparison::GreaterOrEqual, 3));
    EXPECT_TRUE(matches(3, Comparison::Equal, 3));
    EXPECT_FALSE(matches(3.5, Comparison::Equal, 3));
    EXPECT_TRUE(matches(0, Comparison::Less, 1));
    EXPECT_TRUE(matches(0, Comparison::LessOrEqual, 0));
    EXPECT_FALSE(matches(0, Comparison::NotEqual, 0));
}

TEST(Matcher, TakesNothingUnreadableForAbsent)
{
    KPFoundDocument document;
    document.path = QStringLiteral("/a");
    document.error = QStringLiteral("damaged");
    KPSearchRequest without;
    without.notTags = {QStringLiteral("Work")};
    KPSearchRequest unrated;
    unrated.rating = {Comparison::Equal, 0};
    EXPECT_FALSE(KPRequestMatcher(without).matches(document));
    EXPECT_FALSE(KPRequestMatcher(unrated).matches(document));
    EXPECT_TRUE(KPRequestMatcher({}).matches(document));
}
