#include "KPTagRename.h"

#include <gtest/gtest.h>

struct Case
{
    const char *name;
    KPTagRename rename;
    QStringList before;
    QStringList after;
};

static QStringList list(const char *text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

static Case renaming(const char *name, const char *from, const char *to, const char *before,
                     const char *after, bool withBranch = true)
{
    return {name,
            {QString::fromUtf8(from), QString::fromUtf8(to), withBranch},
            list(before),
            list(after)};
}

class TagRename : public testing::TestWithParam<Case>
{
};

TEST_P(TagRename, MakesTheseTags)
{
    EXPECT_EQ(GetParam().rename.applied(GetParam().before), GetParam().after);
}

TEST(TagRename, TakesOtherSpellingsAlong)
{
    const KPTagRename rename{QStringLiteral("cafe"),
                             QStringLiteral("Caf\u00e9"),
                             true,
                             {QStringLiteral("caf\u00e8"), QStringLiteral("kaf/e")}};
    EXPECT_EQ(rename.applied(QStringList{QStringLiteral("x"), QStringLiteral("kaf/e/menu"),
                                         QStringLiteral("Caf\u00e8"), QStringLiteral("cafe")}),
              (QStringList{QStringLiteral("x"), QStringLiteral("Caf\u00e9/menu"),
                           QStringLiteral("Caf\u00e9")}));
    const QStringList another{QStringLiteral("kaf")};
    EXPECT_EQ(rename.applied(another), another);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TagRename,
    testing::Values(renaming("InItsPlace", "b", "x", "a b c", "a x c"),
                    renaming("WhateverTheCase", "B", "x", "a b", "a x"),
                    renaming("CaseAlone", "b", "B", "a b", "a B"),
                    renaming("MergesIntoAnEarlierOne", "b", "A", "a b c", "a c"),
                    renaming("MergesIntoALaterOne", "a", "C", "a b c", "C b"),
                    renaming("Deletes", "b", "", "a b b/c", "a"),
                    renaming("DeletesOneAlone", "b", "", "a b b/c", "a b/c", false),
                    renaming("TheBranch", "a", "x/y", "a/b/c a ab", "x/y/b/c x/y ab"),
                    renaming("TheBranchWithoutParent", "a/b", "z", "a a/b/c a/bc", "a z/c a/bc"),
                    renaming("ComposedIsDecomposed", "caf\u00e9", "bar", "cafe\u0301 x", "bar x"),
                    renaming("KeysLongerThanTheirTags", "\u0130", "x", "\u0130/\u0130", "x/\u0130"),
                    renaming("IntoItsOwnBranch", "a", "a/b", "a a/b", "a/b a/b/b"),
                    renaming("NotThere", "q", "x", "a b", "a b")),
    [](const auto &row) { return row.param.name; });
