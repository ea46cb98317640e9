#include "XPMainThread.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QList>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

TEST(MainThread, CallsInTheOrderOfEachThread)
{
    constexpr int each = 500;
    const auto seen = std::make_shared<QList<QList<int>>>(4);
    const auto told = std::make_shared<int>(0);
    QEventLoop loop;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < seen->size(); ++thread)
        threads.emplace_back([seen, told, thread, &loop, last = each * seen->size()] {
            for (int i = 0; i < each; ++i)
                xpOnMainThread([=, &loop] {
                    EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
                    (*seen)[thread].append(i);
                    if (++*told == last)
                        loop.quit();
                });
        });
    loop.exec();
    for (std::thread &thread : threads)
        thread.join();
    for (const QList<int> &ofThread : std::as_const(*seen)) {
        ASSERT_EQ(ofThread.size(), each);
        EXPECT_TRUE(std::is_sorted(ofThread.begin(), ofThread.end()));
    }
}

// A dialog that one call opens must not hold up what the next one brings, its own end perhaps.
TEST(MainThread, CallsTheRestFromALoopInside)
{
    QEventLoop outer;
    bool hasLeftInner = false;
    QEventLoop inner;
    xpOnMainThread([&] {
        inner.exec();
        hasLeftInner = true;
        outer.quit();
    });
    xpOnMainThread([&] { inner.quit(); });
    QTimer::singleShot(std::chrono::seconds(20), &outer, [&] {
        inner.quit();
        outer.quit();
        ADD_FAILURE() << "the second call waited for the first";
    });
    outer.exec();
    EXPECT_TRUE(hasLeftInner);
}
