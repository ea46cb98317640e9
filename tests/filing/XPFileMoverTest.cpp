#include "XPFileMover.h"

#include "FilingScene.h"
#include "Karvex.h"
#include "KarvexBackupFile.h"
#include "TestChild.h"
#include "TestSystem.h"
#include "XPAttributeRoom.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPFileUtils.h"
#include "XPFolders.h"
#include "XPMoveRecovery.h"
#include "XPPath.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using Kind = XPError::Kind;
using XPFileMover::Attributes;

static const QString tags = QStringLiteral("com.apple.metadata:kMDItemKXUserTags");

static QByteArray bytesOf(const QString &path)
{
    return FilingScene::digest(XPPath::encode(path));
}

// A folder on another file system than the build's; none where that keeps no user attributes.
static std::unique_ptr<QTemporaryDir> otherVolume()
{
    return FilingScene::hasOtherVolume()
               ? std::make_unique<QTemporaryDir>(QStringLiteral("/dev/shm/murn-test-XXXXXX"))
               : nullptr;
}

TEST(FileMover, NeverReplaces)
{
    const TestFolder folder;
    const auto other = otherVolume();
    const QString file = folder.file(QStringLiteral("a"), "mine");
    QStringList targets = {folder.file(QStringLiteral("b"), "theirs")};
    if (other) {
        targets.append(other->filePath(QStringLiteral("b")));
        QFile taken(targets.back());
        ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
        taken.write("theirs");
    }
    for (const QString &target : targets) {
        EXPECT_EQ(XPFileMover::move(file, target)->code, EEXIST);
        EXPECT_EQ(XPFileMover::copy(file, target)->code, EEXIST);
        EXPECT_EQ(XPFileInfo::read(target)->size, 6);
        EXPECT_EQ(XPFileInfo::read(file)->size, 4);
    }
}

TEST(FileMover, TakesNamesThatAreNoText)
{
    const auto other = otherVolume();
    if (!other)
        GTEST_SKIP();
    const TestFolder folder;
    const QString name = XPPath::decode("caf\xE9\n.pdf");
    const QString file = folder.file(name, "x");
    const QByteArray before = bytesOf(file);
    const QString there = other->path() + u'/' + name;
    ASSERT_EQ(XPFileMover::move(file, there), std::nullopt);
    EXPECT_EQ(bytesOf(there), before);
    ASSERT_EQ(XPFileMover::move(there, file), std::nullopt);
    EXPECT_EQ(bytesOf(file), before);
}

TEST(FileMover, KeepsHolesAndAccessLists)
{
    const auto other = otherVolume();
    if (!other)
        GTEST_SKIP();
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("sparse"), "begin");
    ASSERT_EQ(::truncate(XPPath::encode(file).constData(), 64 << 20), 0);
    const QString copy = other->filePath(QStringLiteral("copy"));
    ASSERT_EQ(XPFileMover::copy(file, copy), std::nullopt);
    struct stat status = {};
    ASSERT_EQ(::stat(XPPath::encode(copy).constData(), &status), 0);
    EXPECT_EQ(status.st_size, 64 << 20);
    EXPECT_LT(status.st_blocks * 512, 1 << 20);
}

TEST(FileMover, MovesNoFolderIntoItself)
{
    const TestFolder folder;
    (void)folder.file(QStringLiteral("a/b/file"));
    const QString from = folder.path(QStringLiteral("a"));
    const QString to = folder.path(QStringLiteral("a/b/c"));
    EXPECT_EQ(XPFileMover::move(from, to)->code, EINVAL);
    EXPECT_EQ(XPFileMover::copy(from, to)->code, EINVAL);
    EXPECT_FALSE(XPFileInfo::read(to));
    EXPECT_TRUE(XPFileInfo::read(folder.path(QStringLiteral("a/b/file"))));
}

TEST(FileMover, AListedTwiceSourceIsGoneTheSecondTime)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("a"));
    EXPECT_EQ(XPFileMover::move(file, folder.path(QStringLiteral("b"))), std::nullopt);
    EXPECT_EQ(XPFileMover::move(file, folder.path(QStringLiteral("c")))->kind, Kind::NotFound);
}

// The progress is told in the middle of the copy, which is when others do their things.
class FileMoverMeanwhile : public testing::Test
{
protected:
    void SetUp() override
    {
        m_other = otherVolume();
        if (!m_other)
            GTEST_SKIP();
        from = m_folder.file(QStringLiteral("from/file"), QByteArray(100'000, 'x'));
        QDir().mkpath(m_other->filePath(QStringLiteral("to")));
        to = m_other->filePath(QStringLiteral("to/file"));
    }

    std::optional<XPError> moveWhile(const std::function<bool()> &meanwhile) const
    {
        return XPFileMover::move(from, to, {.progress = [&](qint64) { return meanwhile(); }});
    }

    // The source is whole and nothing else is left.
    void expectNothingDone(const QString &folder) const
    {
        EXPECT_TRUE(XPFileInfo::read(from));
        EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                  QStringList());
    }

    QString other(const QString &name) const { return m_other->filePath(name); }

    QString from;
    QString to;

private:
    const TestFolder m_folder;
    std::unique_ptr<QTemporaryDir> m_other;
};

TEST_F(FileMoverMeanwhile, StopsWhenTold)
{
    EXPECT_EQ(moveWhile([] { return false; })->kind, Kind::Cancelled);
    expectNothingDone(other(QStringLiteral("to")));
}

TEST_F(FileMoverMeanwhile, ASourceThatIsWrittenToStays)
{
    EXPECT_TRUE(moveWhile([this] {
        QFile file(from);
        return file.open(QIODevice::Append) && file.write("more") == 4;
    }));
    expectNothingDone(other(QStringLiteral("to")));
    EXPECT_EQ(XPFileInfo::read(from)->size, 100'004);
}

TEST_F(FileMoverMeanwhile, ATagThatIsSetStays)
{
    EXPECT_TRUE(moveWhile([this] { return !XPExtendedAttributes::write(from, tags, "new"); }));
    expectNothingDone(other(QStringLiteral("to")));
    EXPECT_EQ(XPExtendedAttributes::read(from, tags).value(), QByteArray("new"));
}

TEST_F(FileMoverMeanwhile, ATargetFolderThatIsALinkNowTakesNothing)
{
    const QString folder = other(QStringLiteral("to"));
    const QString away = other(QStringLiteral("away"));
    const QString trap = other(QStringLiteral("trap"));
    EXPECT_TRUE(moveWhile([&] {
        return QDir().rename(folder, away) && QDir().mkpath(trap) &&
               ::symlink("trap", XPPath::encode(folder).constData()) == 0;
    }));
    expectNothingDone(away);
    expectNothingDone(trap);
}

TEST_F(FileMoverMeanwhile, ATargetFolderThatIsGoneTakesNothing)
{
    const QString folder = other(QStringLiteral("to"));
    EXPECT_TRUE(moveWhile([&] { return QDir(folder).removeRecursively(); }));
    EXPECT_TRUE(XPFileInfo::read(from));
    EXPECT_FALSE(XPFileInfo::read(folder));
}

TEST_F(FileMoverMeanwhile, ANameThatIsTakenIsNotOverwritten)
{
    EXPECT_EQ(moveWhile([this] {
                  QFile file(to);
                  return file.open(QIODevice::WriteOnly) && file.write("theirs") == 6;
              })->code,
              EEXIST);
    EXPECT_EQ(XPFileInfo::read(to)->size, 6);
    EXPECT_TRUE(XPFileInfo::read(from));
}

TEST(FileMover, AFullTargetTakesNothing)
{
    const auto volume = TestVolume::tmpfs("256k");
    if (!volume)
        GTEST_SKIP() << "needs root";
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("big"), QByteArray(1 << 20, 'x'));
    EXPECT_EQ(XPFileMover::move(file, volume->path(QStringLiteral("big")))->kind, Kind::NoSpace);
    EXPECT_EQ(XPFileInfo::read(file)->size, 1 << 20);
    EXPECT_TRUE(XPFileUtils::isEmptyDirectory(volume->path()));
}

// Hardly any room for attributes: a short list of tags fits, a long one does not.
TEST(FileMover, ATargetWithoutRoomForTagsTakesNothingUnlessTold)
{
    const auto volume = TestVolume::ext4SmallBlocks();
    if (!volume)
        GTEST_SKIP() << "needs root and loop devices";
    const TestFolder folder;
    const QString plain = folder.file(QStringLiteral("plain"));
    const QString file = folder.file(QStringLiteral("tagged"));
    const QStringList many = {QString(700, u'a'), QString(700, u'b')};
    ASSERT_EQ(Karvex::setUserTags(many, file), std::nullopt);
    ASSERT_EQ(Karvex::setRating(4, file), std::nullopt);
    EXPECT_EQ(XPAttributeRoom::wouldLose({plain, file}, volume->path()).valueOr({}),
              QStringList(file));
    EXPECT_EQ(XPAttributeRoom::wouldLose({plain, file}, folder.path()).valueOr({file}),
              QStringList());
    const QString there = volume->path(QStringLiteral("tagged"));
    EXPECT_EQ(XPFileMover::move(file, there)->kind, Kind::NoSpace);
    EXPECT_FALSE(XPFileInfo::read(there));
    EXPECT_EQ(Karvex::getUserTags(file).valueOr({}), many);
    EXPECT_EQ(XPFileMover::move(file, there, {.attributes = Attributes::MayBeLost}), std::nullopt);
    EXPECT_TRUE(XPFileInfo::read(there));
    EXPECT_FALSE(XPFileInfo::read(file));
    const QString backup = KarvexBackupFile::defaultPath();
    const auto bytes = KarvexBackupFile::readBytes(backup);
    ASSERT_TRUE(bytes);
    const auto record = KarvexBackupFile::decode(*bytes, backup)->value(there);
    EXPECT_EQ(record.tags, many);
    EXPECT_EQ(record.rating, 4);
}

TEST(FileMover, ATargetThatKeepsNoAttributesTakesNothingUnlessTold)
{
    const TestFolder folder;
    const QString point = XPPath::folder(folder.file(QStringLiteral("volume/x")));
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root";
    ASSERT_EQ(
        runChild([&] {
            ASSERT_TRUE(havePrivateMounts());
            ASSERT_EQ(::mount("ramfs", XPPath::encode(point).constData(), "ramfs", 0, nullptr), 0);
            const QString file = folder.file(QStringLiteral("tagged"));
            const QString there = point + QStringLiteral("/tagged");
            ASSERT_EQ(Karvex::setUserTags(QStringList(QStringLiteral("t")), file), std::nullopt);
            EXPECT_EQ(XPFileMover::move(file, there)->kind, Kind::Unsupported);
            EXPECT_EQ(Karvex::getUserTags(file).valueOr({}).size(), 1);
            EXPECT_EQ(XPFileMover::copy(file, there, {.attributes = Attributes::MayBeLost}),
                      std::nullopt);
            EXPECT_TRUE(XPFileInfo::read(there));
        }),
        0);
}

TEST(FileMover, APackageThatMayNotBeRemovedIsNotCopied)
{
    const auto other = otherVolume();
    if (!other || ::geteuid() != 0)
        GTEST_SKIP() << "needs root";
    const TestFolder folder;
    (void)folder.file(QStringLiteral("home/a.rtfd/locked/file"));
    const QString home = folder.path(QStringLiteral("home"));
    QFile::setPermissions(other->path(), QFile::Permissions(0x7777));
    const QString there = other->filePath(QStringLiteral("a.rtfd"));
    EXPECT_EQ(asPlainUser(home,
                          [&] {
                              const auto error =
                                  XPFileMover::move(home + QStringLiteral("/a.rtfd"), there);
                              return error && error->kind == Kind::NotPermitted ? 0 : 1;
                          }),
              0);
    EXPECT_TRUE(XPFileInfo::read(home + QStringLiteral("/a.rtfd/locked/file")));
    EXPECT_TRUE(XPFileUtils::isEmptyDirectory(other->path()));
}

TEST(FileMover, ReplacingPutsTheOldFileIntoTheTrash)
{
    const FilingScene scene(FilingScene::Target::SameVolume, FilingScene::Kind::File, true);
    const auto done = XPFileMover::moveReplacing(scene.source(), scene.target());
    ASSERT_TRUE(done);
    EXPECT_EQ(done->keptAside, QString());
    EXPECT_TRUE(scene.isAt(scene.target()));
    EXPECT_EQ(scene.foundOld(), 1);
    EXPECT_EQ(XPFileMover::moveReplacing(scene.target(), scene.target()).error().kind,
              Kind::InvalidArgument);
    EXPECT_TRUE(scene.isAt(scene.target()));
}

TEST(FileUtils, DeleteWhatNoTrashTakesOnlyWhenTold)
{
    const auto other = TestVolume::tmpfs("1m");
    if (!other)
        GTEST_SKIP() << "needs root";
    const QString file = other->path(QStringLiteral("a/file"));
    ASSERT_TRUE(QDir().mkpath(file)); // a folder, with one below
    // No trash: a file stands where it would be.
    for (const char *name : {".Trash", ".Trash-0"})
        ::close(::open(XPPath::encode(other->path(QLatin1String(name))).constData(),
                       O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    EXPECT_FALSE(XPFileUtils::moveFileToTrash(file, false));
    EXPECT_TRUE(XPFileInfo::read(file));
    EXPECT_TRUE(XPFileUtils::moveFileToTrash(file, true));
    EXPECT_FALSE(XPFileInfo::read(file));
}
