#include "IndexRules.h"
#include "TestHome.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDir>
#include <gtest/gtest.h>
#include <unistd.h>

TEST(IndexRules, TheLastThatFitsDecides)
{
    const struct
    {
        QStringList rules;
        QByteArray parent, name;
        bool excluded;
    } cases[] = {
        {{}, "/data", ".git", false},
        {IndexRules::defaultRules(), "/data", ".git", true},
        {IndexRules::defaultRules(), "/data", "git", false},
        {{QStringLiteral("*.tmp")}, "/data", "a.tmp", true},
        {{QStringLiteral("*.tmp")}, "/data", "tmp", false},
        {{QStringLiteral("?x")}, "/data", "ax", true},
        {{QStringLiteral("*.tmp"), QStringLiteral("!keep.tmp")}, "/data", "keep.tmp", false},
        {{QStringLiteral("!keep.tmp"), QStringLiteral("*.tmp")}, "/data", "keep.tmp", true},
        {{QStringLiteral("/data/old//")}, "/data", "old", true},
        {{QStringLiteral("/data/old")}, "/data/new", "old", false},
        {{QStringLiteral("/top")}, "/", "top", true},
        {{QStringLiteral("/data/*"), QStringLiteral("!/data/b")}, "/data", "b", false},
        {{QStringLiteral("~/snap")}, XPPath::encode(XPFolders::home()), "snap", true},
        {{XPPath::decode("caf\xe9")}, "/data", "caf\xe9", true}, // bytes that are no text
        {{QString(), QStringLiteral("!")}, "/data", "a", false},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(IndexRules(each.rules).excludes(each.parent, each.name), each.excluded)
            << each.rules.join(u' ').toStdString() << ": " << each.name.toStdString();
    }
}

// An index that read of its own writing would never come to rest.
TEST(IndexRules, TheStoreIsLeftOutHoweverItIsReached)
{
    const TestFolder folder;
    QDir().mkpath(folder.path(QStringLiteral("real/store")));
    const QByteArray real = XPPath::encode(folder.path(QStringLiteral("real")));
    const QByteArray link = XPPath::encode(folder.path(QStringLiteral("link")));
    ASSERT_EQ(::symlink(real.constData(), link.constData()), 0);
    const IndexRules rules = IndexRules({QStringLiteral("!store")})
                                 .withoutStore(XPPath::decode(link + "/store/index.sqlite"));
    EXPECT_TRUE(rules.excludes(link, "store"));
    EXPECT_TRUE(rules.excludes(real, "store"));
    EXPECT_FALSE(rules.excludes(real + "/deeper", "store"));
}
