#include "KPEditHistory.h"

#include "KPDocEdits.h"
#include "KPEditJournal.h"
#include "Karvex.h"
#include "TestHome.h"
#include "XPExtendedAttributes.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

class FileEdit : public testing::Test
{
protected:
    QString makeFile(const char *name, const QStringList &tags)
    {
        QString path = m_folder.file(QString::fromLatin1(name));
        if (!tags.isEmpty()) {
            EXPECT_FALSE(Karvex::setUserTags(tags, path));
        }
        return path;
    }
    static QStringList tagsOf(const QString &path)
    {
        return Karvex::getUserTags(path).valueOr({QStringLiteral("(error)")});
    }
    KPEditReport waitForReport()
    {
        if (m_reported.isEmpty())
            m_reported.wait();
        return m_reported.isEmpty() ? KPEditReport{-1, 0, {}, false}
                                    : m_reported.takeFirst().first().value<KPEditReport>();
    }

    const QString work = QStringLiteral("work");
    const QString home = QStringLiteral("home");
    const QString mine = QStringLiteral("mine");
    TestFolder m_folder;
    KPEditWorker m_worker;
    KPEditHistory m_history{&m_worker};
    QSignalSpy m_reported{&m_worker, &KPEditWorker::reported};
};

TEST_F(FileEdit, IsUndoneAndRedoneEvenWhileItStillRuns)
{
    const QString a = makeFile("a", {work});
    const QString b = makeFile("b", {mine, work});
    m_history.edit({{a, b}, KPFileEdit::Tags{{work}, {home}}, 4.0});
    m_history.undo();
    m_history.redo();
    m_history.undo();
    for (int reports = 0; reports < 4; ++reports)
        EXPECT_EQ(waitForReport().changed, 2);
    EXPECT_EQ(tagsOf(a), QStringList{work});
    EXPECT_EQ(tagsOf(b), (QStringList{mine, work}));
    EXPECT_EQ(Karvex::getRating(b).valueOr(-1), 0);
    m_history.redo();
    EXPECT_EQ(waitForReport().changed, 2);
    EXPECT_EQ(tagsOf(b), (QStringList{mine, home}));
    EXPECT_EQ(Karvex::getRating(b).valueOr(-1), 4);
}

TEST_F(FileEdit, UndoLeavesAloneWhatSomebodyElseChangedSince)
{
    const QString a = makeFile("a", {work});
    const QString b = makeFile("b", {work});
    m_history.edit({{a, b}, KPFileEdit::Tags{{work}, {home}}, {}});
    EXPECT_EQ(waitForReport().changed, 2);
    EXPECT_FALSE(Karvex::setUserTags(QStringList{mine}, a));
    m_history.undo();
    const KPEditReport report = waitForReport();
    EXPECT_EQ(report.changed, 1);
    ASSERT_EQ(report.failures.size(), 1);
    EXPECT_EQ(report.failures.first().path, a);
    EXPECT_EQ(tagsOf(a), QStringList{mine});
    EXPECT_EQ(tagsOf(b), QStringList{work});
}

TEST_F(FileEdit, RefusesUnreadableTagsAndGoesOnWithTheOthers)
{
    const QString torn = makeFile("torn", {});
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    ASSERT_FALSE(XPExtendedAttributes::write(torn, name, "bplist00garbage"));
    const QString gone = m_folder.path(QStringLiteral("gone"));
    const QString good = makeFile("good", {});
    m_history.edit({{torn, gone, good}, KPFileEdit::Tags{{}, {work}}, {}});
    const KPEditReport report = waitForReport();
    EXPECT_EQ(report.changed, 1);
    ASSERT_EQ(report.failures.size(), 2);
    EXPECT_EQ(report.failures[0].kind, XPError::Kind::Malformed);
    EXPECT_EQ(report.failures[1].kind, XPError::Kind::NotFound);
    EXPECT_EQ(XPExtendedAttributes::read(torn, name, 4096).valueOr({}), "bplist00garbage");
    EXPECT_EQ(tagsOf(good), QStringList{work});
}

TEST_F(FileEdit, StopLeavesTheRestAndLaterEditsGoOn)
{
    QStringList paths;
    for (int number = 0; number < 3000; ++number)
        paths.append(makeFile(QByteArray::number(number).constData(), {}));
    m_history.edit({paths, {}, 3.0});
    QSignalSpy progressed(&m_worker, &KPEditWorker::progressed);
    progressed.wait();
    m_worker.stop();
    const KPEditReport stopped = waitForReport();
    EXPECT_TRUE(stopped.stopped || stopped.changed == paths.size());
    EXPECT_EQ(Karvex::getRating(paths.first()).valueOr(-1), 3);
    m_history.edit({{paths.last()}, {}, 5.0});
    EXPECT_EQ(waitForReport().changed, 1);
}

TEST_F(FileEdit, IsCalledWhatItIsForPeople)
{
    const auto name = [](const QStringList &before, const QStringList &after) {
        return KPEditHistory::textOf({{QStringLiteral("a")}, KPFileEdit::Tags{before, after}, {}});
    };
    const QStringList flag{QStringLiteral("Flagged")};
    EXPECT_EQ(name({}, flag), u"Flagging of 1 document");
    EXPECT_EQ(name(flag, {}), u"Removal of the flag from 1 document");
    EXPECT_EQ(name({}, {QStringLiteral("hidden")}), u"Hiding of 1 document");
    EXPECT_EQ(name({QStringLiteral("hidden")}, {}), u"Showing of 1 hidden document");
    EXPECT_EQ(name({work}, flag), u"Tags of 1 document");
    EXPECT_EQ(name(flag + QStringList{work}, {work}), u"Removal of the flag from 1 document");
}

TEST_F(FileEdit, RenamesOverManyFilesAndBackAsOneStep)
{
    const QString a = makeFile("a", {mine, work});
    const QString b = makeFile("b", {QStringLiteral("Work"), home, QStringLiteral("work/old")});
    const QString gone = m_folder.path(QStringLiteral("gone"));
    KPFileEdit edit{{a, gone, b}, {}, {}, KPTagRename{work, home}};
    m_history.edit(edit);
    const KPEditReport report = waitForReport();
    EXPECT_EQ(report.changed, 2);
    ASSERT_EQ(report.failures.size(), 1);
    EXPECT_EQ(report.failures.first().path, gone);
    EXPECT_EQ(tagsOf(a), (QStringList{mine, home}));
    EXPECT_EQ(tagsOf(b), (QStringList{home, QStringLiteral("home/old")}));
    // Somebody else's change of one file is not taken back with ours.
    ASSERT_FALSE(Karvex::addUserTags({mine}, b));
    m_history.undo();
    EXPECT_EQ(waitForReport().failures.size(), 1);
    EXPECT_EQ(tagsOf(a), (QStringList{mine, work}));
    EXPECT_EQ(tagsOf(b), (QStringList{home, QStringLiteral("home/old"), mine}));
}

TEST_F(FileEdit, CanBeUndoneAfterTheProgramWasKilled)
{
    for (const auto &earlier : KPEditJournal::saved())
        KPEditJournal::remove(earlier.file);
    const QString a = makeFile("a", {work});
    const QString b = makeFile("b", {work});
    const QString c = makeFile("c", {work});
    // As a process leaves it that dies after it said what it will do to the third file.
    {
        const KPFileEdit edit{{a, b, c}, KPFileEdit::Tags{{work}, {home}}, {}, {}};
        const auto journal = KPEditJournal::begin(QStringLiteral("edit"));
        for (const QString &path : edit.paths) {
            const auto intend = [&](const KPFileChange &change) { journal->append(change); };
            if (path == c)
                intend({c, KPFileChange::Tags{{work}, {home}}, {}});
            else
                (void)KPFileEditing::apply(edit, path, intend);
        }
    }
    m_history.restore();
    ASSERT_TRUE(m_history.canUndo());
    m_history.undo();
    const KPEditReport report = waitForReport();
    EXPECT_EQ(report.changed, 2);
    EXPECT_TRUE(report.failures.isEmpty());
    for (const QString &path : {a, b, c})
        EXPECT_EQ(tagsOf(path), QStringList{work});
    KPEditHistory next(&m_worker);
    next.restore();
    EXPECT_FALSE(next.canUndo()) << "it is undone already";
}

TEST_F(FileEdit, CommentsAreUndoneUnlessSomebodyElseWroteOne)
{
    const QString a = makeFile("a", {});
    const QString b = makeFile("b", {});
    const auto commentOf = [](const QString &path) {
        return KPDocEdits::comment(path).valueOr(QStringLiteral("(error)"));
    };
    KPFileEdit edit{{a, b}, {}, {}};
    edit.comment = QStringLiteral("due in May");
    m_history.edit(edit);
    EXPECT_EQ(waitForReport().changed, 2);
    EXPECT_EQ(commentOf(b), *edit.comment);
    ASSERT_FALSE(KPDocEdits::setComment(QStringLiteral("paid"), b));
    m_history.undo();
    EXPECT_EQ(waitForReport().failures.size(), 1);
    EXPECT_EQ(commentOf(a), QString());
    EXPECT_EQ(commentOf(b), QStringLiteral("paid"));
    const auto left = XPExtendedAttributes::list(a);
    EXPECT_EQ(left.valueOr({mine}), QStringList()) << "no comment is no attribute";
}

TEST_F(FileEdit, RepairTakesOffWhatNobodyUnderstandsAndPutsTheVeryBytesBack)
{
    for (const auto &earlier : KPEditJournal::saved())
        KPEditJournal::remove(earlier.file);
    const QString torn = makeFile("torn", {});
    ASSERT_FALSE(Karvex::setRating(4, torn));
    const QString tags = Karvex::spotlightKey(Karvex::userTagsKey);
    const QString comment = Karvex::spotlightKey(Karvex::commentKey);
    const QByteArray odd("bplist00\0\xffgarbage", 17);
    ASSERT_FALSE(XPExtendedAttributes::write(torn, tags, odd));
    ASSERT_FALSE(XPExtendedAttributes::write(torn, comment, "plain words"));
    KPFileEdit edit{{torn}, {}, {}};
    edit.repairs = true;
    m_history.edit(edit);
    EXPECT_EQ(waitForReport().changed, 1);
    EXPECT_EQ(tagsOf(torn), QStringList());
    EXPECT_EQ(Karvex::getRating(torn).valueOr(-1), 4) << "what is understood stays";
    // After a restart too, and never over what came since.
    ASSERT_FALSE(Karvex::setUserTags(QStringList{work}, torn));
    KPEditHistory next(&m_worker);
    next.restore();
    next.undo();
    EXPECT_EQ(waitForReport().failures.size(), 1);
    EXPECT_EQ(tagsOf(torn), QStringList{work});
    const auto back = XPExtendedAttributes::read(torn, comment);
    EXPECT_EQ(back.valueOr({}).value_or(QByteArray()), "plain words");
}
