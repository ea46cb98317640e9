#include "XPFileDeeds.h"

#include "FiledFolder.h"
#include "TestSystem.h"
#include "XPFileTransfers.h"
#include "XPFilingRun.h"
#include "XPTrash.h"

#include <cerrno>

using Kind = XPFileDeed::Kind;
using Chain = XPFileDeeds::Chain;
using Deeds = QList<Chain>;

class FileDeeds : public FiledFolder
{
protected:
    Deeds transfer(const QStringList &paths, bool copies, bool replaces = false) const
    {
        const QString folder = m_folder.path(QStringLiteral("to"));
        QDir().mkpath(folder);
        return XPFileDeeds::of(XPFileTransfers::moveCopyFiles({paths, folder, copies, replaces}));
    }
    static Deeds takeBack(const Deeds &deeds)
    {
        const auto outcome = XPFileDeeds::takeBack(deeds);
        EXPECT_TRUE(outcome.failures.isEmpty());
        return outcome.deeds;
    }
    QString to(const char *name) const
    {
        return m_folder.path(QStringLiteral("to/")) + QLatin1String(name);
    }
};

TEST_F(FileDeeds, FilingIsTakenBackWithItsMarkAndDoneAgain)
{
    const QStringList paths = {file("in/a.pdf"), file("in/b.pdf")};
    XPFilingRun run;
    run.putFiles(paths, false);
    const QString filedPath = run.report().paths.first();
    const Deeds undone = takeBack(XPFileDeeds::of(run.report()));
    EXPECT_TRUE(exists(paths[0]) && exists(paths[1]));
    EXPECT_FALSE(exists(filedPath) || XPFiledDocuments::isManaged(paths[0]));
    const Deeds redone = takeBack(undone);
    EXPECT_TRUE(exists(filedPath) && XPFiledDocuments::isManaged(filedPath));
    takeBack(redone);
    EXPECT_TRUE(exists(paths[0]) && exists(paths[1]));
}

TEST_F(FileDeeds, AMarkThatWasThereBeforeStays)
{
    const QString path = file("in/a.pdf");
    ASSERT_FALSE(XPFiledDocuments::setManaged(true, path));
    XPFilingRun run;
    run.putFiles({path}, false);
    takeBack(XPFileDeeds::of(run.report()));
    EXPECT_TRUE(exists(path) && XPFiledDocuments::isManaged(path));
}

TEST_F(FileDeeds, AReplacedFileComesBackFromTheTrash)
{
    for (const bool copies : {false, true}) {
        const QString path = file("in/a.pdf", "new");
        (void)file("to/a.pdf", "old");
        const Deeds undone = takeBack(transfer({path}, copies, true));
        EXPECT_EQ(bytesOf(path), "new");
        EXPECT_EQ(bytesOf(to("a.pdf")), "old");
        takeBack(undone);
        EXPECT_EQ(bytesOf(to("a.pdf")), "new");
        EXPECT_EQ(exists(path), copies);
    }
}

TEST_F(FileDeeds, CopiesGoToTheTrashAndComeBack)
{
    const QString path = file("in/a.pdf", "bytes");
    const Deeds undone = takeBack(transfer({path}, true));
    EXPECT_FALSE(exists(to("a.pdf")));
    ASSERT_EQ(undone.size(), 1);
    EXPECT_EQ(undone[0][0].kind, Kind::Trashed);
    takeBack(undone);
    EXPECT_EQ(bytesOf(to("a.pdf")), "bytes");
}

TEST_F(FileDeeds, ATakenNameIsLeftToWhoTookIt)
{
    const QString one = file("in/1.pdf", "one");
    const QString two = file("in/2.pdf", "two");
    const Deeds moved = transfer({one, two}, false);
    (void)file("in/1.pdf", "theirs");
    const auto outcome = XPFileDeeds::takeBack(moved);
    ASSERT_EQ(outcome.failures.size(), 1);
    EXPECT_EQ(outcome.failures[0].code, EEXIST);
    EXPECT_EQ(bytesOf(one), "theirs");
    EXPECT_EQ(bytesOf(to("1.pdf")), "one");
    EXPECT_EQ(bytesOf(two), "two");

    const QString path = file("in/3.pdf", "three");
    const Deeds trashed = {{{Kind::Trashed, path, *XPTrash::move(path)}}};
    (void)file("in/3.pdf", "theirs too");
    EXPECT_EQ(XPFileDeeds::takeBack(trashed).failures.size(), 1);
    EXPECT_EQ(bytesOf(path), "theirs too");
    EXPECT_EQ(bytesOf(trashed[0][0].after), "three");
}

TEST_F(FileDeeds, WhatCannotBeTakenBackWholeIsLeftAsItIs)
{
    const QString path = file("in/a.pdf");
    XPFilingRun run;
    run.putFiles({path}, false);
    (void)file("in/a.pdf", "theirs");
    EXPECT_EQ(XPFileDeeds::takeBack(XPFileDeeds::of(run.report())).failures.size(), 1);
    EXPECT_TRUE(XPFiledDocuments::isManaged(run.report().paths.first()));
}

TEST_F(FileDeeds, AFolderThatWasTidiedAwayIsMadeAgain)
{
    const QString path = file("in/a.pdf");
    const Deeds moved = transfer({path}, false);
    ASSERT_TRUE(QDir().rmdir(m_folder.path(QStringLiteral("in"))));
    takeBack(moved);
    EXPECT_TRUE(exists(path));
}
