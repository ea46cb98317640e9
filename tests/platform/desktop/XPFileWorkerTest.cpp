#include "XPFileWorker.h"

#include <QCoreApplication>
#include <QThread>
#include <algorithm>
#include <gtest/gtest.h>

TEST(FileWorker, RunsInOrderElsewhere)
{
    XPFileWorker worker;
    QList<int> ran;
    QList<int> told;
    std::atomic<int> onMain = 0;
    for (int number = 0; number < 20; ++number) {
        worker.run(
            [&, number] {
                ran.append(number); // one at a time: no lock is needed
                onMain += QThread::currentThread() == QCoreApplication::instance()->thread();
            },
            [&, number] { told.append(number); });
    }
    while (told.size() < 20 &&
           (QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents), true))
        continue;
    EXPECT_EQ(ran, told);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(onMain, 0);
}

TEST(FileWorker, FinishesWhatWasAskedFor)
{
    std::atomic<int> ran = 0;
    bool told = false;
    {
        XPFileWorker worker;
        for (int number = 0; number < 20; ++number)
            worker.run([&] { ++ran; }, [&] { told = true; });
    }
    EXPECT_EQ(ran, 20);
    QCoreApplication::processEvents();
    EXPECT_FALSE(told);
}
