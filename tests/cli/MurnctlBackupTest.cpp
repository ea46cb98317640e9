#include "Murnctl.h"

#include "Karvex.h"
#include "TestHome.h"
#include "XPAtomicFile.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

// An indexed folder with tagged files: the setting is the private home's, so it is taken back.
class MurnctlBackup : public testing::Test
{
protected:
    MurnctlBackup()
    {
        EXPECT_FALSE(Karvex::setUserTags(tags, letter));
        EXPECT_FALSE(Karvex::setRating(4, odd));
        EXPECT_EQ(run({"index", "add", "."}).status, 0);
        EXPECT_EQ(run({"backup", "--to", backup}).status, 0);
    }
    ~MurnctlBackup() override { run({"index", "remove", "."}); }

    MurnctlResult run(const QByteArrayList &words) const { return murnctl(words, folder.path()); }
    static void strip(const QString &path)
    {
        for (const QString &key : {Karvex::userTagsKey, Karvex::userTagTimeKey,
                                   Karvex::starRatingKey, Karvex::ratingTimeKey})
            EXPECT_FALSE(Karvex::setXAttrMetaData({}, key, path));
    }

    const QStringList tags = {QStringLiteral("one"), QStringLiteral("two")};
    const TestFolder folder;
    const TestFolder elsewhere;
    const QByteArray backup = XPPath::encode(elsewhere.path(QStringLiteral("my backup")));
    const QString letter = folder.file(QStringLiteral("letter.txt"));
    const QString odd = folder.file(XPPath::decode("sub/odd\xff\n.pdf"));
};

} // namespace

TEST_F(MurnctlBackup, RestoresWhatWasLostAndSaysSoBefore)
{
    EXPECT_EQ(run({"restore", "--from", backup}).out, "0 restores done\n");
    strip(letter);
    strip(odd);
    const MurnctlResult dry = run({"restore", "--dry-run", "--from", backup});
    EXPECT_EQ(dry.status, 0);
    EXPECT_TRUE(
        dry.out.startsWith(XPPath::encode(letter) + "\n  tags    none (no time) -> one, two ("))
        << dry.out.constData();
    EXPECT_TRUE(dry.out.contains(XPPath::encode(odd) + "\n  rating  none (no time) -> 4 ("));
    EXPECT_TRUE(dry.out.endsWith("\n2 files would be changed\n"));
    EXPECT_TRUE(Karvex::getUserTags(letter)->isEmpty());

    const auto json = run({"restore", "--json", "--from", backup}).json().object();
    ASSERT_EQ(json[QStringLiteral("changes")].toArray().size(), 2);
    const auto change = json[QStringLiteral("changes")][0];
    EXPECT_EQ(change[QStringLiteral("path")].toString(), letter);
    EXPECT_EQ(change[QStringLiteral("after")][QStringLiteral("tags")].toArray().size(), 2);
    EXPECT_EQ(*Karvex::getUserTags(letter), tags);
    EXPECT_EQ(*Karvex::getRating(odd), 4);
}

TEST_F(MurnctlBackup, KeepsWhatAFileHadBeforeItsTagsWereDamaged)
{
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    EXPECT_FALSE(XPExtendedAttributes::write(letter, name, "bplist00garbage"));
    EXPECT_EQ(run({"backup", "--to", backup}).status, 0);
    strip(letter);
    EXPECT_EQ(run({"restore", "--from", backup}).status, 0);
    EXPECT_EQ(*Karvex::getUserTags(letter), tags);
}

TEST_F(MurnctlBackup, SaysWhatItTakesAway)
{
    // Rated and tagged, the tags removed on purpose; then an older copy of the file comes back.
    const PropertyValue old = PropertyValue::Date{1000};
    EXPECT_FALSE(Karvex::setUserTags(tags, odd));
    EXPECT_FALSE(Karvex::setUserTags(QStringList(), odd));
    EXPECT_EQ(run({"backup", "--to", backup}).status, 0);
    EXPECT_FALSE(Karvex::setUserTags(tags, odd, old.date()));
    const MurnctlResult dry = run({"restore", "--dry-run", "--from", backup});
    EXPECT_TRUE(dry.out.contains(" -> none: removed on ")) << dry.out.constData();
    EXPECT_TRUE(
        dry.out.endsWith("; of 1 tags or a rating would be taken away, as the backup says\n"));
    EXPECT_EQ(*Karvex::getUserTags(odd), tags);
    const auto json = run({"restore", "--json", "--from", backup}).json().object();
    EXPECT_EQ(json[QStringLiteral("changes")][0][QStringLiteral("removes")].toArray(),
              QJsonArray{QStringLiteral("tags")});
    EXPECT_TRUE(Karvex::getUserTags(odd)->isEmpty());
}

TEST_F(MurnctlBackup, FailsWithTheReason)
{
    const struct
    {
        QByteArrayList words;
        int status;
        QByteArray err;
    } cases[] = {
        {{"restore", "--from", "none"}, 1, "no restore data found: No such file or directory"},
        {{"restore", "--from", "letter.txt"}, 1, "letter.txt: no restore data found: "},
        {{"backup", "--to", "sub"}, 1, "sub: not a regular file"},
        {{"backup", "--to", ""}, 2, "takes one file at most"},
        {{"backup", "file"}, 2, "takes one file at most"},
        {{"restore", "--from", "a", "--from", "b"}, 2, "takes one file at most"},
    };
    for (const auto &each : cases) {
        const MurnctlResult result = run(each.words);
        EXPECT_EQ(result.status, each.status) << each.words.join(' ').constData();
        EXPECT_TRUE(result.err.contains(each.err)) << result.err.constData();
        EXPECT_TRUE(result.out.isEmpty());
    }
    // Something else in the place of the backup is kept, and told.
    const QString other = elsewhere.file(QStringLiteral("other"), "other");
    const MurnctlResult aside = run({"backup", "--to", XPPath::encode(other)});
    EXPECT_EQ(aside.status, 0) << "the backup was written";
    EXPECT_TRUE(aside.err.contains("is now other.damaged")) << aside.err.constData();
    EXPECT_EQ(*XPAtomicFile::read(other + QStringLiteral(".damaged")), "other");
}
