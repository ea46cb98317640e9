#include "XPVolumes.h"

#include "TestSystem.h"
#include "XPMountTable.h"

#include <QDeadlineTimer>
#include <gtest/gtest.h>
#include <latch>
#include <thread>

static const char table[] =
    R"(22 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda1 rw
23 22 0:5 / /proc rw - proc proc rw
30 22 0:50 / /mnt/share rw,relatime shared:9 master:2 - nfs4 server:/export rw,addr=10.0.0.1
31 30 0:51 / /mnt/share/fast rw - ext4 /dev/vdb1 rw
32 22 0:52 / /mnt/with\040blank\011and\134 rw - fuse.sshfs me@host:/my\040dir rw
33 22 0:53 / /mnt/disk rw - fuseblk /dev/sdc1 rw
34 22 0:54 / /auto rw - autofs systemd-1 rw
35 34 0:55 / /auto rw - ext4 /dev/vdc1 rw
36 22 0:56 / /dav rw - fuse https://example.org/dav rw
37 22 0:57 / /doc rw - fuse.portal portal rw
38 22 0:58 / /mnt/share-x rw - btrfs /dev/vdd rw
not a line
39 22 0:59 / relative rw - nfs x rw
40 22 0:60 / /short rw -
)";

struct Place
{
    const char *path;
    const char *mountPoint;
    const char *source;
    bool slow;
    bool network;
};

TEST(XPMountTable, TheLongestMountPointHoldsThePath)
{
    const XPMountTable mounts = XPMountTable::parse(table);
    const Place places[] = {
        {"/", "/", "/dev/vda1", false, false},
        {"/home/me/a", "/", "/dev/vda1", false, false},
        {"/mnt", "/", "/dev/vda1", false, false},
        {"/mnt/share", "/mnt/share", "server:/export", true, true},
        {"/mnt/share/a/b", "/mnt/share", "server:/export", true, true},
        {"/mnt/share/faster", "/mnt/share", "server:/export", true, true},
        {"/mnt/share/fast/x", "/mnt/share/fast", "/dev/vdb1", false, false},
        {"/mnt/share.d", "/", "/dev/vda1", false, false}, // '.' and '-' sort before '/'
        {"/mnt/share-x/a", "/mnt/share-x", "/dev/vdd", false, false},
        {"/mnt/with blank\tand\\/x", "/mnt/with blank\tand\\", "me@host:/my dir", true, true},
        {"/mnt/disk/x", "/mnt/disk", "/dev/sdc1", false, false},
        {"/auto/x", "/auto", "/dev/vdc1", false, false},
        {"/dav", "/dav", "https://example.org/dav", true, true},
        {"/doc/1", "/doc", "portal", true, false},
        {"/short", "/", "/dev/vda1", false, false},
    };
    for (const Place &place : places) {
        const XPVolumes::Volume &volume = mounts.volumeOf(QString::fromUtf8(place.path));
        EXPECT_EQ(volume.mountPoint, QString::fromUtf8(place.mountPoint)) << place.path;
        EXPECT_EQ(volume.source, QString::fromUtf8(place.source)) << place.path;
        EXPECT_EQ(volume.slow, place.slow) << place.path;
        EXPECT_EQ(volume.network, place.network) << place.path;
    }
    EXPECT_TRUE(XPMountTable::parse({}).volumeOf(u"/a").mountPoint.isEmpty());
}

// Run in a process of its own, these are the first questions of all.
TEST(XPVolumes, TheFirstQuestionsMayComeFromManyThreads)
{
    std::latch together(8);
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            together.arrive_and_wait();
            EXPECT_FALSE(XPVolumes::volumeOf(QStringLiteral("/")).mountPoint.isEmpty());
        });
    for (std::thread &thread : threads)
        thread.join();
}

TEST(XPVolumes, ANewMountIsNoticed)
{
    XPVolumes::volumeOf(QStringLiteral("/")); // the table is read before the mount
    const auto volume = TestVolume::tmpfs("64k");
    if (!volume)
        GTEST_SKIP() << "no file system can be mounted here";
    const QDeadlineTimer deadline(5000);
    const QString inside = volume->path(QStringLiteral("not/there"));
    while (XPVolumes::volumeOf(inside).mountPoint != volume->path() && !deadline.hasExpired()) {
    }
    EXPECT_EQ(XPVolumes::volumeOf(inside).fileSystem, QStringLiteral("tmpfs"));
    EXPECT_FALSE(XPVolumes::isOnSlowVolume(inside));
}
