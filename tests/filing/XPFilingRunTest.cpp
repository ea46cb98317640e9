#include "XPFilingRun.h"
#include "FiledFolder.h"
#include "TestSystem.h"
#include "XPExtendedAttributes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using Action = XPFileStep::Action;

class FilingRun : public FiledFolder
{
protected:
    XPFileReport put(const QStringList &paths, bool forceMove = false, bool dryRun = false) const
    {
        XPFileRunOptions options;
        options.dryRun = dryRun;
        XPFilingRun run(options, m_day);
        run.putFiles(paths, forceMove);
        return run.takeReport();
    }
    static bool hasMark(const QString &path) { return XPFiledDocuments::isManaged(path); }
};

TEST_F(FilingRun, ATakenNameGetsTheNextNumber)
{
    file("Filed/2013/6/14/report.pdf", "old");
    file("Filed/2013/6/14/report 1.pdf", "old");
    const QString path = file("in/report.pdf", "new");
    ASSERT_FALSE(Karvex::setUserTags(QStringList{QStringLiteral("tax")}, path));
    ASSERT_FALSE(Karvex::setRating(4, path));

    const XPFileReport report = put({path});
    const QString filedAt = filed("2013/6/14/report 2.pdf");
    EXPECT_EQ(report.paths, QStringList{filedAt});
    EXPECT_EQ(
        report.steps,
        (QList<XPFileStep>{{path, filedAt, Action::Moved, {}, {}, {}, XPMarkChange{{}, true}}}));
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(bytesOf(filedAt), "new");
    EXPECT_TRUE(hasMark(filedAt));
    EXPECT_EQ(Karvex::getUserTags(filedAt).valueOr({}), QStringList{QStringLiteral("tax")});
    EXPECT_EQ(Karvex::getRating(filedAt).valueOr(0), 4);
}

TEST_F(FilingRun, TellsOfEachMoveWithTheDictionaryAsTheObject)
{
    const QString path = file("in/a.pdf");
    QStringList heard;
    const auto about = XPNotificationCenter::instance().addObserver(
        QStringLiteral("aboutToPerhapsMoveDocuments"), [&](const XPNotification &each) {
            heard.append(each.name);
            EXPECT_TRUE(std::holds_alternative<std::monostate>(each.object));
        });
    const auto moved = XPNotificationCenter::instance().addObserver(
        QStringLiteral("documentPathChanged"), [&](const XPNotification &each) {
            heard.append(each.name);
            EXPECT_TRUE(each.userInfo.isEmpty());
            ASSERT_TRUE(std::holds_alternative<PropertyValue>(each.object));
            const auto paths = std::get<PropertyValue>(each.object).dictionary();
            EXPECT_EQ(paths.value(QStringLiteral("oldPath")).string(), path);
            EXPECT_EQ(paths.value(QStringLiteral("newPath")).string(), filed("2013/6/14/a.pdf"));
        });
    put({path});
    EXPECT_EQ(heard, (QStringList{QStringLiteral("aboutToPerhapsMoveDocuments"),
                                  QStringLiteral("documentPathChanged")}));
}

TEST_F(FilingRun, WhatLiesWellIsOnlyMarked)
{
    const QString path = file("Filed/2012/1/2/a.pdf");
    const XPFileReport report = put({path});
    EXPECT_EQ(report.paths, QStringList());
    EXPECT_EQ(report.steps, (QList<XPFileStep>{
                                {path, path, Action::Marked, {}, {}, {}, XPMarkChange{{}, true}}}));
    EXPECT_TRUE(hasMark(path));

    // With folders of months it goes to the month of now all the same.
    setFlag(XPFiledDocuments::useYearMonthKey, true);
    const QString inMonth = file("Filed/2012/1/b.pdf");
    EXPECT_EQ(put({inMonth}).paths, QStringList{filed("2013/6/b.pdf")});
    EXPECT_EQ(put({path}).paths, QStringList()); // four levels down is well, in both layouts
}

TEST_F(FilingRun, FoldersAreLeftOutPackagesAreNotAndNamesAreBytes)
{
    const QString folder = XPPath::folder(file("in/folder/a"));
    const QString package = XPPath::folder(file("in/notes.rtfd/TXT.rtf"));
    const QString odd = m_folder.path(QStringLiteral("in/")) + XPPath::decode("\xff\n.pdf");
    ASSERT_GE(::close(::open(XPPath::encode(odd).constData(), O_CREAT | O_WRONLY, 0600)), 0);
    const XPFileReport report = put({folder, package, odd, package});
    const QString oddFiled = m_root + QStringLiteral("/2013/6/14/") + XPPath::fileName(odd);
    EXPECT_EQ(report.paths, (QStringList{filed("2013/6/14/notes.rtfd"), oddFiled}));
    EXPECT_TRUE(exists(folder));
    EXPECT_TRUE(exists(filed("2013/6/14/notes.rtfd/TXT.rtf")));
    EXPECT_TRUE(exists(oddFiled));
    EXPECT_TRUE(report.problems().isEmpty());
}

TEST_F(FilingRun, ADryRunSaysTheSameAndTouchesNothing)
{
    const QStringList paths = {file("in/a.pdf"), file("other/a.pdf"), file("Filed/2012/1/2/a.pdf"),
                               file("in/Photos Library.photoslibrary.pdf")};
    const XPFileReport planned = put(paths, false, true);
    EXPECT_FALSE(exists(filed("2013")));
    for (const QString &path : paths) {
        EXPECT_TRUE(exists(path));
        EXPECT_FALSE(hasMark(path));
    }
    EXPECT_EQ(planned.steps, put(paths).steps);
    EXPECT_EQ(planned.steps.last().action, Action::Copied); // a program's own
    EXPECT_EQ(planned.paths[1], filed("2013/6/14/a 1.pdf"));
}

TEST_F(FilingRun, AFileOfAnotherVolumeIsCopiedUnlessTheMoveIsForced)
{
    const auto volume = TestVolume::tmpfs("1m");
    if (!volume)
        GTEST_SKIP() << "needs root";
    const QString path = volume->path(QStringLiteral("a.pdf"));
    const auto make = [&path] {
        QFile made(path);
        ASSERT_TRUE(made.open(QIODevice::WriteOnly));
        made.write("bytes");
    };
    make();
    XPFileReport report = put({path});
    EXPECT_EQ(report.steps.value(0).action, Action::Copied);
    EXPECT_TRUE(exists(path));
    EXPECT_FALSE(hasMark(path));
    EXPECT_TRUE(hasMark(filed("2013/6/14/a.pdf")));

    report = put({path}, true);
    EXPECT_EQ(report.paths, QStringList{filed("2013/6/14/a 1.pdf")});
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(bytesOf(filed("2013/6/14/a 1.pdf")), "bytes");
}

// As a user who may put files into the folder and may not write their attributes.
TEST_F(FilingRun, AFileThatCannotBeMarkedIsFiledOnceAndReported)
{
    const QString path = file("in/a.pdf");
    const QString link = m_folder.path(QStringLiteral("in/link.pdf"));
    ASSERT_EQ(::symlink("a.pdf", XPPath::encode(link).constData()), 0); // takes no attribute
    const XPFileReport report = put({link});
    EXPECT_EQ(report.paths, QStringList{filed("2013/6/14/link.pdf")});
    ASSERT_EQ(report.problems().size(), 1);
    EXPECT_EQ(report.problems().first().to, filed("2013/6/14/link.pdf"));
    EXPECT_FALSE(exists(link));
    EXPECT_TRUE(exists(path));
    EXPECT_FALSE(hasMark(path)); // what a link leads to is not touched
    EXPECT_FALSE(exists(filed("2013/6/14/link 1.pdf")));

    XPFilingRun run({}, m_day);
    run.setToManaged(report.paths);
    EXPECT_EQ(run.report().paths, report.paths); // stays, and is reported again
    EXPECT_EQ(run.report().problems().size(), 1);
    EXPECT_FALSE(exists(filed("2013/6/14/link 1.pdf")));
}

TEST_F(FilingRun, AMarkThatCannotBeReadIsNotWrittenOver)
{
    const QString path = file("in/a.pdf");
    const QByteArray damaged = "bplist00damaged";
    const QString name = Karvex::spotlightKey(Karvex::managedKey);
    ASSERT_FALSE(XPExtendedAttributes::write(path, name, damaged));
    const XPFileReport report = put({path});
    ASSERT_EQ(report.paths.size(), 1);
    EXPECT_EQ(report.problems().size(), 1);
    EXPECT_EQ(XPExtendedAttributes::read(report.paths.first(), name).valueOr({}), damaged);
}

TEST_F(FilingRun, WhatCannotBeFiledStaysAndIsReported)
{
    file("Filed/2013", "in the way");
    const QString path = file("in/a.pdf", "bytes");
    for (const bool forced : {false, true}) {
        const XPFileReport report = put({path, m_folder.path(QStringLiteral("gone"))}, forced);
        EXPECT_EQ(report.paths, QStringList());
        ASSERT_EQ(report.problems().size(), 2);
        EXPECT_EQ(report.problems().last().problem->kind, XPError::Kind::NotFound);
        EXPECT_EQ(bytesOf(path), "bytes");
    }
}

TEST_F(FilingRun, MarkingCopiesWhatMayNotBeMarkedInPlace)
{
    const QString plain = file("in/a.pdf");
    const QString programs = file("in/Library/Mail/b.pdf");
    XPFilingRun run({}, m_day);
    run.setToManaged({plain, programs});
    EXPECT_EQ(run.report().paths, (QStringList{plain, filed("2013/6/14/b.pdf")}));
    EXPECT_TRUE(hasMark(plain));
    EXPECT_TRUE(exists(programs));
    EXPECT_FALSE(hasMark(programs));
    EXPECT_TRUE(hasMark(filed("2013/6/14/b.pdf")));
}

TEST_F(FilingRun, ACopyOfWhatIsInTheFolderIsNoneAndKeepsItsOldName)
{
    const QString inRoot = file("Filed/a.pdf");
    XPFilingRun run({}, m_day);
    run.copyAll({inRoot, file("in/b.pdf")});
    EXPECT_EQ(run.report().paths, (QStringList{inRoot, filed("2013/6/14/b.pdf")}));
    EXPECT_FALSE(exists(inRoot));
    EXPECT_TRUE(hasMark(filed("2013/6/14/a.pdf")));
    EXPECT_EQ(XPFiledDocuments::copyToFiledDocumentsAndSetManaged({}), QString());
}

TEST_F(FilingRun, StopsBetweenTwoFiles)
{
    XPFileRunOptions options;
    options.progress = [](qsizetype done) { return done < 1; };
    XPFilingRun run(options, m_day);
    const QString second = file("in/b.pdf");
    run.putFiles({file("in/a.pdf"), second}, false);
    EXPECT_TRUE(run.report().wasStopped);
    EXPECT_EQ(run.report().paths.size(), 1);
    EXPECT_TRUE(exists(second));
}

struct Age
{
    const char *name;
    qint64 seconds;
    qint64 movedBy;
};

TEST(ModificationDate, IsSetLaterOnlyOnOldFiles)
{
    const TestFolder folder;
    for (const Age &age : {Age{"fresh", 3500, 0}, Age{"old", 3700, 2}, Age{"future", -3700, 0}}) {
        const QString path = folder.file(QString::fromLatin1(age.name));
        const timespec when = {::time(nullptr) - age.seconds, 123456789};
        const timespec times[] = {{1000, 5}, when};
        ASSERT_EQ(::utimensat(AT_FDCWD, XPPath::encode(path).constData(), times, 0), 0);
        const auto before = XPFileInfo::read(path);
        XPFiledDocuments::adjustModifictionDate(path);
        const auto after = XPFileInfo::read(path);
        ASSERT_TRUE(before && after);
        EXPECT_EQ(after->modified - before->modified, age.movedBy * 1'000'000'000) << age.name;
        EXPECT_EQ(after->accessed, before->accessed);
    }
    XPFiledDocuments::adjustModifictionDate({});
    XPFiledDocuments::adjustModifictionDate(folder.path(QStringLiteral("none")));
}

TEST(PathOKForManaged, LeavesOtherProgramsFilesAlone)
{
    const auto isOK = [](const QString &path) { return XPFiledDocuments::pathOKForManaged(path); };
    const QString home = XPFolders::home();
    EXPECT_TRUE(isOK(home + QStringLiteral("/a.pdf")));
    EXPECT_FALSE(isOK(home + QStringLiteral("/Library/Mail/a.pdf")));
    EXPECT_FALSE(isOK(home + QStringLiteral("/Library/Caches/a.pdf")));
    EXPECT_FALSE(isOK(home + QStringLiteral("/Photos Library.photoslibrary/a.jpg")));
    EXPECT_FALSE(isOK(XPFolders::caches() + QStringLiteral("/a.pdf")));
    EXPECT_FALSE(isOK(QStringLiteral("/private/a.pdf")));
    EXPECT_FALSE(isOK(QStringLiteral("/var/a.pdf")));
    EXPECT_TRUE(isOK(QStringLiteral("/srv/var/a.pdf")));
}
