#include "Murnctl.h"

#include "KPHealing.h"
#include "Karvex.h"
#include "TestHome.h"
#include "XPAtomicFile.h"
#include "XPPath.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

// Files that are replaced while nobody keeps the index are found at the next command, accepted by
// the user and given up again.
TEST(MurnctlHealed, AcceptsAndUndoesCases)
{
    const TestFolder folder;
    const auto run = [&](const QByteArrayList &words) { return murnctl(words, folder.path()); };
    const QString path = folder.file(QStringLiteral("a.txt"));
    const QStringList tags = {QStringLiteral("one"), QStringLiteral("two")};
    ASSERT_FALSE(Karvex::setUserTags(tags, path));
    ASSERT_EQ(run({"index", "add", "."}).status, 0);
    ASSERT_EQ(run({"index", "sync", "--no-content"}).status, 0);
    ASSERT_FALSE(XPAtomicFile::write(path, "new"));
    ASSERT_EQ(run({"query", "kMDItemFSName == a.txt"}).status, 0);
    const auto listed = run({"healed", "--json"}).json().array();
    ASSERT_EQ(listed.size(), 1);
    EXPECT_EQ(listed[0][QStringLiteral("state")].toString(), QStringLiteral("pending"));
    EXPECT_EQ(listed[0][QStringLiteral("path")].toString(), path);
    const MurnctlResult accepted = run({"healed", "--accept", "all"});
    EXPECT_EQ(accepted.status, 0) << accepted.err.constData();
    EXPECT_TRUE(accepted.out.startsWith("1\thealed\t"));
    EXPECT_EQ(*Karvex::getUserTags(path), tags);
    EXPECT_EQ(run({"healed", "--accept", "1"}).err, "murnctl: 1: no such case, or done already\n");
    EXPECT_EQ(run({"healed", "--undo", "1"}).status, 0);
    EXPECT_TRUE(Karvex::getUserTags(path)->isEmpty());
    EXPECT_TRUE(run({"healed"}).out.contains("\tundone\t"));
    EXPECT_EQ(run({"healed", "--undo", "1", "--accept", "1"}).status, 2);
    run({"index", "remove", "."});
    EXPECT_EQ(::remove(XPPath::encode(KPHealingLog::path()).constData()), 0);
}
