#include "XPTrash.h"

#include "TestHome.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <cerrno>
#include <cstdio>
#include <gtest/gtest.h>

// The private home and the test's folder are on one file system: all goes to the home's trash.

TEST(Trash, TakesFilesOfAnyName)
{
    const TestFolder folder;
    for (const QByteArray &name : {QByteArray("a.pdf"), QByteArray("new\nline \xC3\xA9 %41"),
                                   QByteArray("undecodable \x80\xFF")}) {
        const QString path = folder.path(XPPath::decode(name));
        (void)folder.file(XPPath::decode(name), "bytes");
        const auto moved = XPTrash::move(path);
        ASSERT_TRUE(moved) << moved.error().message.toStdString();
        EXPECT_FALSE(XPFileInfo::read(path));
        const QString there = XPFolders::trash() + QStringLiteral("/files/") + XPPath::decode(name);
        EXPECT_EQ(*moved, there);
        const auto info = XPFileInfo::read(there);
        ASSERT_TRUE(info) << name.toStdString();
        EXPECT_EQ(info->size, 5);
        if (name.contains('\x80')) { // which the private home could not be cleaned of
            const QByteArray trash = XPPath::encode(XPFolders::trash());
            std::remove(XPPath::encode(there).constData());
            EXPECT_EQ(std::remove((trash + "/info/" + name + ".trashinfo").constData()), 0);
        }
    }
    (void)folder.file(QStringLiteral("a.pdf"), "another");
    EXPECT_EQ(XPPath::fileName(*XPTrash::move(folder.path(QStringLiteral("a.pdf")))), u"a 1.pdf");
    EXPECT_EQ(XPFileInfo::read(XPFolders::trash() + QStringLiteral("/files/a.pdf"))->size, 5)
        << "what was thrown away before is kept";
}

TEST(Trash, LeavesWhatItCannotTake)
{
    const TestFolder folder;
    const auto none = XPTrash::move(folder.path(QStringLiteral("none")));
    ASSERT_FALSE(none);
    EXPECT_EQ(none.error().kind, XPError::Kind::NotFound);
    for (const QString &path : {QStringLiteral("relative"), QString(), QStringLiteral("/")})
        EXPECT_EQ(XPTrash::move(path).error().kind, XPError::Kind::InvalidArgument);
    // A file system that desktops keep no trash on: the kernel's own.
    EXPECT_FALSE(XPTrash::move(QStringLiteral("/proc/self/status")));
}

static QByteArray noteOf(const QString &inTrash)
{
    QFile note(XPPath::folder(XPPath::folder(inTrash)) + QStringLiteral("/info/") +
               XPPath::fileName(inTrash) + QStringLiteral(".trashinfo"));
    return note.open(QIODevice::ReadOnly) ? note.readAll() : QByteArray();
}

TEST(Trash, GivesBackWhatItTook)
{
    const TestFolder folder;
    const QString path = folder.file(QStringLiteral("in/back.pdf"), "first");
    const QString inTrash = *XPTrash::move(path);
    ASSERT_FALSE(noteOf(inTrash).isEmpty());
    // Somebody took the name.
    (void)folder.file(QStringLiteral("in/back.pdf"), "newer one");
    EXPECT_EQ(XPTrash::putBack(inTrash, path)->code, EEXIST);
    EXPECT_FALSE(noteOf(inTrash).isEmpty());
    EXPECT_EQ(XPFileInfo::read(path)->size, 9);
    // The folder is gone.
    QDir(folder.path(QStringLiteral("in"))).removeRecursively();
    EXPECT_EQ(XPTrash::putBack(inTrash, path), std::nullopt);
    EXPECT_EQ(XPFileInfo::read(path)->size, 5);
    EXPECT_TRUE(noteOf(inTrash).isEmpty());
    EXPECT_EQ(XPTrash::putBack(inTrash, path)->kind, XPError::Kind::NotFound);
}

TEST(Trash, TellsTheNameThatTheUserKnows)
{
    const TestFolder folder;
    const QString aside = folder.file(QStringLiteral("contract beingReplaced.pdf"), "old");
    const QString inTrash = *XPTrash::move(aside, folder.path(QStringLiteral("contract.pdf")));
    EXPECT_EQ(XPPath::fileName(inTrash), u"contract.pdf");
    EXPECT_TRUE(noteOf(inTrash).contains("/contract.pdf\n")) << noteOf(inTrash).constData();
}

TEST(Trash, FindsNamesWhereManyAreTakenOrTooLong)
{
    const TestFolder folder;
    const QString longest = QString(124, QChar(0xE4)) + QStringLiteral("abc.pdf"); // 255 bytes
    QSet<QString> names;
    for (int i = 0; i < 3; ++i) {
        const auto inTrash = XPTrash::move(folder.file(longest));
        ASSERT_TRUE(inTrash);
        EXPECT_TRUE(inTrash->endsWith(u".pdf"));
        EXPECT_FALSE(noteOf(*inTrash).isEmpty());
        names.insert(*inTrash);
    }
    EXPECT_EQ(names.size(), 3);
}

// A volume of its own, which needs no rights to be one: shared memory.
TEST(Trash, KeepsWhatIsOnAnotherVolumeThere)
{
    const QTemporaryDir other(QStringLiteral("/dev/shm/murn-test-XXXXXX"));
    ASSERT_TRUE(other.isValid());
    const QString path = other.filePath(QStringLiteral("a b.pdf"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const auto inTrash = XPTrash::move(path);
    ASSERT_TRUE(inTrash);
    EXPECT_TRUE(inTrash->startsWith(u"/dev/shm/.Trash")) << inTrash->toStdString();
    EXPECT_TRUE(noteOf(*inTrash).contains("\nPath=murn-test-")) << noteOf(*inTrash).constData();
    EXPECT_EQ(XPTrash::putBack(*inTrash, path), std::nullopt);
    EXPECT_TRUE(XPFileInfo::read(path));
    for (const char *folder : {"/files", "/info", ""}) // which go if nothing else is in them
        QDir().rmdir(XPPath::folder(XPPath::folder(*inTrash)) + QLatin1String(folder));
}
