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
                           QStringLiteral(" 2024 0"),
                           QStringLiteral("  9 2"), QStringLiteral("  10 1"),
                           QStringLiteral("taxi 1")}));
    EXPECT_EQ(KPTagTree::above(QStringLiteral("a/b/c")),
              (QStringList{QStringLiteral("a"), QStringLiteral("a/b")}));
    EXPECT_TRUE(KPTagTree::isBelow(QStringLiteral("TAX/2024"), QStringLiteral("tax")));
    EXPECT_FALSE(KPTagTree::isBelow(QStringLiteral("taxi"), QStringLiteral("tax")));
}
