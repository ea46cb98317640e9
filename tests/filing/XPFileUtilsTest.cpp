#include "XPFileUtils.h"

#include "TestHome.h"
#include "XPFileFacts.h"
#include "XPFreeNames.h"
#include "XPPath.h"
#include "XPText.h"
#include "XPVolumeFacts.h"

#include <QDir>
#include <gtest/gtest.h>

struct Unused
{
    const char *name;
    std::vector<QByteArray> present;
    QByteArray wanted;
    QByteArray expected;
};

class UnusedPath : public testing::TestWithParam<Unused>
{
};

TEST_P(UnusedPath, IsTheFirstFreeOne)
{
    const TestFolder folder;
    for (const QByteArray &name : GetParam().present)
        (void)folder.file(XPPath::decode(name));
    const QString path =
        XPFileUtils::findUnusedPath(folder.path(XPPath::decode(GetParam().wanted)));
    EXPECT_EQ(XPPath::encode(XPPath::fileName(path)), GetParam().expected);
    EXPECT_EQ(XPPath::folder(path), folder.path());
}

static const QByteArray longName = QByteArray(251, 'n') + ".pdf";
static const QByteArray accents = QByteArray("\xC3\xA9").repeated(125) + ".pdf";

INSTANTIATE_TEST_SUITE_P(
    Names, UnusedPath,
    testing::Values(Unused{"Free", {}, "report.pdf", "report.pdf"},
                    Unused{"Taken", {"report.pdf", "report 1.pdf"}, "report.pdf", "report 2.pdf"},
                    Unused{"Gap", {"report.pdf", "report 2.pdf"}, "report.pdf", "report 1.pdf"},
                    Unused{"NoExtension", {"notes"}, "notes", "notes 1"},
                    Unused{"TwoDots", {"a.tar.gz"}, "a.tar.gz", "a.tar 1.gz"},
                    Unused{"Hidden", {".profile"}, ".profile", ".profile 1"},
                    Unused{
                        "Composed", {"caf\xC3\xA9.pdf"}, "cafe\xCC\x81.pdf", "cafe\xCC\x81 1.pdf"},
                    Unused{"Decomposed",
                           {"cafe\xCC\x81.pdf", "caf\xC3\xA9 1.pdf"},
                           "caf\xC3\xA9.pdf",
                           "caf\xC3\xA9 2.pdf"},
                    Unused{"AsItWas", {}, "caf\xC3\xA9.pdf", "caf\xC3\xA9.pdf"},
                    Unused{"KelvinSign", {"\xE2\x84\xAA.pdf"}, "K.pdf", "K 1.pdf"},
                    Unused{"Undecodable", {"\xFF\x80.pdf"}, "\xFF\x80.pdf", "\xFF\x80 1.pdf"},
                    Unused{"TooLong", {longName}, longName, QByteArray(249, 'n') + " 1.pdf"},
                    Unused{"CutBetweenLetters",
                           {accents},
                           accents,
                           QByteArray("\xC3\xA9").repeated(124) + " 1.pdf"}),
    [](const auto &row) { return row.param.name; });

TEST(FreeNames, EndAtAThousand)
{
    const TestFolder folder;
    (void)folder.file(QStringLiteral("a.txt"));
    for (int i = 1; i < XPFreeNames::mostNumbers; ++i)
        (void)folder.file(QStringLiteral("a %1.txt").arg(i));
    const QString wanted = folder.path(QStringLiteral("a.txt"));
    const QString last = folder.path(QStringLiteral("a 1000.txt"));
    EXPECT_EQ(XPFileUtils::findUnusedPath(wanted), last);
    (void)folder.file(QStringLiteral("a 1000.txt"));
    EXPECT_EQ(XPFileUtils::findUnusedPath(wanted), wanted);
}

TEST(FreeNames, AreNotGivenOutTwice)
{
    const TestFolder folder;
    XPFreeNames names(folder.path());
    const QString composed = QStringLiteral("\u00e9.txt");
    EXPECT_EQ(names.take(composed), folder.path(composed));
    EXPECT_EQ(names.take(decomposed(composed)),
              folder.path(decomposed(QStringLiteral("\u00e9 1.txt"))));
    (void)folder.file(QStringLiteral("b")); // what another program puts there meanwhile
    EXPECT_EQ(names.take(QStringLiteral("b")), folder.path(QStringLiteral("b 1")));
}

TEST(FileFacts, TellPackagesLinksAndFoldersApart)
{
    const TestFolder folder;
    const QString file = folder.file(QStringLiteral("file.txt"));
    const QString package = XPPath::folder(folder.file(QStringLiteral("letter.rtfd/TXT.rtf")));
    const QString plain = XPPath::folder(folder.file(QStringLiteral("plain/a")));
    const QString link = folder.path(QStringLiteral("link"));
    ASSERT_EQ(::symlink("plain", XPPath::encode(link).constData()), 0);
    const QString none = folder.path(QStringLiteral("none"));
    const struct
    {
        QString path;
        bool directory, file, package, realFolder, fileOrPackage;
    } rows[] = {{file, false, true, false, false, true},
                {package, true, false, true, false, true},
                {plain, true, false, false, true, false},
                {link, false, true, false, false, true},
                {none, false, false, false, false, true}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path.toStdString());
        EXPECT_EQ(IsDirectory(row.path), row.directory);
        EXPECT_EQ(IsFile(row.path), row.file);
        EXPECT_EQ(IsPackage(row.path), row.package);
        EXPECT_EQ(IsRealFolder(row.path), row.realFolder);
        EXPECT_EQ(XPFileUtils::isFileOrPackage(row.path), row.fileOrPackage);
    }
    EXPECT_FALSE(XPFileUtils::isEmptyDirectory(plain));
    EXPECT_FALSE(XPFileUtils::isEmptyDirectory(none));
    EXPECT_TRUE(QDir().mkpath(none));
    EXPECT_TRUE(XPFileUtils::isEmptyDirectory(none));
}

TEST(VolumeFacts, ATestOfWritingLeavesNothingAndTouchesNothing)
{
    const TestFolder folder;
    const QString deep = folder.path(QStringLiteral("a/b"));
    EXPECT_TRUE(PathIsOnWritableDiskTestWrite(deep));
    EXPECT_TRUE(XPFileUtils::isEmptyDirectory(deep));
    const QString taken = folder.file(QStringLiteral("testWrite78789i781w.plist"), "mine");
    EXPECT_FALSE(PathIsOnWritableDiskTestWrite(folder.path()));
    EXPECT_EQ(GetFileSize(taken), 4);
    EXPECT_TRUE(PathIsOnWritableDisk(folder.path(QStringLiteral("not/yet/there"))));
    EXPECT_FALSE(PathIsOnWritableDisk({}));
}

TEST(VolumeFacts, APathThatIsNotThereYetIsOnItsFoldersVolume)
{
    const TestFolder folder;
    const QString missing = folder.path(QStringLiteral("2013/6/14/report.pdf"));
    EXPECT_TRUE(PathsOnSameVol(folder.path(), missing));
    EXPECT_FALSE(PathsOnSameVol(folder.path(), QStringLiteral("/proc/none")));
    EXPECT_EQ(UnixVolIDForPath(missing), std::nullopt);
    EXPECT_EQ(UnixVolIDForPathUsePartial(missing), UnixVolIDForPath(folder.path()));
}
