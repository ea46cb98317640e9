#include "FiledFolder.h"
#include "KPFilenameFormatter.h"

class FiledUpkeep : public FiledFolder
{
};

TEST_F(FiledUpkeep, TheInboxIsEmptiedOfWhatIsSeen)
{
    const QString inbox = XPFiledDocuments::pendingDocsFolder();
    const auto put = [&inbox](const char *name) {
        QFile made(inbox + u'/' + QString::fromUtf8(name));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        return made.fileName();
    };
    const QString scan = put("new scan.pdf");
    const QString unfinished = put(".new scan.pdf.part");
    QDir(inbox).mkdir(QStringLiteral("folder"));
    int told = 0;
    const auto observation =
        XPNotificationCenter::instance().addObserver(XPFiledDocuments::addedFromPendingNotification,
                                                     [&told](const XPNotification &) { ++told; });

    XPFileRunOptions dry;
    dry.dryRun = true;
    EXPECT_EQ(XPFiledDocuments::movePendingFilesToFiledDocuments(dry).paths,
              QStringList{today("new scan.pdf")});
    EXPECT_TRUE(exists(scan));
    EXPECT_EQ(XPFiledDocuments::movePendingFilesToFiledDocuments().paths,
              QStringList{today("new scan.pdf")});
    EXPECT_FALSE(exists(scan));
    EXPECT_TRUE(exists(unfinished));
    EXPECT_TRUE(XPFiledDocuments::isManaged(today("new scan.pdf")));
    EXPECT_EQ(XPFiledDocuments::movePendingFilesToFiledDocuments().paths, QStringList());
    EXPECT_EQ(told, 1);
    QDir(inbox).removeRecursively();
}

TEST_F(FiledUpkeep, WhatLiesInTheRootGoesToToday)
{
    file("Filed/a.pdf");
    file("Filed/2012/1/2/b.pdf");
    EXPECT_EQ(XPFiledDocuments::moveDocsAtRootOfFiledDocumentsToToday().paths,
              QStringList{today("a.pdf")});
    EXPECT_TRUE(exists(filed("2012/1/2/b.pdf")));
}

TEST_F(FiledUpkeep, OnlyEmptyFoldersOfTheLastDaysGo)
{
    for (const char *folder : {"2013/6/14", "2013/6/13", "2013/6/12", "2013/4/16", "2013/4/15"})
        QDir(m_root).mkpath(QString::fromLatin1(folder));
    file("Filed/2013/6/12/.hidden");
    XPFiledDocuments::removeEmptyOldFolders(60, m_day);
    EXPECT_TRUE(exists(filed("2013/6/14"))); // today's
    EXPECT_FALSE(exists(filed("2013/6/13")));
    EXPECT_TRUE(exists(filed("2013/6/12")));
    EXPECT_FALSE(exists(filed("2013/4/16"))); // 59 days ago
    EXPECT_TRUE(exists(filed("2013/4/15")));
}

TEST_F(FiledUpkeep, TheOlderLayoutIsKnownByASampleOfDays)
{
    EXPECT_FALSE(XPFiledDocuments::hasYearMonthDayFolders());
    QDir(m_root).mkpath(QStringLiteral("2013/6/15"));
    EXPECT_FALSE(XPFiledDocuments::hasYearMonthDayFolders());
    QDir(m_root).mkpath(QStringLiteral("2012/12/12"));
    EXPECT_TRUE(XPFiledDocuments::hasYearMonthDayFolders());
}

TEST_F(FiledUpkeep, TheLayoutIsConvertedToMonthsWithoutLosingAName)
{
    file("Filed/2013/6/14/a.pdf", "14");
    file("Filed/2013/6/15/a.pdf", "15");
    file("Filed/2013/6/a.pdf", "month");
    file("Filed/2013/6/15/16", "named as a day");
    file("Filed/2013/6/16/b.pdf", "16");
    file("Filed/2000/0/0/c.pdf");
    file("Filed/2013/7/33/d.pdf");
    file("Filed/2031/1/1/e.pdf");
    QFile::link(m_folder.path(QStringLiteral("Filed/2013/6/15")), filed("2013/6/2"));

    const XPFileReport report = XPFiledDocuments::convertFromYearMonthDayToYearMonth({}, m_day);
    EXPECT_TRUE(report.problems().isEmpty());
    EXPECT_EQ(bytesOf(filed("2013/6/a.pdf")), "month");
    EXPECT_EQ(bytesOf(filed("2013/6/a 1.pdf")), "14");
    EXPECT_EQ(bytesOf(filed("2013/6/a 2.pdf")), "15");
    EXPECT_EQ(bytesOf(filed("2013/6/16 1")), "named as a day");
    EXPECT_EQ(bytesOf(filed("2013/6/b.pdf")), "16");
    EXPECT_TRUE(exists(filed("2000/0/c.pdf")));
    EXPECT_TRUE(exists(filed("2013/7/33/d.pdf")));
    EXPECT_TRUE(exists(filed("2031/1/1/e.pdf")));
    for (const char *day : {"2013/6/14", "2013/6/15", "2013/6/16", "2000/0/0"})
        EXPECT_FALSE(exists(filed(day))) << day;
}

TEST(KPFilenameFormatter, GivesTheOldNameBackForAnEmptyOrHiddenOne)
{
    KPFilenameFormatter formatter;
    formatter.originalDisplayName = QStringLiteral("old.pdf");
    EXPECT_EQ(formatter.getObjectValueForString({}), QStringLiteral("old.pdf"));
    EXPECT_EQ(formatter.getObjectValueForString(QStringLiteral(".x")), QStringLiteral("old.pdf"));
    EXPECT_EQ(formatter.getObjectValueForString(QStringLiteral("x.")), QStringLiteral("x."));
    EXPECT_EQ(KPFilenameFormatter::stringForObjectValue(3), std::nullopt);
    EXPECT_EQ(KPFilenameFormatter::stringForObjectValue(QStringLiteral("a")), QStringLiteral("a"));
}
