#include "KPArrangedDocs.h"

#include "TestDocs.h"

#include <gtest/gtest.h>

static QStringList names(const KPDoc::Docs &docs)
{
    QStringList result;
    for (const KPDoc *doc : docs)
        result.append(doc->fsName());
    return result;
}

static KPDoc::Docs docs(const QString &letters)
{
    KPDoc::Docs result;
    for (const QChar letter : letters)
        result.append(testDoc(QString(letter)));
    return result;
}

static KPResultsArrangement arrangement(const QString &letters)
{
    return testArrangement(letters.split(QString(), Qt::SkipEmptyParts));
}

struct Rearranging
{
    const char *name;
    const char *before, *selected, *after;
    bool isSameSearch;
    const char *selectedAfter, *currentAfter;
};
class RearrangedDocs : public testing::TestWithParam<Rearranging>
{
};

TEST_P(RearrangedDocs, KeepWhatIsSelected)
{
    const Rearranging &row = GetParam();
    KPArrangedDocs shown;
    shown.setArrangedObjects(arrangement(QLatin1String(row.before)), false);
    shown.setSelections(docs(QLatin1String(row.selected)), false);
    shown.setArrangedObjects(arrangement(QLatin1String(row.after)), row.isSameSearch);
    EXPECT_EQ(names(shown.selectedDocs()).join(QString()), QLatin1String(row.selectedAfter));
    EXPECT_EQ(shown.current() ? shown.current()->fsName() : QString(),
              QLatin1String(row.currentAfter));
    EXPECT_EQ(shown.selection().rowCount(), shown.count());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RearrangedDocs,
    testing::Values(Rearranging{"Inserted", "abcd", "bd", "xabycdz", true, "bd", "b"},
                    Rearranging{"Reversed", "abcd", "bd", "dcba", true, "db", "b"},
                    Rearranging{"Shuffled", "abcdefg", "cf", "gfabxedc", true, "fc", "c"},
                    Rearranging{"NextTakesOver", "abcd", "b", "acd", true, "c", "c"},
                    Rearranging{"LastTakesOver", "abcd", "d", "abc", true, "c", "c"},
                    Rearranging{"OthersStay", "abcd", "bd", "acd", true, "d", "c"},
                    Rearranging{"NextOfManyThatWent", "abcdef", "bcd", "aef", true, "e", "e"},
                    Rearranging{"AnotherSearch", "abcd", "b", "acd", false, "", ""},
                    Rearranging{"NothingLeft", "abcd", "b", "", true, "", ""},
                    Rearranging{"NothingWasSelected", "abcd", "", "ab", true, "", ""}),
    [](const auto &row) { return row.param.name; });

TEST(ArrangedDocs, AnswerByDocument)
{
    KPArrangedDocs shown;
    shown.setArrangedObjects(arrangement(QStringLiteral("abcdef")), false);
    int visible = -1;
    QObject::connect(&shown, &KPArrangedDocs::scrollWanted, [&](int row) { visible = row; });
    shown.setSelections(docs(QStringLiteral("dzbd")), true); // one is not shown, one comes twice
    EXPECT_EQ(names(shown.selectedDocs()).join(QString()), QStringLiteral("bd"));
    EXPECT_EQ(visible, 3);
    EXPECT_EQ(shown.selection().anchor(), 3);
    shown.addSelections(docs(QStringLiteral("f")), false);
    shown.removeSelection(testDoc(QStringLiteral("d")));
    EXPECT_TRUE(shown.isSelected(testDoc(QStringLiteral("b"))));
    EXPECT_FALSE(shown.isSelected(testDoc(QStringLiteral("z"))));
    EXPECT_EQ(names(shown.selectedDocs()).join(QString()), QStringLiteral("bf"));
    EXPECT_EQ(shown.singleSelection(), nullptr);
    for (const char letter : {'f', 'a', 'c', 'c', 'e'})
        EXPECT_EQ(shown.at(shown.rowOf(testDoc(QString(QLatin1Char(letter))))),
                  testDoc(QString(QLatin1Char(letter))));
    EXPECT_EQ(shown.rowOf(testDoc(QStringLiteral("z"))), -1);
}
