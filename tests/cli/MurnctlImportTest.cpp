#include "Murnctl.h"

#include "CagedImporter.h"
#include "IndexSettings.h"
#include "TestHome.h"
#include "XPAtomicFile.h"
#include "XPPath.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QtEndian>
#include <gtest/gtest.h>

TEST(MurnctlImport, ShowsWhatTheImporterFinds)
{
    const TestFolder folder;
    folder.file(QStringLiteral("a.md"), "# Heading\ntext\x1B[31m\n");
    folder.file(QStringLiteral("b.unknown"), "?");
    const MurnctlResult json =
        murnctl({"import", "--json", "a.md", "none.md", "b.unknown"}, folder.path());
    EXPECT_EQ(json.status, 1);
    EXPECT_EQ(json.err, "murnctl: none.md: No such file or directory\n"
                        "murnctl: b.unknown: unsupported\n");
    const QJsonArray list = json.json().array();
    ASSERT_EQ(list.size(), 2) << json.out.constData();
    const QJsonObject first = list[0].toObject();
    EXPECT_EQ(first[QStringLiteral("path")].toString(), u"a.md");
    EXPECT_EQ(first[QStringLiteral("type")].toString(), u"net.daringfireball.markdown");
    EXPECT_EQ(first[QStringLiteral("title")].toString(), u"Heading");
    EXPECT_TRUE(first[QStringLiteral("text")].toString().contains(QStringLiteral("text")));
    EXPECT_EQ(first[QStringLiteral("attributes")][QStringLiteral("kMDItemTitle")].toString(),
              u"Heading");
    EXPECT_TRUE(first[QStringLiteral("pages")].isDouble());
    EXPECT_TRUE(first[QStringLiteral("error")].isNull());
    EXPECT_EQ(list[1].toObject()[QStringLiteral("error")].toString(), u"unsupported");

    const MurnctlResult text = murnctl({"import", "a.md"}, folder.path());
    EXPECT_EQ(text.status, 0) << text.err.constData();
    EXPECT_TRUE(text.out.contains("kMDItemTitle: Heading\n")) << text.out.constData();
    EXPECT_FALSE(text.out.contains('\x1B')) << "a terminal would obey";
    EXPECT_EQ(murnctl({"import"}, folder.path()).status, 2);
}

// What only the importer can read is found, and what broke it is named, with the reason.
TEST(MurnctlImport, FeedsTheIndex)
{
    const TestFolder folder;
    const auto run = [&](const QByteArrayList &words) { return murnctl(words, folder.path()); };
    folder.file(QStringLiteral("page.html"),
                "<html><head><title>Harbour</title></head><body><p>a dry dock</p></body></html>");
    const QString bad = folder.file(QStringLiteral("bad.html"));
    {
        const auto document =
            ImportDocument::open(XPPath::encode(bad), QStringLiteral("public.html"));
        ASSERT_TRUE(document);
        ImportAttempts attempts(CagedImporter::attemptsOf(IndexSettings::storePath()));
        const ImportWorker::Break crash = {DocumentFailure::Crashed, QStringLiteral("signal 11")};
        attempts.broke(*document, crash);
        attempts.broke(*document, crash);
    }
    ASSERT_EQ(run({"index", "add", "."}).status, 0);
    EXPECT_EQ(run({"index", "sync"}).err, "");
    EXPECT_EQ(run({"query", "kMDItemTextContent == \"dry dock\"cd"}).lines(),
              QByteArrayList{XPPath::encode(folder.path(QStringLiteral("page.html")))});
    EXPECT_EQ(run({"query", "kMDItemTitle == Harbour"}).lines().size(), 1);
    const MurnctlResult status = run({"index", "status"});
    EXPECT_TRUE(status.out.contains("bad.html  (crashed: signal 11)\n")) << status.out.constData();
    EXPECT_TRUE(status.out.contains("shut in by Landlock")) << status.out.constData();
    const QJsonObject json = run({"index", "status", "--json"}).json().object();
    EXPECT_EQ(json[QStringLiteral("notRead")].toArray()[0][QStringLiteral("path")].toString(), bad);
    EXPECT_TRUE(json[QStringLiteral("caged")].toBool());
    run({"index", "remove", "."});
}

// Width and height in the head of a PNG file; nothing where it is none.
static std::pair<int, int> pngSize(const QString &path)
{
    const QByteArray head = XPAtomicFile::read(path).valueOr({}).left(24);
    if (!head.startsWith("\x89PNG") || head.size() < 24)
        return {0, 0};
    return {qFromBigEndian<int>(head.constData() + 16), qFromBigEndian<int>(head.constData() + 20)};
}

// Words laid out as a page, in the real cage: fonts must be at hand there.
TEST(MurnctlThumbnail, DrawsPagesOfWords)
{
    const TestFolder folder;
    folder.file(QStringLiteral("a.md"), "# Dry dock\n\nThe ship is in the dock.\n");
    folder.file(QStringLiteral("b.txt"), "Nothing else");
    folder.file(QStringLiteral("empty.txt"), "");
    const auto run = [&](const QByteArrayList &words) { return murnctl(words, folder.path()); };
    EXPECT_EQ(run({"thumbnail", "a.md", "-o", "a.png"}).err, "");
    EXPECT_EQ(pngSize(folder.path(QStringLiteral("a.png"))), std::pair(362, 512));
    EXPECT_EQ(run({"thumbnail", "b.txt", "-o", "b.png", "--size", "512"}).err, "");
    EXPECT_NE(XPAtomicFile::read(folder.path(QStringLiteral("a.png"))).valueOr({}),
              XPAtomicFile::read(folder.path(QStringLiteral("b.png"))).valueOr({}));

    EXPECT_EQ(run({"thumbnail", "a.md", "-o", "c.png", "--page", "2"}).err,
              "murnctl: a.md: There is no picture of page 2.\n");
    EXPECT_EQ(pngSize(folder.path(QStringLiteral("c.png"))), std::pair(0, 0));
    EXPECT_EQ(run({"thumbnail", "empty.txt", "-o", "c.png"}).err, ""); // an empty page
    EXPECT_EQ(pngSize(folder.path(QStringLiteral("c.png"))), std::pair(362, 512));
    EXPECT_EQ(run({"thumbnail", "a.md"}).status, 2);
    EXPECT_EQ(run({"thumbnail", "a.md", "-o", "c.png", "--size", "-1"}).status, 2);
}
