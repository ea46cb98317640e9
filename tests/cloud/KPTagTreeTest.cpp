#include "KPTagTree.h"

#include <gtest/gtest.h>

// Names with counts, indented by depth.
static QStringList lines(const KPTagTree &tree, int node = KPTagTree::root, int depth = 0)
{
    QStringList all;
    for (const int child : tree.node(node).children) {
        const auto &each = tree.node(child);
        EXPECT_EQ(tree.node(each.parent).children[static_cast<size_t>(each.row)], child);
        all.append(QString(depth, u' ') + each.name + u' ' + QString::number(each.count));
        all += lines(tree, child, depth + 1);
    }
    return all;
}

TEST(TagTree, StandsBelowWhatItsNamesSay)
{
    const auto tree = KPTagTree({{QStringLiteral("tax/2024/10"), 1, 1},
                                 {QStringLiteral("tax/2024/9"), 2, 2},
                                 {QStringLiteral("Tax"), 5, 8},
                                 {QStringLiteral("taxi"), 1, 1},
                                 {QStringLiteral("a/"), 1, 1},
                                 {QStringLiteral("/b"), 1, 1},
                                 {{}, 9, 9}});
    EXPECT_EQ(lines(tree),
              (QStringList{QStringLiteral("/b 1"), QStringLiteral("a/ 1"), QStringLiteral("Tax 5"),
                           QStringLiteral(" 2024 0"), QStringLiteral("  9 2"),
                           QStringLiteral("  10 1"), QStringLiteral("taxi 1")}));
    EXPECT_EQ(KPTagTree::above(QStringLiteral("a/b/c")),
              (QStringList{QStringLiteral("a"), QStringLiteral("a/b")}));
    EXPECT_TRUE(KPTagTree::isBelow(QStringLiteral("TAX/2024"), QStringLiteral("tax")));
    EXPECT_FALSE(KPTagTree::isBelow(QStringLiteral("taxi"), QStringLiteral("tax")));
}

TEST(TagTree, ShowsWhatAFilterAsksForAndWhatIsAbove)
{
    const auto tree = KPTagTree({{QStringLiteral("Tax/2024/Caf\u00e9"), 1, 1},
                                 {QStringLiteral("tax/9"), 2, 2},
                                 {QStringLiteral("tax/10"), 3, 3},
                                 {QStringLiteral("box"), 4, 4}});
    const auto shown = [&](const char *text) { return lines(tree.filtered(QLatin1String(text))); };
    EXPECT_EQ(shown(""), lines(tree));
    EXPECT_EQ(shown("cafe"), (QStringList{QStringLiteral("Tax 0"), QStringLiteral(" 2024 0"),
                                          QString::fromUtf8("  Caf\u00e9 1")}));
    EXPECT_EQ(shown("x/"),
              (QStringList{QStringLiteral("Tax 0"), QStringLiteral(" 9 2"), QStringLiteral(" 10 3"),
                           QStringLiteral(" 2024 0"), QString::fromUtf8("  Caf\u00e9 1")}));
    EXPECT_EQ(shown("none"), QStringList());
    EXPECT_EQ(tree.node(tree.find(QStringLiteral("TAX/10"))).count, 3);
    EXPECT_EQ(tree.find(QStringLiteral("tax/1")), KPTagTree::root);
    EXPECT_EQ(tree.node(tree.findHolding(QStringLiteral("ax"))).tag, u"Tax");
    EXPECT_EQ(tree.findHolding(QStringLiteral("zz")), KPTagTree::root);
}

TEST(TagTree, HoldsTagsThatAreMeantToBreakIt)
{
    const QString deep = QStringLiteral("a/").repeated(2000) + u'a';
    const auto tree = KPTagTree({{deep, 1, 1}, {QString(4000, u'/'), 1, 1}});
    EXPECT_EQ(tree.node(tree.find(deep)).count, 1);
    EXPECT_EQ(KPTagTree::above(deep).size(), 2000);
    EXPECT_EQ(tree.filtered(QStringLiteral("a")).size(), 2002);
    QList<KPTagDocuments::UsedTag> many;
    for (int i = 0; i < 100'000; ++i)
        many.append({QStringLiteral("group %1/tag %2").arg(i % 300).arg(i), i, i});
    const KPTagTree large(many);
    EXPECT_EQ(large.size(), 100'000 + 300 + 1);
    EXPECT_EQ(large.filtered(QStringLiteral("tag 99999")).size(), 3);
    EXPECT_EQ(large.filtered(QStringLiteral("tag ")).size(), large.size());
}
