#include "KPFileType.h"
#include "KPContentTypes.h"

#include "XPPath.h"

#include <QDir>
#include <QFile>
#include <TestHome.h>
#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

// The installed functions are the process's: every test starts and ends without them.
class KPFileTypeTest : public testing::Test
{
protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }
    static void reset()
    {
        KPFileType::setIndexLookup({});
        KPFileType::setSlowVolumeTest([](const QString &) { return false; });
    }
    static QString type(const QString &path)
    {
        return KPFileType::utiForPath(path, XPPath::extension(path));
    }

    TestFolder folder;
};

const QByteArray pngBytes("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);

} // namespace

TEST_F(KPFileTypeTest, NamesFoldersAndLinksWithoutReading)
{
    QDir().mkpath(folder.path(QStringLiteral("plain")));
    QDir().mkpath(folder.path(QStringLiteral("Project v1.2")));
    QDir().mkpath(folder.path(QStringLiteral("Tool.app")));
    QDir().mkpath(folder.path(QStringLiteral("old.pages")));
    folder.file(QStringLiteral("new.pages"));
    ASSERT_EQ(::symlink("plain", XPPath::encode(folder.path(QStringLiteral("link"))).constData()),
              0);
    const auto at = [&](QStringView name) { return type(folder.path(name.toString())); };
    EXPECT_EQ(at(u"plain"), KPFileType::folderUTI);
    EXPECT_EQ(at(u"Project v1.2"), KPFileType::folderUTI);
    EXPECT_EQ(at(u"Tool.app"), QStringLiteral("com.apple.application-bundle"));
    EXPECT_EQ(at(u"old.pages"), QStringLiteral("com.apple.iwork.pages.pages"));
    EXPECT_EQ(at(u"new.pages"), QStringLiteral("com.apple.iwork.pages.sffpages"));
    EXPECT_EQ(at(u"link"), KPFileType::aliasUTI);
    EXPECT_EQ(at(u"missing"), QString());
    EXPECT_EQ(at(u"missing.pdf"), QStringLiteral("com.adobe.pdf"));
    EXPECT_EQ(KPFileType::utiForPath({}, {}), KPFileType::noFileUTI);
}

TEST_F(KPFileTypeTest, TheModeTellsLinksAndFoldersFromFilesOfTheSameName)
{
    const QString pdf = QStringLiteral("pdf");
    const QString path = folder.file(QStringLiteral("a.pdf"));
    EXPECT_EQ(KPFileType::utiForPath(path, pdf, S_IFREG), QStringLiteral("com.adobe.pdf"));
    EXPECT_EQ(KPFileType::utiForPath(path, pdf, S_IFDIR), KPFileType::folderUTI);
    EXPECT_EQ(KPFileType::utiForPath(path, pdf, S_IFLNK), KPFileType::aliasUTI);
    EXPECT_EQ(KPFileType::utiForPath(path, pdf, S_IFIFO), KPFileType::itemUTI);
    const QString target = folder.path(QStringLiteral("b.pdf"));
    ASSERT_EQ(::symlink("a.pdf", XPPath::encode(target).constData()), 0);
    EXPECT_EQ(KPFileType::utiForFile(target), KPFileType::aliasUTI);
}

TEST_F(KPFileTypeTest, AFileWithoutAUsefulExtensionIsJudgedByItsContent)
{
    const struct
    {
        QStringView name;
        QByteArray bytes;
        const char *type;
    } files[] = {
        {u"picture", pngBytes, "public.png"},
        {u"PAPER", "%PDF-1.4\n%\xe2\xe3\xcf\xd3\n", "com.adobe.pdf"},
        {u"script", "#!/bin/sh\necho\n", "public.shell-script"},
        {u"notes", "Just some words.\n", "public.plain-text"},
        {u"noise", QByteArray("\x01\x02\x00\x9f\xfe\x03", 6), "public.data"},
        {u"nothing", "", "public.data"},
        {u".hidden", "words\n", "public.plain-text"},
        {u"program.ts", "const a: string = 'x';\n", "com.microsoft.typescript"},
        {u"noise.ts", QByteArray("\x01\x02\x00\x9f\xfe\x03", 6), "public.mpeg-2-transport-stream"},
        {u"page.pub", "ssh-ed25519 AAAA user\n", "com.openssh.public-key"},
        {u"name.", "words\n", "public.plain-text"},
    };
    for (const auto &file : files) {
        const QString path = folder.file(file.name.toString(), file.bytes);
        EXPECT_EQ(type(path), QLatin1String(file.type)) << qPrintable(path);
    }
    const QString bad = folder.path() + u'/' + XPPath::decode("\xff\xfe");
    QFile::rename(folder.file(QStringLiteral("x"), pngBytes), folder.path(QStringLiteral("y")));
    ASSERT_EQ(::rename(XPPath::encode(folder.path(QStringLiteral("y"))).constData(),
                       XPPath::encode(bad).constData()),
              0);
    EXPECT_EQ(type(bad), QStringLiteral("public.png"));
}

TEST_F(KPFileTypeTest, CacheFilesWithHashLikeExtensionsAreNotLookedAt)
{
    const QString path = QStringLiteral("/nowhere/Library/Caches/x.");
    const QString long18 = QStringLiteral("verylongcachename1");
    EXPECT_EQ(KPFileType::utiForPath(path + long18, long18), KPFileType::dataUTI);
    const QString short15 = QStringLiteral("verylongcachen1");
    EXPECT_TRUE(KPFileType::utiForPath(path + short15, short15).startsWith(u"dyn."));
}

// A reader that waited for a pipe's writer would hang here, and one that opened it would wake
// the writer below.
TEST_F(KPFileTypeTest, PipesAreNeverOpened)
{
    for (QStringView name : {u"pipe", u"pipe.ts"}) {
        const QString path = folder.path(name.toString());
        const QByteArray bytes = XPPath::encode(path);
        ASSERT_EQ(::mkfifo(bytes.constData(), 0600), 0);
        EXPECT_EQ(type(path), KPFileType::itemUTI);
        EXPECT_EQ(::open(bytes.constData(), O_WRONLY | O_NONBLOCK), -1) << "somebody reads it";
    }
}

TEST_F(KPFileTypeTest, OnASlowVolumeOnlyTheNameCounts)
{
    KPFileType::setSlowVolumeTest([](const QString &) { return true; });
    const QString picture = folder.file(QStringLiteral("slowpicture"), pngBytes);
    EXPECT_EQ(type(picture), KPFileType::preferredUTIForExtension(QStringLiteral("unknown")));
    EXPECT_EQ(type(folder.file(QStringLiteral("slow.ts"), "const a = 1;\n")),
              QStringLiteral("public.mpeg-2-transport-stream"));
    QString fromExtension;
    EXPECT_EQ(KPFileType::utiForPathSlow(folder.path(QStringLiteral("gone.mkv")),
                                         QStringLiteral("mkv"), &fromExtension),
              QStringLiteral("org.matroska.mkv"));
    EXPECT_EQ(fromExtension, QStringLiteral("org.matroska.mkv"));
}

TEST_F(KPFileTypeTest, TheIndexIsTheLastResort)
{
    int asked = 0;
    KPFileType::setIndexLookup([&asked](const QString &path) {
        ++asked;
        return path.endsWith(u"known") ? QStringLiteral("com.example.known") : QString();
    });
    EXPECT_EQ(type(folder.file(QStringLiteral("text"), "words\n")),
              QStringLiteral("public.plain-text"));
    EXPECT_EQ(type(folder.path(QStringLiteral("no-such-file"))), QString());
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(type(folder.file(QStringLiteral("known"), "")), QStringLiteral("com.example.known"));
    EXPECT_EQ(type(folder.file(QStringLiteral("unheard"), "")), KPFileType::dataUTI);
    EXPECT_EQ(asked, 2);
    const KPFileType::WithoutIndex asTheIndexItself;
    EXPECT_EQ(type(folder.file(QStringLiteral("also known"), "")), KPFileType::dataUTI);
    EXPECT_EQ(asked, 2);
}

TEST_F(KPFileTypeTest, RemembersUntilThePathIsForgotten)
{
    const QString path = folder.file(QStringLiteral("changing"), pngBytes);
    EXPECT_EQ(type(path), QStringLiteral("public.png"));
    folder.file(QStringLiteral("changing"), "%PDF-1.4\n");
    EXPECT_EQ(type(path), QStringLiteral("public.png")) << "from the cache";
    KPFileType::forgetPath(path);
    EXPECT_EQ(type(path), QStringLiteral("com.adobe.pdf"));

    // A folder took the place of the file, and of a file whose extension said nothing for sure.
    for (QStringView name : {u"changing", u"odd.xq-a"}) {
        const QString place = folder.file(name.toString());
        EXPECT_NE(type(place), KPFileType::folderUTI);
        ASSERT_EQ(::unlink(XPPath::encode(place).constData()), 0);
        QDir().mkpath(place);
        KPFileType::forgetPath(place);
        EXPECT_EQ(type(place), KPFileType::folderUTI);
    }
    // A file that was not there leaves no trace.
    const QString late = folder.path(QStringLiteral("late.xq-b"));
    EXPECT_TRUE(type(late).startsWith(u"dyn."));
    QDir().mkpath(late);
    EXPECT_EQ(type(late), KPFileType::folderUTI);
}

// The file changes, and is reported so, while its type is being found: that answer must not stay.
TEST_F(KPFileTypeTest, AnAnswerOvertakenByAChangeIsNotRemembered)
{
    const QString path = folder.file(QStringLiteral("overtaken"), "");
    KPFileType::setIndexLookup([](const QString &asked) {
        KPFileType::forgetPath(asked);
        return QStringLiteral("com.example.stale");
    });
    EXPECT_EQ(type(path), QStringLiteral("com.example.stale"));
    KPFileType::setIndexLookup({});
    EXPECT_EQ(type(path), KPFileType::dataUTI);
}

TEST_F(KPFileTypeTest, OnlyAReliableExtensionIsRemembered)
{
    const auto best = [](const char *extension, const char *extensionUTI, const char *pathUTI) {
        return KPFileType::bestUTIForStoringExtension(
            QLatin1String(extension), QLatin1String(extensionUTI), QLatin1String(pathUTI));
    };
    EXPECT_EQ(best("pdf", "com.adobe.pdf", "com.adobe.pdf"), QStringLiteral("pdf"));
    EXPECT_EQ(best("pdf", "com.adobe.pdf", "public.folder"), QString());
    EXPECT_EQ(best("ts", "", "public.mpeg-2-transport-stream"), QString());
    EXPECT_EQ(best("app", "com.apple.application-bundle", "com.apple.application-bundle"),
              QString());
    const QByteArray dynamic =
        KPFileType::preferredUTIForExtension(QStringLiteral("xqz")).toLatin1();
    EXPECT_EQ(best("xqz", dynamic.constData(), dynamic.constData()), QString());
    EXPECT_EQ(best("", "", "public.folder"), QString());
}

TEST_F(KPFileTypeTest, NamesForPeople)
{
    const auto name = [](const char *uti) {
        return KPFileType::displayNameForUTI(QLatin1String(uti));
    };
    EXPECT_EQ(name("com.adobe.pdf"), QStringLiteral("PDF document"));
    EXPECT_EQ(name("tree_public.image"), name("public.image"));
    EXPECT_EQ(name("KPExtensionSearch_pdf"), QStringLiteral("pdf file"));
    EXPECT_EQ(name("KPkMDItemKind_A kind"), QStringLiteral("A kind"));
    EXPECT_EQ(name("com.example.unheard"), QStringLiteral("Unknown type com.example.unheard"));
    EXPECT_EQ(name("dyn.agq8u"), QStringLiteral("Unknown type dyn.agq8u"));
    EXPECT_EQ(name(""), QString());
    EXPECT_EQ(KPFileType::itemKindForFile(folder.file(QStringLiteral("i"), pngBytes)),
              QStringLiteral("PNG image"));
    EXPECT_TRUE(KPFileType::isMovie(QStringLiteral("/a/b.MOV")));
    EXPECT_FALSE(KPFileType::isMovie(QStringLiteral("/a.mov/b")));
    EXPECT_TRUE(KPFileType::isImage(QStringLiteral("/a/b.tif")));
    EXPECT_FALSE(KPFileType::isImage(QStringLiteral("/a/b.tiff")));
}

// For the thread sanitizer: every cache read and filled from many sides at once.
TEST_F(KPFileTypeTest, ManyThreadsGetTheSameAnswers)
{
    QStringList paths;
    for (QStringView name : {u"a.pdf", u"b.JPG", u"c", u"d.ts", u"e.xq-t", u"f.pages"})
        paths.append(folder.file(name.toString(), "words\n"));
    QStringList expected;
    for (const QString &path : paths)
        expected.append(type(path));
    std::atomic<int> wrong = 0;
    std::vector<std::jthread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 300; ++round) {
                const qsizetype i = (round + t) % paths.size();
                if (type(paths[i]) != expected[i])
                    ++wrong;
                if (round % 7 == 0)
                    KPFileType::forgetPath(paths[i]);
                if (round % 50 == 0)
                    KPFileType::setIndexLookup([](const QString &) { return QString(); });
            }
        });
    }
    threads.clear();
    EXPECT_EQ(wrong, 0);
}
