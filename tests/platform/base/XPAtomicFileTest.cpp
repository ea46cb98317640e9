#include "XPAtomicFile.h"

#include "TestSystem.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using Kind = XPError::Kind;

static quint32 permissions(const QString &path)
{
    return XPFileInfo::read(path)->mode & 0777;
}

static qsizetype filesIn(const QString &folder)
{
    const std::filesystem::directory_iterator entries(XPPath::encode(folder).toStdString());
    return std::distance(begin(entries), end(entries));
}

TEST(XPAtomicFile, NewFilesArePrivateOldOnesKeepTheirPermissions)
{
    const TestFolder folder;
    const QString file = folder.path(QStringLiteral("new/folders/") + XPPath::decode("odd\xff"));
    ASSERT_EQ(XPAtomicFile::write(file, "one"), std::nullopt);
    EXPECT_EQ(permissions(file), 0600U);
    EXPECT_EQ(permissions(XPPath::folder(file)), 0700U);
    ASSERT_EQ(::chmod(XPPath::encode(file).constData(), 0640), 0);
    ASSERT_EQ(XPAtomicFile::write(file, {}), std::nullopt);
    EXPECT_EQ(permissions(file), 0640U);
    EXPECT_EQ(XPAtomicFile::read(file).value(), QByteArray());
    EXPECT_EQ(filesIn(XPPath::folder(file)), 1);
}

TEST(XPAtomicFile, LinksStayAndTheFileBehindThemChanges)
{
    const TestFolder folder;
    const QString real = folder.path(QStringLiteral("elsewhere/real"));
    const QByteArray first = XPPath::encode(folder.path(QStringLiteral("first")));
    const QByteArray second = XPPath::encode(folder.path(QStringLiteral("second")));
    ASSERT_EQ(::symlink("second", first.constData()), 0);
    ASSERT_EQ(::symlink(XPPath::encode(real).constData(), second.constData()), 0);
    for (const char *bytes : {"made through a dangling link", "replaced"}) {
        ASSERT_EQ(XPAtomicFile::write(XPPath::decode(first), bytes), std::nullopt);
        EXPECT_EQ(XPAtomicFile::read(real).value(), bytes);
        EXPECT_TRUE(XPFileInfo::read(XPPath::decode(first))->isLink());
        EXPECT_TRUE(XPFileInfo::read(XPPath::decode(second))->isLink());
    }
    ASSERT_EQ(::unlink(second.constData()), 0);
    ASSERT_EQ(::symlink("first", second.constData()), 0);
    EXPECT_EQ(XPAtomicFile::write(XPPath::decode(first), "x")->code, ELOOP);
}

TEST(XPAtomicFile, WhatCannotBeReadOrReplacedIsNamed)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("f"), "four");
    EXPECT_EQ(XPAtomicFile::read(file, 4).value(), QByteArray("four"));
    EXPECT_EQ(XPAtomicFile::read(file, 3).error().kind, Kind::TooLarge);
    EXPECT_EQ(XPAtomicFile::read(folder.path(QStringLiteral("no"))).error().kind, Kind::NotFound);
    const QString pipe = folder.path(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(XPPath::encode(pipe).constData(), 0600), 0);
    for (const QString &other : {pipe, folder.path()}) {
        EXPECT_EQ(XPAtomicFile::read(other).error().kind, Kind::InvalidArgument);
        EXPECT_EQ(XPAtomicFile::write(other, "x")->kind, Kind::InvalidArgument);
    }
    EXPECT_EQ(XPAtomicFile::write(file + QStringLiteral("/below"), "x")->kind, Kind::NotFound);
    EXPECT_EQ(XPAtomicFile::read(file).value(), QByteArray("four"));
}

TEST(XPAtomicFile, AFileThatMayNotBeWrittenIsLeftAlone)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("f"), "old");
    ASSERT_EQ(::chmod(XPPath::encode(file).constData(), 0444), 0);
    const int outcome = asPlainUser(folder.path(), [&file] {
        const auto error = XPAtomicFile::write(file, "new");
        return error && error->kind == Kind::NotPermitted ? 0 : 1;
    });
    EXPECT_EQ(outcome, 0);
    EXPECT_EQ(XPAtomicFile::read(file).value(), QByteArray("old"));
}

TEST(XPAtomicFile, AFullDiskLeavesTheOldFile)
{
    const auto volume = TestVolume::tmpfs("256k");
    if (!volume)
        GTEST_SKIP() << "no file system can be mounted here";
    const QString file = volume->path(QStringLiteral("f"));
    const QByteArray old(100'000, 'o');
    ASSERT_EQ(XPAtomicFile::write(file, old), std::nullopt);
    EXPECT_EQ(XPAtomicFile::write(file, QByteArray(200'000, 'n'))->kind, Kind::NoSpace);
    EXPECT_EQ(XPAtomicFile::read(file).value(), old);
    EXPECT_EQ(filesIn(volume->path()), 1);
    EXPECT_EQ(XPAtomicFile::write(file, QByteArray(100'000, 'n')), std::nullopt);
}

TEST(XPAtomicFile, KilledAtAnyMomentTheFileIsWhole)
{
    const TestFolder folder;
    const QString file = folder.path(QStringLiteral("f"));
    constexpr qsizetype size = 300'000;
    for (int round = 0; round < 60; ++round) {
        int finished[2] = {};
        ASSERT_EQ(::pipe(finished), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            for (char letter = 'a';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1)) {
                if (XPAtomicFile::write(file, QByteArray(size, letter)) ||
                    ::write(finished[1], "", 1) != 1)
                    ::_exit(1);
            }
        }
        char byte = 0; // the first write is done, a later one under way: a moment into it, kill
        ASSERT_EQ(::read(finished[0], &byte, 1), 1);
        for (volatile int spin = 0; spin < round * 20'000;)
            spin = spin + 1;
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        ::close(finished[0]);
        ::close(finished[1]);
        const QByteArray bytes = XPAtomicFile::read(file).value();
        ASSERT_EQ(bytes.size(), size);
        ASSERT_EQ(bytes.count(bytes.front()), size);
    }
}

TEST(XPAtomicFile, DamagedFilesAreSetAsideOverNothing)
{
    const TestFolder folder;
    for (const QString &ending : {QString(), QStringLiteral("-2"), QStringLiteral("-3")}) {
        const QString file = folder.file(QStringLiteral("f"), "bad" + ending.toLatin1());
        const QString aside = XPAtomicFile::setAside(file).value();
        EXPECT_EQ(aside, file + QStringLiteral(".damaged") + ending);
        EXPECT_EQ(XPAtomicFile::read(aside).value(), "bad" + ending.toLatin1());
        EXPECT_EQ(XPAtomicFile::setAside(file).error().kind, Kind::NotFound);
    }
    EXPECT_EQ(filesIn(folder.path()), 3);
}
