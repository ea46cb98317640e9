#include "XPArrivals.h"

#include "TestHome.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

// Many at once are told once; a file that is still being written not before it is closed.
TEST(Arrivals, AreToldWhenTheFilesAreWhole)
{
    const TestFolder folder;
    const TestFolder elsewhere;
    const QString moved = elsewhere.file(QStringLiteral("moved"));
    const XPArrivals arrivals(folder.path());
    QSignalSpy told(&arrivals, &XPArrivals::arrived);

    QFile open(folder.path(QStringLiteral("open")));
    ASSERT_TRUE(open.open(QIODevice::WriteOnly));
    open.write("half");
    open.flush();
    QCoreApplication::processEvents();
    EXPECT_EQ(told.size(), 0);
    open.close();
    for (int i = 0; i < 100; ++i)
        (void)folder.file(QString::number(i));
    ASSERT_TRUE(told.wait(20'000));
    EXPECT_EQ(told.size(), 1);
    ASSERT_TRUE(QFile::rename(moved, folder.path(QStringLiteral("moved"))));
    ASSERT_TRUE(told.wait(20'000));
    EXPECT_EQ(told.size(), 2);
}

TEST(Arrivals, OfAFolderThatIsNotThereAreNone)
{
    const TestFolder folder;
    const XPArrivals arrivals(folder.path(QStringLiteral("missing")));
    const XPArrivals file(folder.file(QStringLiteral("a")));
    QSignalSpy told(&arrivals, &XPArrivals::arrived);
    (void)folder.file(QStringLiteral("missing/b"));
    QCoreApplication::processEvents();
    EXPECT_EQ(told.size(), 0);
}
