#include "KPTagHealer.h"

#include "Karvex.h"
#include "KeptFolder.h"
#include "UserDefaults.h"
#include "XPAtomicFile.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPPath.h"
#include "XPPropertyList.h"
#include "XPTranslations.h"

#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

using Attributes = QMap<QString, QByteArray>;

namespace {

class Healer : public testing::Test
{
protected:
    ~Healer() override
    {
        m_healer.reset();
        ::remove(XPPath::encode(KPHealingLog::path()).constData());
    }

    // A file with everything that the convention puts on one, and more.
    QString treasured(const QString &name) const
    {
        QString path = m_folder.file(name, "one\ntwo\n");
        EXPECT_FALSE(Karvex::setUserTags(QStringList{QStringLiteral("Café"), {}}, path));
        EXPECT_FALSE(Karvex::setRating(2.5, path));
        EXPECT_FALSE(
            Karvex::setXAttrMetaData(PropertyValue::boolean(true), Karvex::managedKey, path));
        EXPECT_FALSE(Karvex::setXAttrMetaData(QStringLiteral("a comment"),
                                              QStringLiteral("kMDItemFinderComment"), path));
        // No property list, as another program may have left it.
        const QString prefix = Karvex::spotlightKey({});
        const auto put = [&](const QString &key, const QByteArray &bytes) {
            EXPECT_FALSE(XPExtendedAttributes::write(path, prefix + key, bytes));
        };
        put(QStringLiteral("kMDLabel"), "\x01raw");
        put(QStringLiteral("kMDItemOfNoBytes"), {});
        put(QStringLiteral("kMDItemData"), *XPPropertyList::writeBinary(QByteArray("bare")));
        put(QStringLiteral("kMDItemXml"), *XPPropertyList::writeXml(QStringLiteral("as XML")));
        // A text that no property list of ours can hold: half of a surrogate pair.
        put(QStringLiteral("kMDItemHalf"),
            QByteArray("bplist00\x61\xd8\x00\x08", 12) + QByteArray(6, '\0') + "\x01\x01" +
                QByteArray(7, '\0') + '\x01' + QByteArray(8, '\0') + QByteArray(7, '\0') + '\x0b');
        put(XPPath::decode("kMDItem\xff"), "\x01name");
        return path;
    }
    void keep()
    {
        m_healer = std::make_unique<KPTagHealer>(m_folder.kept());
        m_folder.catchUp();
    }
    static Attributes attributesOf(const QString &path)
    {
        Attributes attributes;
        for (const QString &name : XPExtendedAttributes::list(path).valueOr({}))
            attributes.insert(name, *XPExtendedAttributes::read(path, name).valueOr({}));
        return attributes;
    }
    static QList<KPHealing> cases() { return KPHealingLog::read().valueOr({}); }
    static bool isLogged(const QString &path, KPHealing::State state)
    {
        const QList<KPHealing> all = cases();
        return std::any_of(all.begin(), all.end(), [&](const KPHealing &each) {
            return each.path == path && each.state == state;
        });
    }
    static void shell(const QString &command, const QString &path)
    {
        QProcess process;
        process.start(QStringLiteral("/bin/sh"),
                      {QStringLiteral("-c"), command, QStringLiteral("sh"), path});
        ASSERT_TRUE(process.waitForFinished());
        ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    }
    static void replace(const QString &path, const QByteArray &bytes)
    {
        ASSERT_FALSE(XPAtomicFile::write(path, bytes));
    }

    KeptFolder m_folder;
    std::unique_ptr<KPTagHealer> m_healer;
};

struct Saver
{
    const char *name;
    const char *program; // needs it
    const char *command; // the file is $1
};

class HealerAfter : public Healer, public testing::WithParamInterface<Saver>
{
};

} // namespace

TEST_P(HealerAfter, SavingPutsEverythingBack)
{
    if (QStandardPaths::findExecutable(QString::fromLatin1(GetParam().program)).isEmpty())
        GTEST_SKIP() << "not installed: " << GetParam().program;
    const QString path = treasured(QStringLiteral("a.txt"));
    const Attributes before = attributesOf(path);
    const quint64 inode = XPFileInfo::read(path)->inode;
    keep();
    shell(QString::fromLatin1(GetParam().command), path);
    EXPECT_NE(*XPAtomicFile::read(path), "one\ntwo\n") << "the program saved";
    EXPECT_TRUE(holdsSoon([&] { return attributesOf(path) == before; }));
    if (XPFileInfo::read(path)->inode != inode) {
        EXPECT_TRUE(holdsSoon([&] { return isLogged(path, KPHealing::State::Healed); }));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Programs, HealerAfter,
    testing::Values(
        Saver{"Sed", "sed", "sed -i s/one/1/ \"$1\""},
        Saver{"SedWithABackup", "sed", "sed -i.bak s/one/1/ \"$1\""},
        Saver{"Perl", "perl", "perl -i -pe s/one/1/ \"$1\""},
        Saver{"PerlWithABackup", "perl", "perl -i.bak -pe s/one/1/ \"$1\""},
        Saver{"Vim", "vim",
              "vim -u NONE -es -c 'set nobackup backupcopy=no' -c '%s/one/1/' -c wq \"$1\""},
        Saver{"VimWithABackup", "vim",
              "vim -u NONE -es -c 'set backup backupcopy=no' -c '%s/one/1/' -c wq \"$1\""},
        Saver{"RenameOver", "mv", "echo new >\"$1.new\"; mv \"$1.new\" \"$1\""},
        Saver{"RenameOverFromElsewhere", "mv",
              "mkdir \"$1.d\"; echo new >\"$1.d/x\"; mv \"$1.d/x\" \"$1\""},
        Saver{"DeleteAndCreate", "rm", "rm \"$1\"; echo new >\"$1\""},
        Saver{"Copy", "cp",
              "cp \"$1\" \"$1.x\"; echo new >>\"$1.x\"; cp --remove-destination \"$1.x\" \"$1\""},
        Saver{"Tar", "tar",
              "cd \"$(dirname \"$1\")\"; mkdir t; echo new >t/a.txt; tar cf t.tar -C t a.txt; tar "
              "xf t.tar"},
        Saver{"Python", "python3",
              "python3 -c 'import os,sys; p=sys.argv[1]; open(p+\"~\",\"w\").write(\"new\"); "
              "os.replace(p+\"~\",p)' \"$1\""}),
    [](const auto &row) { return row.param.name; });

TEST_F(Healer, PutsEverythingBackAfterManySavesInARow)
{
    const QString path = treasured(QStringLiteral("a.txt"));
    const Attributes before = attributesOf(path);
    keep();
    for (int i = 0; i < 30; ++i) {
        QSaveFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::number(i));
        ASSERT_TRUE(file.commit());
        if (i % 10 == 9) {
            ASSERT_TRUE(holdsSoon([&] { return attributesOf(path) == before; }));
        }
    }
}

TEST_F(Healer, LeavesFilesThatBringTheirOwnAndWhatTheUserTookAway)
{
    const QString own = treasured(QStringLiteral("own.txt"));
    const QString cleared = treasured(QStringLiteral("cleared.txt"));
    const QString stripped = treasured(QStringLiteral("stripped.txt"));
    const QString last = treasured(QStringLiteral("last.txt"));
    keep();
    const auto replaceWith = [&](const QString &path, const PropertyValue &tags) {
        const QString fresh = m_folder.file(QStringLiteral("fresh"), "new");
        ASSERT_FALSE(Karvex::setXAttrMetaData(tags, Karvex::userTagsKey, fresh));
        ASSERT_EQ(std::rename(XPPath::encode(fresh).constData(), XPPath::encode(path).constData()),
                  0);
    };
    replaceWith(own, QStringList{QStringLiteral("own")});
    replaceWith(cleared, QStringList());
    for (const QString &name : attributesOf(stripped).keys())
        ASSERT_FALSE(XPExtendedAttributes::remove(stripped, name));
    replace(last, "new");
    ASSERT_TRUE(holdsSoon([&] { return isLogged(last, KPHealing::State::Healed); }));
    EXPECT_EQ(attributesOf(own).size(), 1);
    EXPECT_EQ(attributesOf(cleared).size(), 1);
    EXPECT_TRUE(attributesOf(stripped).isEmpty());
    EXPECT_EQ(cases().size(), 1);
}

TEST_F(Healer, AsksWhereTheFileMayBeAnother)
{
    const QString otherType = treasured(QStringLiteral("nameless"));
    const QString unseen = treasured(QStringLiteral("a.txt"));
    const Attributes before = attributesOf(unseen);
    keep();
    replace(otherType, "%PDF-1.4\n%\xe2\xe3\xcf\xd3\n");
    ASSERT_TRUE(holdsSoon([&] { return isLogged(otherType, KPHealing::State::Pending); }));
    m_healer.reset();
    m_folder.endKeeping();
    replace(unseen, "new");
    keep();
    ASSERT_TRUE(holdsSoon([&] { return isLogged(unseen, KPHealing::State::Pending); }));
    EXPECT_TRUE(attributesOf(otherType).isEmpty() && attributesOf(unseen).isEmpty());
    QList<KPHealing> all = cases();
    ASSERT_EQ(all.size(), 2);
    EXPECT_FALSE(all[0].why.isEmpty() || all[1].why.isEmpty());
    EXPECT_FALSE(all[1].heal());
    EXPECT_EQ(attributesOf(unseen), before);
    EXPECT_TRUE(all[1].heal()) << "it has tags now";
}

TEST_F(Healer, IsUndoneButForWhatChangedSince)
{
    XPTranslations::install(QLocale::c());
    const QString path = treasured(QStringLiteral("a.txt"));
    keep();
    replace(path, "new");
    ASSERT_TRUE(holdsSoon([&] { return isLogged(path, KPHealing::State::Healed); }));
    ASSERT_FALSE(Karvex::setRating(5, path));
    QList<KPHealing> all = cases();
    const auto error = all.first().undo();
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->message.contains(Karvex::starRatingKey));
    EXPECT_TRUE(Karvex::getUserTags(path)->isEmpty());
    EXPECT_EQ(*Karvex::getRating(path), 5);
}

TEST_F(Healer, SetsADamagedLogAsideAndIsSwitchable)
{
    ASSERT_FALSE(XPAtomicFile::write(KPHealingLog::path(), "no log"));
    const QString off = treasured(QStringLiteral("off.txt"));
    const QString path = treasured(QStringLiteral("a.txt"));
    keep();
    const QString setting = QStringLiteral("KPHealLostTags");
    UserDefaults::standard().setValue(setting, PropertyValue::boolean(false));
    replace(off, "new");
    m_folder.catchUp();
    m_healer.reset(); // works off what it heard of
    UserDefaults::standard().remove(setting);
    keep();
    replace(path, "new");
    EXPECT_TRUE(holdsSoon([&] { return isLogged(path, KPHealing::State::Healed); }));
    EXPECT_TRUE(attributesOf(off).isEmpty());
    EXPECT_EQ(*XPAtomicFile::read(KPHealingLog::path() + QStringLiteral(".damaged")), "no log");
}
