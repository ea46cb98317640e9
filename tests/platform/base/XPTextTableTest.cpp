#include "XPTextTable.h"

#include <QString>
#include <deque>
#include <functional>
#include <gtest/gtest.h>

// A node whose hash the test chooses, and that lets it act in the middle of a lookup.
struct TestNode
{
    QString text;
    quint32 hash;
    std::function<void()> whenCompared;

    quint32 textHash() const { return hash; }
    QStringView view() const
    {
        if (whenCompared)
            whenCompared();
        return text;
    }
};

TEST(XPTextTable, FindsATextWhoseTableIsReplacedDuringTheLookup)
{
    XPTextTable<const TestNode> table;
    std::deque<TestNode> nodes;
    const auto add = [&](const QString &text, quint32 hash) {
        nodes.push_back({text, hash, {}});
        table.insert(&nodes.back());
        return &nodes.back();
    };
    TestNode *first = add(QStringLiteral("first"), 7);
    const TestNode *second = add(QStringLiteral("second"), 7); // in the slot behind the first
    first->whenCompared = [&] {
        first->whenCompared = nullptr;
        for (quint32 i = 0; i < 5000; ++i)
            add(QString::number(i), i * 0x9e3779b1U);
    };
    const size_t before = table.memoryUsed();
    EXPECT_EQ(table.find(u"second", 7), second);
    EXPECT_GT(table.memoryUsed(), before);
    EXPECT_EQ(table.find(u"third", 7), nullptr);
    for (const TestNode &node : nodes)
        EXPECT_EQ(table.find(node.text, node.hash), &node);
}

TEST(XPTextTable, GoesRoundAtItsEnd)
{
    XPTextTable<const TestNode> table;
    std::deque<TestNode> nodes;
    for (int i = 0; i < 300; ++i) {
        nodes.push_back({QString::number(i), 0xffffffff, {}});
        table.insert(&nodes.back());
    }
    for (const TestNode &node : nodes)
        EXPECT_EQ(table.find(node.text, node.hash), &node);
    EXPECT_EQ(table.find(u"300", 0xffffffff), nullptr);
}
