#include "XPDuplicates.h"
#include "TestHome.h"
#include "XPPath.h"

#include <gtest/gtest.h>
#include <unistd.h>

TEST(Duplicates, AreFilesOfTheSameBytes)
{
    const TestFolder folder;
    const auto file = [&folder](const char *name, const QByteArray &bytes) {
        return folder.file(XPPath::decode(name), bytes);
    };
    const QByteArray large(100'000, 'l');
    QByteArray lateDifference = large;
    lateDifference.back() = 'L';
    const QString first = file("a", large);
    const QString second = file("sub/odd\xff", large);
    const QString late = file("late", lateDifference);
    const QString small = file("s1", "sm");
    const QString alsoSmall = file("s2", "sm");
    const QString other = file("s3", "ms");
    const QString empty = file("e1", "");
    const QString alsoEmpty = file("e2", "");
    const QString hardLink = folder.path(QStringLiteral("hard"));
    const QString link = folder.path(QStringLiteral("link"));
    EXPECT_EQ(::link(XPPath::encode(other).constData(), XPPath::encode(hardLink).constData()), 0);
    EXPECT_EQ(::symlink("a", XPPath::encode(link).constData()), 0);
    const QStringList all = {first, second,   late, small, alsoSmall,
                             other, hardLink, link, empty, alsoEmpty};

    const auto result = XPDuplicates::find(all + QStringList{folder.path(QStringLiteral("gone"))});
    EXPECT_EQ(result.failures.size(), 1);
    ASSERT_EQ(result.groups.size(), 2);
    EXPECT_EQ(result.groups[0].paths, (QStringList{first, second}));
    EXPECT_EQ(result.groups[1].paths, (QStringList{small, alsoSmall}));
    EXPECT_EQ(result.bytesToFree(), large.size() + 2);
    EXPECT_TRUE(XPDuplicates::find(all, [](qint64, qint64) { return false; }).stopped);
    XPDuplicates::find(all, [](qint64 done, qint64 total) {
        EXPECT_LE(done, total);
        return true;
    });
}
