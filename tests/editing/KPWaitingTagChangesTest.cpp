#include "KPWaitingTagChanges.h"

#include "KPEditJournal.h"
#include "KPEditWorker.h"
#include "KPRecentTagGroups.h"
#include "Karvex.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPAtomicFile.h"

#include <QTest>
#include <gtest/gtest.h>

class WaitingTagChanges : public testing::Test
{
protected:
    void SetUp() override { EXPECT_FALSE(KPWaitingTagChanges::drop()); }
    static QStringList waiting()
    {
        QStringList paths;
        for (const auto &change : KPWaitingTagChanges::read().valueOr({}))
            paths += change.paths;
        return paths;
    }
    TestFolder m_folder;
    const KPTagRename rename{QStringLiteral("a"), QStringLiteral("b")};
    const KPTagRename removal{QStringLiteral("b"), {}, false};
};

TEST_F(WaitingTagChanges, ComeInTheirOrderOnceTheFilesAreThere)
{
    const QString there = m_folder.file(QStringLiteral("there"));
    const QString away = m_folder.path() + QStringLiteral("/away ä ") + QChar(0xDCFF);
    EXPECT_FALSE(KPWaitingTagChanges::add(rename, {there, away}));
    EXPECT_FALSE(KPWaitingTagChanges::add(removal, {there}));
    const auto ready = KPWaitingTagChanges::takeReady();
    ASSERT_TRUE(ready);
    ASSERT_EQ(ready->size(), 2);
    EXPECT_EQ(ready->first().rename, rename);
    EXPECT_EQ(ready->last().rename, removal);
    EXPECT_EQ(waiting(), QStringList{away}) << "a name that is no UTF-8 comes through whole";
    EXPECT_TRUE(KPWaitingTagChanges::takeReady()->isEmpty());
}

// What was taken back must not happen to the files that come later.
TEST_F(WaitingTagChanges, AreTakenBackWithTheChangeAndMadeAgainWithIt)
{
    const QString file = m_folder.file(QStringLiteral("here"));
    const QString away = m_folder.path() + QStringLiteral("/away");
    ASSERT_FALSE(Karvex::setUserTags(QStringList{rename.from}, file));
    ASSERT_FALSE(KPWaitingTagChanges::add(rename, {away}));
    ASSERT_FALSE(KPWaitingTagChanges::add(removal, {away + QStringLiteral(" too")}));
    const QStringList others{away + QStringLiteral(" too")};
    KPEditWorker worker;
    const auto record = std::make_shared<KPEditRecord>();
    const auto isDone = [&] { return QTest::qWaitFor([&] { return !worker.isBusy(); }, 20'000); };
    worker.edit({{file}, {}, {}, rename}, record, QStringLiteral("renamed"));
    ASSERT_TRUE(isDone());
    EXPECT_EQ(waiting(), QStringList{away} + others);
    worker.undo(record);
    ASSERT_TRUE(isDone());
    EXPECT_EQ(waiting(), others);
    EXPECT_EQ(Karvex::getUserTags(file).valueOr({}), QStringList{rename.from});
    worker.redo(record);
    ASSERT_TRUE(isDone());
    EXPECT_EQ(waiting(), others + QStringList{away});
    EXPECT_EQ(Karvex::getUserTags(file).valueOr({}), QStringList{rename.to});
    // As the next start has it.
    const auto saved = std::make_shared<KPEditRecord>();
    saved->journal = record->journal;
    saved->isLoaded = false;
    worker.undo(saved);
    ASSERT_TRUE(isDone());
    EXPECT_EQ(waiting(), others);
    EXPECT_EQ(Karvex::getUserTags(file).valueOr({}), QStringList{rename.from});
}

TEST_F(WaitingTagChanges, DamagedAreAnErrorAndSetAside)
{
    ASSERT_FALSE(XPAtomicFile::write(KPWaitingTagChanges::path(), "{ not ours"));
    EXPECT_FALSE(KPWaitingTagChanges::read()) << "never taken for none";
    EXPECT_FALSE(KPWaitingTagChanges::takeReady());
    EXPECT_FALSE(KPWaitingTagChanges::add(rename, {QStringLiteral("/x")}));
    EXPECT_EQ(waiting(), QStringList{QStringLiteral("/x")});
    EXPECT_TRUE(XPAtomicFile::read(KPWaitingTagChanges::path() + QStringLiteral(".damaged")));
}

TEST(EditJournal, KeepsWhatWasToldUpToATornLine)
{
    for (const auto &earlier : KPEditJournal::saved())
        KPEditJournal::remove(earlier.file);
    const QString text = QStringLiteral("Änderung “x”");
    const QString odd = QStringLiteral("/odd\n") + QChar(0xDC80);
    QString file;
    {
        auto journal = KPEditJournal::begin(text);
        ASSERT_TRUE(journal);
        file = journal->file();
        journal->append({odd, KPFileChange::Tags{{}, {QStringLiteral("a\nb")}}, {}});
        journal->append({QStringLiteral("/b"), {}, KPFileChange::Rating{0, 3.5}});
    }
    const QByteArray whole = XPAtomicFile::read(file).valueOr({});
    ASSERT_FALSE(XPAtomicFile::write(file, whole + R"({"path":"/c","rati)"));
    const auto contents = KPEditJournal::contents(file);
    ASSERT_TRUE(contents);
    EXPECT_FALSE(contents->rename);
    const auto &changes = contents->changes;
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(changes.at(0).path, odd);
    EXPECT_EQ(changes.at(0).tags->after, QStringList{QStringLiteral("a\nb")});
    EXPECT_EQ(changes.at(1).rating->after, 3.5);
    ASSERT_EQ(KPEditJournal::saved().size(), 1);
    EXPECT_EQ(KPEditJournal::saved().first().text, text);
    const QString undone = KPEditJournal::mark(file, true);
    EXPECT_EQ(KPEditJournal::mark(undone, false), file);
    KPEditJournal::mark(file, true);
    EXPECT_TRUE(KPEditJournal::saved().isEmpty()) << "an undone edit is not offered again";
}

TEST(RecentTagGroups, KeepTheSixLatestAndEachOnce)
{
    UserDefaults::standard().remove(KPRecentTagGroups::settingsKey);
    const auto group = [](int number) {
        return QStringList{QStringLiteral("g%1").arg(number), QStringLiteral("x")};
    };
    for (const int number : {1, 2, 3, 4, 5, 6, 1, 7})
        KPRecentTagGroups::addNewTagsToRecentGroups(group(number));
    const auto groups = KPRecentTagGroups::groups();
    EXPECT_EQ(groups.size(), 6);
    EXPECT_EQ(groups.first(), group(7));
    EXPECT_TRUE(groups.contains(group(1))) << "used again, so it is no longer the oldest";
    EXPECT_FALSE(groups.contains(group(2)));
    KPRecentTagGroups::rename({QStringLiteral("x"), QStringLiteral("G7")});
    EXPECT_EQ(KPRecentTagGroups::groups().first(), QStringList{QStringLiteral("g7")});
    KPRecentTagGroups::addNewTagsToRecentGroups({});
    EXPECT_EQ(KPRecentTagGroups::groups().size(), 6);
}
