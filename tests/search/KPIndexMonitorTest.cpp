#include "KPIndexMonitor.h"
#include "IndexSetup.h"
#include "TestChild.h"
#include "TestHome.h"
#include "XPPath.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>
#include <sys/mount.h>

// No item changes then.
TEST(IndexMonitor, HearsOfAVolumeThatGoesAndComesBackAsItWas)
{
    const TestFolder folder;
    const TestFolder store;
    const QString volume = folder.path(QStringLiteral("volume"));
    (void)folder.file(QStringLiteral("disk/file.txt"));
    QDir().mkpath(volume);
    EXPECT_EQ(
        runChild([&] {
            if (!havePrivateMounts())
                return;
            const QByteArray point = XPPath::encode(volume);
            const QByteArray disk = XPPath::encode(folder.path(QStringLiteral("disk")));
            const auto mount = [&] {
                return ::mount(disk.constData(), point.constData(), nullptr, MS_BIND, nullptr) == 0;
            };
            ASSERT_TRUE(mount());
            IndexSetup setup;
            setup.path = store.path(QStringLiteral("index.sqlite"));
            setup.roots = {volume};
            const auto index = MetadataIndex::open(setup);
            QEventLoop events; // before what needs the thread to have one
            KPIndexMonitor monitor(*index);
            const auto has = [&](qsizetype problems) {
                const QDeadlineTimer deadline(60'000);
                QTimer waking;
                waking.start(50);
                const auto isSo = [&] {
                    return monitor.activity().isEmpty() && monitor.status().roots.size() == 1 &&
                           monitor.status().problems.size() == problems;
                };
                while (!isSo() && !deadline.hasExpired())
                    events.processEvents(QEventLoop::WaitForMoreEvents);
                return isSo();
            };
            ASSERT_TRUE(has(0));
            ASSERT_EQ(::umount2(point.constData(), MNT_DETACH), 0);
            EXPECT_TRUE(has(1));
            ASSERT_TRUE(mount());
            EXPECT_TRUE(has(0));
        }),
        0);
}
