// Karvex against file systems that refuse, processes that compete and processes that die.
#include "KarvexFileLock.h"
#include "KarvexTestFiles.h"
#include "TestChild.h"
#include "TestSystem.h"
#include "XPPath.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using Kind = XPError::Kind;

static const QStringList oldTags = {QStringLiteral("old")};
static const PropertyValue::Date oldTime = {1};

static PropertyValue tagTime(const QString &path)
{
    return Karvex::getXAttrMetaData(Karvex::userTagTimeKey, path).value();
}

// Tag lists that take well over a thousand bytes.
static QStringList longTags(QChar letter)
{
    QStringList tags;
    for (int i = 0; i < 20; ++i)
        tags.append(QString(60, letter) + QString::number(i));
    return tags;
}

TEST(KarvexFaults, WithoutRoomForTheTagsTheirOldTimeComesBack)
{
    const auto volume = TestVolume::ext4SmallBlocks();
    if (!volume)
        GTEST_SKIP() << "no loop mounts here";
    const QString tagged = volume->path(QStringLiteral("tagged"));
    const QString untagged = volume->path(QStringLiteral("untagged"));
    for (const QString &file : {tagged, untagged})
        ::close(::creat(XPPath::encode(file).constData(), S_IRUSR | S_IWUSR));
    ASSERT_EQ(Karvex::setUserTags(oldTags, tagged, oldTime), std::nullopt);
    ASSERT_EQ(Karvex::setRating(2, tagged), std::nullopt);
    for (const auto &error :
         {Karvex::setUserTags(longTags(u't'), tagged), Karvex::addUserTags(longTags(u't'), tagged)})
        expectError(error, Kind::NoSpace, XPError::posixDomain, ENOSPC, tagged);
    EXPECT_EQ(tagsOf(tagged), oldTags);
    EXPECT_EQ(tagTime(tagged), PropertyValue(oldTime));
    EXPECT_EQ(Karvex::getRating(tagged).value(), 2);

    EXPECT_NE(Karvex::setUserTags(longTags(u't'), untagged), std::nullopt);
    EXPECT_EQ(XPExtendedAttributes::list(untagged).value(), QStringList());
}

// Works in a child of root, as each mount goes with the child.
TEST(KarvexFaults, FileSystemsThatTakeNoAttributes)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "mounting needs root";
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("read-only/a"));
    ASSERT_EQ(Karvex::setUserTags(oldTags, file, oldTime), std::nullopt);
    const QByteArray mountPoint = XPPath::encode(folder.path(QStringLiteral("read-only")));
    constexpr int noMounts = 77;
    const int status = runChild([&] {
        const char *target = mountPoint.constData();
        if (!havePrivateMounts() || ::mount(target, target, nullptr, MS_BIND, nullptr) != 0 ||
            ::mount(nullptr, target, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0)
            ::_exit(noMounts);
        expectError(Karvex::addUserTags(longTags(u't'), file), Kind::ReadOnly, XPError::posixDomain,
                    EROFS, file);
        EXPECT_EQ(tagsOf(file), oldTags);
        EXPECT_EQ(tagTime(file), PropertyValue(oldTime));

        if (::mount("none", target, "ramfs", 0, nullptr) != 0)
            ::_exit(noMounts);
        ::close(::creat(XPPath::encode(file).constData(), S_IRUSR | S_IWUSR));
        for (const auto &error : {Karvex::setUserTags(oldTags, file), Karvex::setRating(3, file),
                                  std::optional(Karvex::getUserTags(file).error())})
            expectError(error, Kind::Unsupported, XPError::posixDomain, ENOTSUP, file);
    });
    if (status == noMounts)
        GTEST_SKIP() << "no mounts here";
    EXPECT_EQ(status, 0);
}

// One writer of several: replaces its own tag of the last round by the next one. Whatever another
// writer loses is seen at once by the one who wrote it.
static void addAndClear(const QString &path, QChar writer, int rounds)
{
    for (int round = 0; round < rounds; ++round) {
        const QString mine = writer + QString::number(round);
        ASSERT_EQ(Karvex::addUserTags({mine}, path), std::nullopt);
        ASSERT_TRUE(tagsOf(path).contains(mine));
        if (round + 1 == rounds)
            return;
        ASSERT_EQ(Karvex::clearUserTags({mine}, path), std::nullopt);
    }
}

TEST(KarvexFaults, NoAdditionOfAnyProcessOrThreadIsLost)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    constexpr int rounds = 1000;
    const pid_t first = startChild([&] { addAndClear(file, u'a', rounds); });
    const pid_t second = startChild([&] {
        std::thread third([&] { addAndClear(file, u'c', rounds); });
        addAndClear(file, u'b', rounds);
        third.join();
    });
    EXPECT_EQ(waitForChild(first), 0);
    EXPECT_EQ(waitForChild(second), 0);
    QStringList tags = tagsOf(file);
    tags.sort();
    EXPECT_EQ(tags, QStringList(
                        {QStringLiteral("a999"), QStringLiteral("b999"), QStringLiteral("c999")}));
}

// As a session, cron and su start programs: with a runtime folder, without one, with another home.
TEST(KarvexFaults, NoAdditionIsLostWhateverTheEnvironment)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const auto start = [&](QChar letter, const QByteArray &runtime, const QByteArray &home) {
        return startChild([&file, letter, runtime, home] {
            for (const char *name : {"XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
                qunsetenv(name);
            qputenv("HOME", home);
            if (!runtime.isEmpty())
                qputenv("XDG_RUNTIME_DIR", runtime);
            addAndClear(file, letter, 500);
        });
    };
    const QByteArray one = XPPath::encode(folder.path(QStringLiteral("one")));
    const QByteArray two = XPPath::encode(folder.path(QStringLiteral("two")));
    const pid_t children[] = {start(u'a', one, one), start(u'b', {}, one), start(u'c', {}, two)};
    for (const pid_t child : children)
        EXPECT_EQ(waitForChild(child), 0);
    EXPECT_EQ(tagsOf(file).size(), 3);
}

// Somebody cleans up in the folder of the lock file while it is in use.
TEST(KarvexFaults, NoAdditionIsLostWhenTheLockFileIsDeleted)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const pid_t first = startChild([&] { addAndClear(file, u'a', 300); });
    EXPECT_EQ(waitForChild(first), 0);
    ASSERT_EQ(Karvex::addUserTags({QStringLiteral("mine")}, file), std::nullopt);
    ASSERT_EQ(::unlink(XPPath::encode(KarvexFileLock::path()).constData()), 0);
    const pid_t second = startChild([&] { addAndClear(file, u'b', 300); });
    addAndClear(file, u'c', 300);
    EXPECT_EQ(waitForChild(second), 0);
    EXPECT_EQ(tagsOf(file).size(), 4);
}

TEST(KarvexFaults, AKilledWriterLeavesOldOrNewAndNoLock)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    const QStringList lists[] = {longTags(u'o'), longTags(u'n')};
    ASSERT_EQ(Karvex::setUserTags(lists[0], file), std::nullopt);
    for (int run = 0; run < 20; ++run) {
        int started[2];
        ASSERT_EQ(::pipe(started), 0);
        const pid_t writer = startChild([&] {
            for (int i = 0;; ++i) {
                if (Karvex::setUserTags(lists[i % 2], file) ||
                    (i < 1 + run * 7 && ::write(started[1], "x", 1) != 1))
                    return;
            }
        });
        for (int i = 0; i < 1 + run * 7; ++i) {
            char byte = 0;
            ASSERT_EQ(::read(started[0], &byte, 1), 1);
        }
        ASSERT_EQ(::kill(writer, SIGKILL), 0);
        EXPECT_EQ(waitForChild(writer), -SIGKILL);
        ::close(started[0]);
        ::close(started[1]);
        const QStringList tags = tagsOf(file);
        EXPECT_TRUE(tags == lists[0] || tags == lists[1]);
        ASSERT_EQ(Karvex::setUserTags(lists[0], file), std::nullopt); // or it waits for ever
    }
}
