#include "KarvexRestore.h"

#include "Karvex.h"
#include "KeptFolder.h"
#include "XPAtomicFile.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPPath.h"

using Date = PropertyValue::Date;
using Records = KarvexBackupFile::Records;

namespace {

class Restore : public testing::Test
{
protected:
    void record(const QString &path, const QStringList &tags, double rating = 0)
    {
        m_records.insert(path, {path, tags, rating, Date{1000.5}, Date{2000.5}});
    }
    KarvexRestore::Result restore(bool dryRun = false,
                                  const std::optional<QSet<QString>> &only = {})
    {
        const QString file = m_place.path(QStringLiteral("backup.plist"));
        EXPECT_FALSE(XPAtomicFile::write(file, *KarvexBackupFile::encode(m_records)));
        IndexSource &index = m_folder.index();
        m_folder.catchUp();
        return KarvexRestore(index, {dryRun, only, {}}).readSingleFile(file);
    }
    static QStringList tagsOf(const QString &path) { return Karvex::getUserTags(path).valueOr({}); }

    KeptFolder m_folder;
    const TestFolder m_place;
    Records m_records;
    const QStringList m_tags = {QStringLiteral("a"), QStringLiteral("b")};
};

} // namespace

TEST_F(Restore, GivesBackEverythingThatWasLostAndThenChangesNothing)
{
    const QString path = m_folder.file(QStringLiteral("a"));
    record(path, m_tags, 2.5);
    const auto dry = restore(true);
    ASSERT_EQ(dry.changes.size(), 1);
    EXPECT_EQ(dry.changes.first().after.tags, m_tags);
    EXPECT_TRUE(XPExtendedAttributes::list(path)->isEmpty()) << "a dry run";
    const auto result = restore();
    EXPECT_EQ(result.status, QStringLiteral("1 restores done"));
    EXPECT_EQ(tagsOf(path), m_tags);
    EXPECT_EQ(*Karvex::getRating(path), 2.5);
    EXPECT_EQ(Karvex::getXAttrMetaData(Karvex::userTagTimeKey, path)->date(), Date{1000.5});
    EXPECT_EQ(Karvex::getXAttrMetaData(Karvex::ratingTimeKey, path)->date(), Date{2000.5});
    const auto before = XPFileInfo::read(path);
    EXPECT_TRUE(restore().changes.isEmpty());
    EXPECT_EQ(XPFileInfo::read(path)->changed, before->changed) << "no write at all";
}

TEST_F(Restore, ChangesOnlyWhatWasChosen)
{
    const QString path = m_folder.file(QStringLiteral("a"));
    const QString other = m_folder.file(QStringLiteral("b"));
    record(path, m_tags);
    record(other, m_tags);
    EXPECT_EQ(restore(true).changes.size(), 2);
    EXPECT_EQ(restore(false, QSet<QString>{other}).changes.size(), 1);
    EXPECT_TRUE(tagsOf(path).isEmpty());
    EXPECT_EQ(tagsOf(other), m_tags);
    EXPECT_TRUE(restore(false, QSet<QString>()).changes.isEmpty());
}

// Who wins: the backup's tags "new" (with a time or without) against the file's.
TEST_F(Restore, NeverOverwritesNewerTags)
{
    struct Case
    {
        const char *what;
        std::optional<Date> backup;
        std::optional<QStringList> file; // none: no attribute
        std::optional<Date> fileDate;
        bool restored;
    };
    const QStringList old = {QStringLiteral("old")};
    const QList<Case> cases = {
        {"older file", Date{10.5}, old, Date{9.5}, true},
        {"newer file", Date{10.5}, old, Date{11.5}, false},
        {"same time", Date{10.5}, old, Date{10.5}, false},
        {"same second, from XML", Date{10}, old, Date{10.75}, false},
        {"file without time", Date{10.5}, old, {}, true},
        {"nothing on the file", Date{10.5}, {}, {}, true},
        {"cleared later", Date{10.5}, QStringList(), Date{11.5}, false},
        {"no time in the backup, nothing on the file", {}, {}, {}, true},
        {"no time in the backup, tags on the file", {}, old, {}, false},
        {"no time in the backup, cleared", {}, QStringList(), {}, false},
        {"no time in the backup, a time on the file", {}, {}, Date{9}, false},
    };
    const QStringList fresh = {QStringLiteral("new")};
    for (const Case &each : cases) {
        const QString path = m_folder.file(QString::fromLatin1(each.what));
        if (each.file) {
            ASSERT_FALSE(Karvex::setXAttrMetaData(*each.file, Karvex::userTagsKey, path));
        }
        if (each.fileDate) {
            ASSERT_FALSE(Karvex::setXAttrMetaData(*each.fileDate, Karvex::userTagTimeKey, path));
        }
        m_records.insert(path, {path, fresh, 0, each.backup, {}});
    }
    EXPECT_TRUE(restore().failures.isEmpty());
    for (const Case &each : cases) {
        const QString path = m_folder.path(QString::fromLatin1(each.what));
        EXPECT_EQ(tagsOf(path), each.restored ? fresh : each.file.value_or(QStringList()))
            << each.what;
    }
}

// A record that has a time but no value says: removed then. It takes a value away only from a file
// whose own time is older.
TEST_F(Restore, TakesNothingAwayUnlessBothTimesSaySo)
{
    struct Case
    {
        const char *what;
        std::optional<Date> backup;
        std::optional<Date> file;
        bool removed;
    };
    const QList<Case> cases = {
        {"older file", Date{10.5}, Date{9.5}, true},
        {"newer file", Date{10.5}, Date{11.5}, false},
        {"same second, from XML", Date{10}, Date{9.5}, true},
        {"file without time", Date{10.5}, {}, false},
        {"backup without time", {}, Date{9.5}, false},
    };
    const QStringList tags = {QStringLiteral("kept")};
    for (const Case &each : cases) {
        const QString path = m_folder.file(QString::fromLatin1(each.what));
        ASSERT_FALSE(Karvex::setXAttrMetaData(tags, Karvex::userTagsKey, path));
        ASSERT_FALSE(Karvex::setXAttrMetaData(PropertyValue::real(3), Karvex::starRatingKey, path));
        for (const QString &key : {Karvex::userTagTimeKey, Karvex::ratingTimeKey}) {
            if (each.file) {
                ASSERT_FALSE(Karvex::setXAttrMetaData(*each.file, key, path));
            }
        }
        m_records.insert(path, {path, {}, 0, each.backup, each.backup});
    }
    const auto dry = restore(true);
    EXPECT_EQ(dry.changes.size(), 2);
    for (const auto &change : dry.changes)
        EXPECT_TRUE(change.removesTags() && change.removesRating());
    EXPECT_TRUE(restore().failures.isEmpty());
    for (const Case &each : cases) {
        const QString path = m_folder.path(QString::fromLatin1(each.what));
        EXPECT_EQ(tagsOf(path), each.removed ? QStringList() : tags) << each.what;
        EXPECT_EQ(*Karvex::getRating(path), each.removed ? 0 : 3) << each.what;
    }
}

TEST_F(Restore, FindsMovedFilesByName)
{
    const QList<QByteArray> names = {"*", "a\"b\\c?", "plain.pdf", "raw\xff", "caf\xc3\xa9", "-"};
    for (const QByteArray &name : names) {
        m_folder.file(QStringLiteral("there/") + XPPath::decode(name));
        record(m_folder.path(QStringLiteral("gone/")) + XPPath::decode(name), m_tags);
    }
    record(QStringLiteral("/gone/Cafe"), m_tags);
    m_folder.file(QStringLiteral("there/other"));
    const auto result = restore();
    for (const QByteArray &name : names)
        EXPECT_EQ(tagsOf(m_folder.path(QStringLiteral("there/")) + XPPath::decode(name)), m_tags)
            << name.toStdString();
    EXPECT_EQ(result.changes.size(), names.size());
    EXPECT_EQ(result.missing, 1);
}

TEST_F(Restore, GuessesNothing)
{
    const QString one = m_folder.file(QStringLiteral("1/several"));
    const QString two = m_folder.file(QStringLiteral("2/several"));
    record(QStringLiteral("/gone/several"), m_tags);
    // Two records of one name that differ, and one file.
    const QString disputed = m_folder.file(QStringLiteral("1/disputed"));
    record(QStringLiteral("/gone/disputed"), m_tags);
    record(QStringLiteral("/lost/disputed"), {QStringLiteral("else")});
    // The only file of the name is another one that the backup knows.
    const QString known = m_folder.file(QStringLiteral("1/known"));
    record(QStringLiteral("/gone/known"), m_tags);
    m_records.insert(known, {known, {}, 1, {}, Date{1}});
    const auto result = restore();
    EXPECT_EQ(result.several.size(), 3);
    EXPECT_EQ(result.missing, 1);
    for (const QString &path : {one, two, disputed, known})
        EXPECT_TRUE(tagsOf(path).isEmpty());
    EXPECT_EQ(*Karvex::getRating(known), 1);
}

TEST_F(Restore, LeavesWhatItCannotReadAsItIs)
{
    const QString damaged = m_folder.file(QStringLiteral("damaged"));
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    ASSERT_FALSE(XPExtendedAttributes::write(damaged, name, "bplist00garbage"));
    const QString good = m_folder.file(QStringLiteral("good"));
    record(damaged, m_tags, 2);
    record(good, m_tags);
    const auto result = restore();
    ASSERT_EQ(result.failures.size(), 1);
    EXPECT_EQ(result.failures.first().path, damaged);
    EXPECT_EQ(**XPExtendedAttributes::read(damaged, name), "bplist00garbage");
    EXPECT_EQ(*Karvex::getRating(damaged), 2) << "the other value can be read";
    EXPECT_EQ(tagsOf(good), m_tags);
}

TEST_F(Restore, SaysThatThereIsNothingToRestoreFrom)
{
    const QString file = m_place.file(QStringLiteral("bad"), "no backup");
    for (const QString &path : {file, m_place.path(QStringLiteral("none")), m_place.path()}) {
        const auto result = KarvexRestore(m_folder.index(), {}).readSingleFile(path);
        EXPECT_TRUE(result.error);
        EXPECT_EQ(result.status, QStringLiteral("no restore data found"));
    }
    EXPECT_EQ(*XPAtomicFile::read(file), "no backup") << "a restore sets nothing aside";
}
