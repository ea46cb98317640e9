#include "Murnctl.h"

#include "Karvex.h"
#include "TestHome.h"
#include "XPAtomicFile.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

class MurnctlArchive : public testing::Test
{
protected:
    MurnctlArchive()
    {
        EXPECT_FALSE(Karvex::setUserTags(tags, letter));
        EXPECT_FALSE(Karvex::setRating(4, odd));
    }
    MurnctlResult run(const QByteArrayList &words) const { return murnctl(words, folder.path()); }

    const TestFolder folder;
    const QStringList tags = {QStringLiteral("one"), QStringLiteral("two")};
    const QString letter = folder.file(QStringLiteral("in/letter.txt"), "a letter");
    const QString odd = folder.file(XPPath::decode("in/sub/odd\xff\n.pdf"), "odd");
};

} // namespace

TEST_F(MurnctlArchive, BringsDocumentsElsewhereAndSaysSoBefore)
{
    const auto written = run({"export", "--to", "out.murnarchive", "--json", "in"});
    EXPECT_EQ(written.status, 0) << written.err.constData();
    EXPECT_EQ(written.json()[QStringLiteral("documents")].toInt(), 2);
    const QByteArrayList bring = {"import-archive", "--to", "new", "out.murnarchive"};
    EXPECT_EQ(run(bring).status, 2) << "nobody can be asked";
    const auto dry = run(bring + QByteArrayList{"--dry-run"});
    EXPECT_TRUE(dry.out.endsWith("of 2 documents: 2 added (nothing was changed)\n"))
        << dry.out.constData();
    EXPECT_FALSE(XPFileInfo::read(folder.path(QStringLiteral("new"))));
    const QJsonObject done = run(bring + QByteArrayList{"--yes", "--json"}).json().object();
    EXPECT_EQ(done[QStringLiteral("added")].toInt(), 2);
    EXPECT_EQ(done[QStringLiteral("steps")].toArray().size(), 2);
    const QString there = folder.path(QStringLiteral("new/letter.txt"));
    EXPECT_EQ(*Karvex::getUserTags(there), tags);
    EXPECT_EQ(*Karvex::getRating(folder.path(XPPath::decode("new/sub/odd\xff\n.pdf"))), 4);

    EXPECT_FALSE(Karvex::setXAttrMetaData({}, Karvex::userTagsKey, there));
    EXPECT_FALSE(Karvex::setXAttrMetaData({}, Karvex::userTagTimeKey, there));
    const auto again = run(bring + QByteArrayList{"--yes"});
    EXPECT_EQ(again.out, "changed  " + XPPath::encode(there) +
                             "\n         none -> one, two\nof 2 documents: 1 same, 1 changed\n");
}

TEST_F(MurnctlArchive, TakesAllFilesOfAFolder)
{
    constexpr int many = 1200; // more than filing takes at once
    for (int i = 0; i < many; ++i)
        folder.file(QStringLiteral("many/%1/%2").arg(i % 7).arg(i));
    const auto written = run({"export", "--to", "all", "--json", "many"});
    EXPECT_EQ(written.json()[QStringLiteral("documents")].toInt(), many) << written.err.data();
}

TEST_F(MurnctlArchive, RefusesWhatItCannotDo)
{
    EXPECT_EQ(run({"export", "in"}).status, 2);
    EXPECT_EQ(run({"export", "--to", "x"}).status, 2);
    EXPECT_EQ(run({"import-archive", "--yes"}).status, 2);
    EXPECT_EQ(run({"export", "--to", "out", "in/letter.txt", "in/none"}).status, 1)
        << "one is written, one was not there";
    EXPECT_EQ(run({"import-archive", "--yes", "--to", "new", "out"}).status, 0);
    const auto taken = run({"export", "--to", "out", "in"});
    EXPECT_EQ(taken.status, 1);
    EXPECT_TRUE(taken.err.contains("out: ")) << taken.err.constData();

    const QByteArray whole = *XPAtomicFile::read(folder.path(QStringLiteral("out")));
    folder.file(QStringLiteral("cut"), whole.first(whole.size() / 2));
    const auto cut = run({"import-archive", "--yes", "--to", "other", "cut"});
    EXPECT_EQ(cut.status, 1);
    EXPECT_TRUE(cut.err.contains("archive")) << cut.err.constData();
    EXPECT_FALSE(XPFileInfo::read(folder.path(QStringLiteral("other"))));
    EXPECT_EQ(run({"import-archive", "--yes", "none"}).status, 1);
}

TEST_F(MurnctlArchive, FindsDuplicates)
{
    folder.file(QStringLiteral("in/copy.txt"), "a letter");
    EXPECT_EQ(run({"index", "add", "in"}).status, 0);
    const auto found = run({"duplicates", "--in", "in"});
    EXPECT_EQ(found.out, XPPath::encode(folder.path(QStringLiteral("in/copy.txt"))) + '\n' +
                             XPPath::encode(letter) +
                             "\n\n1 groups; 8 bytes are kept more than once\n");
    const auto json = run({"duplicates", "--in", "in", "--json"}).json();
    ASSERT_EQ(json.array().size(), 1);
    EXPECT_EQ(json[0][QStringLiteral("paths")].toArray().size(), 2);
    EXPECT_EQ(run({"duplicates", "word"}).status, 2);
    run({"index", "remove", "in"});
}

TEST_F(MurnctlArchive, CapturesNothingButWebPages)
{
    EXPECT_EQ(run({"capture"}).status, 2);
    EXPECT_EQ(run({"capture", "--width", "1", "example.org"}).status, 2);
    for (const char *address : {"file:///etc/passwd", "javascript:alert(1)", "data:text/html,x"})
        EXPECT_EQ(run({"capture", address}).err,
                  "murnctl: " + QByteArray(address) +
                      ": is no address of a web page (http or https)\n");
}
