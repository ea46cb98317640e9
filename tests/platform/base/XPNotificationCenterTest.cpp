#include "XPNotificationCenter.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <gmock/gmock.h>
#include <thread>

using testing::ElementsAre;

static XPNotificationCenter &center()
{
    return XPNotificationCenter::instance();
}

static const QString name = QStringLiteral("TestNotification");

TEST(XPNotificationCenter, OtherThreadsAreHeardOnTheMainThreadInTheirOrder)
{
    constexpr int each = 2000;
    constexpr int threads = 3;
    QList<qint64> last(threads, -1);
    int heard = 0;
    const XPObservation observation = center().addObserver(name, [&](const XPNotification &got) {
        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
        qint64 &before = last[got.userInfo[QStringLiteral("thread")].integerValue()];
        const qint64 number = got.userInfo[QStringLiteral("number")].integerValue();
        EXPECT_EQ(number, before + 1);
        before = number;
        ++heard;
    });
    {
        std::vector<std::jthread> posters;
        posters.reserve(threads);
        for (int thread = 0; thread < threads; ++thread) {
            posters.emplace_back([thread] {
                for (int number = 0; number < each; ++number)
                    center().post(name, {},
                                  {{QStringLiteral("thread"), PropertyValue::integer(thread)},
                                   {QStringLiteral("number"), PropertyValue::integer(number)}});
            });
        }
        const QDeadlineTimer deadline(60'000);
        while (heard < each && !deadline.hasExpired()) // some delivered while others are posted
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1000);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(heard, each * threads);
}

TEST(XPNotificationCenter, AnObserverOfOneObjectHearsOnlyOfThat)
{
    const auto object = std::make_shared<XPNotificationObject>();
    const XPNotification::Object objects[] = {QStringLiteral("/a"), PropertyValue::integer(1),
                                              PropertyValue::boolean(true), object,
                                              std::make_shared<XPNotificationObject>()};
    QList<int> heard;
    std::vector<XPObservation> observations;
    observations.reserve(std::size(objects));
    for (int i = 0; i < 5; ++i)
        observations.push_back(center().addObserver(
            name, [&heard, i](const XPNotification &) { heard.append(i); }, objects[i]));
    for (const auto &posted : {XPNotification::Object(object), XPNotification::Object(),
                               XPNotification::Object(QStringLiteral("/a")),
                               XPNotification::Object(PropertyValue::integer(1))})
        center().post(name, posted);
    EXPECT_THAT(heard, ElementsAre(3, 0, 1));
}

TEST(XPNotificationCenter, ObserversMayComeAndGoDuringADelivery)
{
    QStringList heard;
    XPObservation later;
    XPObservation added;
    XPObservation first = center().addObserver(name, [&](const XPNotification &) {
        heard.append(QStringLiteral("first"));
        later.reset();
        first.reset(); // itself, while it runs
        added = center().addObserver(
            name, [&heard](const XPNotification &) { heard.append(QStringLiteral("added")); });
    });
    later = center().addObserver(
        name, [&heard](const XPNotification &) { heard.append(QStringLiteral("later")); });
    center().post(name);
    EXPECT_EQ(heard, QStringList({QStringLiteral("first")}));
    center().post(name);
    EXPECT_EQ(heard, QStringList({QStringLiteral("first"), QStringLiteral("added")}));
}

TEST(XPNotificationCenter, APostInsideAnObserverIsDeliveredAtOnce)
{
    QList<int> heard;
    const XPObservation observation = center().addObserver(name, [&](const XPNotification &got) {
        const int depth = static_cast<int>(got.userInfo.value(name).integerValue());
        if (depth < 2)
            center().post(name, {}, {{name, PropertyValue::integer(depth + 1)}});
        heard.append(depth);
    });
    center().post(name);
    EXPECT_THAT(heard, ElementsAre(2, 1, 0));
}
