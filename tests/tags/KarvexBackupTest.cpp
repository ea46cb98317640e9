#include "KarvexBackup.h"

#include "Karvex.h"
#include "KeptFolder.h"
#include "TestSystem.h"
#include "XPAtomicFile.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPPath.h"
#include "XPPropertyList.h"
#include "XPTranslations.h"

#include <sys/stat.h>

using Date = PropertyValue::Date;
using Records = KarvexBackupFile::Records;

namespace {

class Backup : public testing::Test
{
protected:
    QString tagged(const QString &name, const QStringList &tags, double rating = 0) const
    {
        QString path = m_folder.file(name);
        if (!tags.isEmpty()) {
            EXPECT_FALSE(Karvex::setUserTags(tags, path));
        }
        if (rating > 0) {
            EXPECT_FALSE(Karvex::setRating(rating, path));
        }
        return path;
    }
    KarvexBackup::Result backUp(const QStringList &locations)
    {
        IndexSource &index = m_folder.index();
        m_folder.catchUp();
        return KarvexBackup::writeSingleFile(index, locations);
    }
    KarvexBackup::Result backUp() { return backUp({m_file}); }
    static Records read(const QString &path)
    {
        const auto bytes = KarvexBackupFile::readBytes(path);
        EXPECT_TRUE(bytes);
        const auto records = KarvexBackupFile::decode(bytes.valueOr({}), path);
        EXPECT_TRUE(records);
        return records.valueOr({});
    }
    Records read() const { return read(m_file); }

    KeptFolder m_folder;
    const TestFolder m_place;
    const QString m_file = m_place.path(QStringLiteral("backup.plist"));
};

} // namespace

TEST_F(Backup, HoldsWhatTheFilesHoldAndIsWrittenOnlyWhenThatChanges)
{
    const QString both = tagged(QStringLiteral("both"), {QStringLiteral("Café"), {}}, 3.5);
    const QString odd = tagged(XPPath::decode("raw\xff\n*"), {QStringLiteral("odd")});
    tagged(QStringLiteral("nothing"), {});
    const auto result = backUp();
    EXPECT_TRUE(result.worked && result.problems.isEmpty());
    EXPECT_EQ(result.itemCount, 2);
    EXPECT_TRUE(result.status.startsWith(QStringLiteral("2 backups done, file written to ")));
    const Records records = read();
    ASSERT_EQ(records.size(), 2);
    const KarvexBackupRecord record = records.value(both);
    EXPECT_EQ(record.tags, *Karvex::getUserTags(both));
    EXPECT_EQ(record.rating, 3.5);
    EXPECT_EQ(record.tagDate, Karvex::getXAttrMetaData(Karvex::userTagTimeKey, both)->date());
    EXPECT_EQ(record.ratingDate, Karvex::getXAttrMetaData(Karvex::ratingTimeKey, both)->date());
    EXPECT_EQ(records.value(odd).tags, QStringList(QStringLiteral("odd")));

    const auto before = XPFileInfo::read(m_file);
    EXPECT_TRUE(backUp().written.isEmpty());
    EXPECT_EQ(XPFileInfo::read(m_file)->inode, before->inode);
    EXPECT_EQ(XPFileInfo::read(m_file)->changed, before->changed);
}

TEST_F(Backup, KeepsWhatFilesLost)
{
    const QString gone = tagged(QStringLiteral("gone"), {QStringLiteral("a")});
    const QString stripped = tagged(QStringLiteral("stripped"), {QStringLiteral("b")}, 4);
    const QString cleared = tagged(QStringLiteral("cleared"), {QStringLiteral("c")}, 4);
    ASSERT_TRUE(backUp().worked);
    ASSERT_EQ(::remove(XPPath::encode(gone).constData()), 0);
    for (const QString &key : {Karvex::userTagsKey, Karvex::userTagTimeKey})
        ASSERT_FALSE(Karvex::setXAttrMetaData({}, key, stripped));
    ASSERT_FALSE(Karvex::setUserTags(QStringList(), cleared));
    ASSERT_TRUE(backUp().worked);
    const Records records = read();
    EXPECT_EQ(records.value(gone).tags, QStringList(QStringLiteral("a")));
    EXPECT_EQ(records.value(stripped).tags, QStringList(QStringLiteral("b")));
    EXPECT_TRUE(records.value(cleared).tags.isEmpty()) << "removed on purpose";
}

// What cannot be read says nothing: not that it is gone, and not that it was removed on purpose.
TEST_F(Backup, LeavesARecordAsItIsWhereAValueCannotBeRead)
{
    const struct Damage
    {
        const char *name;
        QString key;
        QByteArray bytes;
    } damages[] = {
        {"garbage for tags", Karvex::userTagsKey, "bplist00garbage"},
        {"text for tags", Karvex::userTagsKey,
         *XPPropertyList::writeBinary(QStringLiteral("no list"))},
        {"data for tags", Karvex::userTagsKey, *XPPropertyList::writeBinary(QByteArray("raw"))},
        {"a number among tags", Karvex::userTagsKey,
         *XPPropertyList::writeBinary(PropertyValue::Array{PropertyValue::integer(1)})},
        {"garbage for a rating", Karvex::starRatingKey, "bplist00garbage"},
        {"text for a rating", Karvex::starRatingKey,
         *XPPropertyList::writeBinary(QStringLiteral("five"))},
        {"garbage for a tag time", Karvex::userTagTimeKey, "bplist00garbage"},
        {"garbage for a rating time", Karvex::ratingTimeKey, "bplist00garbage"},
    };
    for (const Damage &each : damages)
        tagged(QString::fromLatin1(each.name), {QStringLiteral("kept")}, 4);
    const QString lost = tagged(QStringLiteral("only the list lost"), {QStringLiteral("kept")});
    ASSERT_TRUE(backUp().worked);
    const Records before = read();
    for (const Damage &each : damages)
        ASSERT_FALSE(XPExtendedAttributes::write(m_folder.path(QString::fromLatin1(each.name)),
                                                 Karvex::spotlightKey(each.key), each.bytes));
    ASSERT_FALSE(Karvex::setXAttrMetaData({}, Karvex::userTagsKey, lost));
    ASSERT_TRUE(backUp().worked);
    const Records after = read();
    EXPECT_EQ(after.size(), before.size());
    for (auto record = before.begin(); record != before.end(); ++record)
        EXPECT_TRUE(after.contains(record.key()) &&
                    KarvexBackupRecord::backupDictsTheSame(after.value(record.key()), *record))
            << record.key().toStdString();
}

TEST_F(Backup, RecordsNoTimeOfTagsThatCannotBeRead)
{
    const QString path = tagged(QStringLiteral("a"), {QStringLiteral("t")}, 3);
    ASSERT_FALSE(XPExtendedAttributes::write(path, Karvex::spotlightKey(Karvex::userTagsKey),
                                             "bplist00garbage"));
    ASSERT_TRUE(backUp().worked);
    EXPECT_EQ(read().value(path).rating, 3);
    EXPECT_EQ(read().value(path).tagDate, std::nullopt) << "it would mean: removed then";
}

TEST_F(Backup, MergesItsLocationsTheEarlierFirst)
{
    const auto write = [](const QString &path, const Records &records) {
        return !XPAtomicFile::write(path, *KarvexBackupFile::encode(records));
    };
    const QString second = m_place.path(QStringLiteral("second.plist"));
    const auto record = [](const char *path, const char *tag) {
        const QString name = QString::fromLatin1(path);
        return std::pair(name, KarvexBackupRecord{name, {QString::fromLatin1(tag)}, 0, {}, {}});
    };
    ASSERT_TRUE(write(m_file, Records{record("/both", "1"), record("/one", "1")}));
    ASSERT_TRUE(write(second, Records{record("/both", "2"), record("/two", "2")}));
    const auto result = backUp({m_file, second});
    EXPECT_EQ(result.written, QStringList({m_file, second}));
    const Records records = read();
    EXPECT_EQ(records.size(), 3);
    EXPECT_EQ(records.value(QStringLiteral("/both")).tags, QStringList(QStringLiteral("1")));
    EXPECT_EQ(*KarvexBackupFile::readBytes(second), *KarvexBackupFile::readBytes(m_file));
}

TEST_F(Backup, ReadsXmlWithItsWholeSeconds)
{
    const PropertyValue::Dictionary record = {
        {QStringLiteral("path"), QStringLiteral("/x")},
        {QStringLiteral("tags"), QStringList{QStringLiteral("a")}},
        {QStringLiteral("rating"), PropertyValue::integer(4)},
        {QStringLiteral("tagdate"), Date{100.75}}};
    const auto xml = XPPropertyList::writeXml(PropertyValue::Array{record});
    const auto records = KarvexBackupFile::decode(*xml, m_file);
    ASSERT_TRUE(records);
    EXPECT_EQ(records->value(QStringLiteral("/x")).tagDate, Date{100});
    EXPECT_EQ(records->value(QStringLiteral("/x")).rating, 4);
    const auto later = KarvexBackupRecord::isLater;
    EXPECT_FALSE(later(Date{100.75}, Date{100}) || later(Date{100}, Date{100.75}));
    EXPECT_TRUE(later(Date{100.75}, Date{100.5}) && later(Date{101}, Date{100.75}));
}

// --- Faults

struct Unreadable
{
    const char *name;
    QByteArray bytes;
};

class BackupSetsAside : public Backup, public testing::WithParamInterface<Unreadable>
{
};

TEST_P(BackupSetsAside, WhatIsNoBackup)
{
    const QString path = tagged(QStringLiteral("a"), {QStringLiteral("t")});
    ASSERT_FALSE(XPAtomicFile::write(m_file, GetParam().bytes));
    const auto result = backUp();
    EXPECT_TRUE(result.worked);
    EXPECT_TRUE(result.problems.isEmpty());
    ASSERT_EQ(result.notes.size(), 1);
    EXPECT_EQ(*XPAtomicFile::read(m_file + QStringLiteral(".damaged")), GetParam().bytes);
    EXPECT_EQ(read().size(), 1);
}

static QByteArray listOf(const PropertyValue &value)
{
    return *XPPropertyList::writeBinary(PropertyValue::Array{value});
}

INSTANTIATE_TEST_SUITE_P(
    Faults, BackupSetsAside,
    testing::Values(
        Unreadable{"Empty", ""}, Unreadable{"Garbage", "bplist00 no more"},
        Unreadable{"Truncated", listOf(QStringLiteral("a long text")).chopped(9)},
        Unreadable{"NoArray", *XPPropertyList::writeBinary(PropertyValue::Dictionary())},
        Unreadable{"NoRecords", listOf(QStringLiteral("text"))},
        Unreadable{"NoPath", listOf(PropertyValue::Dictionary{
                                 {QStringLiteral("tags"), QStringList{QStringLiteral("t")}}})},
        Unreadable{"OtherTags", listOf(PropertyValue::Dictionary{
                                    {QStringLiteral("path"), QStringLiteral("/a")},
                                    {QStringLiteral("tags"), PropertyValue::integer(1)}})}),
    [](const auto &row) { return row.param.name; });

TEST_F(Backup, LeavesAloneWhatItCannotReadOrWrite)
{
    XPTranslations::install(QLocale::c());
    tagged(QStringLiteral("a"), {QStringLiteral("t")});
    const QString folder = m_place.path(QStringLiteral("folder"));
    ASSERT_EQ(::mkdir(XPPath::encode(folder).constData(), 0755), 0);
    IndexSource &index = m_folder.index();
    const auto fails = [&](const QString &path) {
        const auto result = KarvexBackup::writeSingleFile(index, {path});
        return !result.worked && result.written.isEmpty() && result.problems.size() == 1 &&
               result.status.contains(result.problems.first());
    };
    EXPECT_TRUE(fails(folder));
    EXPECT_TRUE(fails(QStringLiteral("/proc/none/backup.plist")));
    // One that fails does not keep the others from being written.
    const auto result = KarvexBackup::writeSingleFile(index, {folder, m_file});
    EXPECT_FALSE(result.worked);
    EXPECT_EQ(result.written, QStringList(m_file));
}

TEST_F(Backup, KeepsTheOldOneOnAFullDisk)
{
    const auto volume = TestVolume::tmpfs("64k");
    if (!volume)
        GTEST_SKIP() << "needs root";
    const QString file = volume->path(QStringLiteral("backup.plist"));
    const QString path = tagged(QStringLiteral("a"), {QStringLiteral("t")});
    ASSERT_TRUE(backUp({file}).worked);
    const QByteArray before = *XPAtomicFile::read(file);
    for (int i = 0; i < 50; ++i)
        tagged(QString::number(i), {QString::number(i) + QString(1500, u'x')});
    const auto result = backUp({file});
    EXPECT_FALSE(result.worked);
    EXPECT_TRUE(result.problems.value(0).contains(u"No space")) << result.status.toStdString();
    EXPECT_EQ(*XPAtomicFile::read(file), before);
}

TEST_F(Backup, EndsWhenStoppedAndWritesNothing)
{
    tagged(QStringLiteral("a"), {QStringLiteral("t")});
    KarvexProgress progress;
    progress.stop = [] { return true; };
    const auto result = KarvexBackup::writeSingleFile(m_folder.index(), {m_file}, progress);
    EXPECT_TRUE(result.stopped && !result.worked);
    EXPECT_FALSE(XPFileInfo::read(m_file));
}
