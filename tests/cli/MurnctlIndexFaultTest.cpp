// The index from the shell, on machines and trees as they should not be.
#include "Murnctl.h"
#include "TestHome.h"
#include "TestSystem.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QScopeGuard>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

// A user's home with a folder in it. Root may do anything, so where rights count
// murnctl runs as a user without any to whom all of it belongs.
class MurnctlIndexFault : public testing::Test
{
protected:
    MurnctlIndexFault()
    {
        const auto use = [](const char *name, const QString &path) {
            qputenv(name, XPPath::encode(path));
            std::filesystem::create_directories(XPPath::encode(path).toStdString());
        };
        use("HOME", place.path(QStringLiteral("home")));
        use("XDG_CONFIG_HOME", place.path(QStringLiteral("home/.config")));
        use("XDG_DATA_HOME", place.path(QStringLiteral("home/.data")));
        useCache(place.path(QStringLiteral("home/.cache")));
        std::filesystem::create_directory(XPPath::encode(tree).toStdString());
        // What is always indexed is there too, so that nothing else is degraded.
        const QString support = XPFolders::ourApplicationSupport();
        std::filesystem::create_directories(
            XPPath::encode(support + QStringLiteral("/Pending Documents")).toStdString());
    }

    void useCache(const QString &cache)
    {
        qputenv("XDG_CACHE_HOME", XPPath::encode(cache));
        std::filesystem::create_directories(XPPath::encode(cache).toStdString());
    }
    MurnctlResult run(const QByteArrayList &words) const { return murnctl(words, tree); }
    QByteArray count(const char *query) const
    {
        return run({"query", "--count", "--in", ".", query}).out;
    }
    QByteArray file(const QString &name) const
    {
        return XPPath::encode(place.file(QStringLiteral("home/tree/") + name));
    }
    void makeFiles(int number) const
    {
        for (int i = 0; i < number; ++i)
            file(QStringLiteral("folder %1/a file with a name %2.pdf").arg(i % 40).arg(i));
    }
    // 0 when `body` says so, run with a plain user's rights.
    int asUser(const std::function<int()> &body) const
    {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(
                 XPPath::encode(place.path()).toStdString()))
            EXPECT_EQ(::lchown(entry.path().c_str(), 65534, 65534), 0);
        return asPlainUser(place.path(), body);
    }

    const TestFolder place;
    const QString tree = place.path(QStringLiteral("home/tree")); // the home is indexed
};

// What is degraded, as the status tells it.
static QString degraded(const MurnctlResult &status)
{
    QStringList texts;
    for (const auto text : status.json().object()[QStringLiteral("degraded")].toArray())
        texts.append(text.toString());
    return texts.join(u'\n');
}

TEST_F(MurnctlIndexFault, AFullDiskCostsNoAnswerAndNothingWhenThereIsRoomAgain)
{
    const auto volume = TestVolume::tmpfs("192k");
    if (!volume)
        GTEST_SKIP() << "no file system can be mounted here";
    makeFiles(2500);
    useCache(volume->path());
    const MurnctlResult full = run({"index", "sync"});
    EXPECT_EQ(full.status, 1);
    EXPECT_NE(full.err, "");
    EXPECT_EQ(count("kMDItemFSName == \"*.pdf\""), "2500\n");
    EXPECT_EQ(::mount("none", XPPath::encode(volume->path()).constData(), nullptr, MS_REMOUNT,
                      "size=64m"),
              0);
    const MurnctlResult roomy = run({"index", "sync"});
    EXPECT_EQ(roomy.status, 0) << roomy.err.constData();
    EXPECT_EQ(run({"index", "verify"}).status, 0);
    EXPECT_EQ(count("kMDItemFSName == \"*.pdf\""), "2500\n");
}

TEST_F(MurnctlIndexFault, AVolumeInAnIndexedFolderIsAFolderOfItsOwn)
{
    makeFiles(10);
    const QString point = tree + QStringLiteral("/volume");
    QDir().mkpath(point);
    const QByteArray at = XPPath::encode(point);
    if (::mount("none", at.constData(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "no file system can be mounted here";
    const auto unmounted = qScopeGuard([&] { ::umount2(at.constData(), MNT_DETACH); });
    QFile(point + QStringLiteral("/on it.pdf")).open(QIODevice::WriteOnly);
    EXPECT_EQ(count("kMDItemFSName == \"on it.pdf\""), "0\n");
    EXPECT_TRUE(run({"find", "--in", at}).err.contains("is not indexed"));
    EXPECT_EQ(run({"index", "add", at}).status, 0);
    EXPECT_EQ(count("kMDItemFSName == \"on it.pdf\""), "1\n");
    EXPECT_EQ(run({"index", "verify"}).status, 0);
    ASSERT_EQ(::umount(at.constData()), 0);
    EXPECT_TRUE(degraded(run({"index", "status", "--json"})).contains(u"not mounted"));
    EXPECT_EQ(count("kMDItemFSName == \"on it.pdf\""), "1\n");
    EXPECT_EQ(run({"index", "remove", at}).status, 0);
    EXPECT_EQ(count("kMDItemFSName == \"on it.pdf\""), "0\n");
    EXPECT_EQ(run({"index", "verify"}).status, 0);
}

TEST_F(MurnctlIndexFault, AFolderWithoutPermissionIsNamedAndReadWhenItMayBe)
{
    makeFiles(40);
    const QByteArray closed = XPPath::encode(tree) + "/folder 7";
    const int answer = asUser([&] {
        for (const bool open : {false, true, false, true}) {
            ::chmod(closed.constData(), open ? 0755 : 0);
            const MurnctlResult status = run({"index", "status", "--json"});
            if (degraded(status).contains(QStringLiteral("cannot be read")) == open)
                return 1;
            if (open && count("kMDItemFSName == \"*.pdf\"") != "40\n")
                return 2;
        }
        return 0;
    });
    EXPECT_EQ(answer, 0) << "1: status is wrong, 2: its file is not found";
}

TEST_F(MurnctlIndexFault, ACacheFolderThatCannotBeWrittenCostsOnlyTheSaving)
{
    makeFiles(50);
    const QByteArray cache = XPPath::encode(place.path(QStringLiteral("home/.cache")));
    const int answer = asUser([&] {
        // First there is nothing in it, then a store, then one that may not be read.
        for (const ::mode_t mode : {0555U, 0755U, 0U}) {
            ::chmod(cache.constData(), mode);
            const MurnctlResult status = run({"index", "status", "--json"});
            if (degraded(status).contains(QStringLiteral("The index is not saved")) ==
                (mode == 0755U))
                return 1;
            if (count("kMDItemFSName == \"*.pdf\"") != "50\n")
                return 2;
        }
        return 0;
    });
    EXPECT_EQ(answer, 0) << "1: status does not say so, 2: a query does not answer";
    ::chmod(cache.constData(), 0755);
}

TEST_F(MurnctlIndexFault, OddTreesAreIndexedWhole)
{
    const int top = ::open(XPPath::encode(tree).constData(), O_RDONLY | O_DIRECTORY);
    // Far deeper than a path may be long; each level reached from the one above.
    const QByteArray step(200, 'd');
    int level = ::dup(top);
    for (int i = 0; i < 30; ++i) {
        ASSERT_EQ(::mkdirat(level, step.constData(), 0755), 0);
        const int next = ::openat(level, step.constData(), O_RDONLY | O_DIRECTORY);
        ::close(level);
        level = next;
    }
    ::close(::openat(level, "deepest.pdf", O_CREAT | O_WRONLY, 0644));
    ::close(level);
    ASSERT_EQ(::symlinkat(".", top, "loop"), 0);
    ASSERT_EQ(::symlinkat("loop2", top, "loop2"), 0);
    ASSERT_EQ(::symlinkat("missing", top, "dangling"), 0);
    ASSERT_EQ(::mkfifoat(top, "pipe.pdf", 0644), 0);
    ASSERT_EQ(::mkdirat(top, "many", 0755), 0);
    const int many = ::openat(top, "many", O_RDONLY | O_DIRECTORY);
    // Names for two files: a hundred thousand files would take a minute to make.
    for (const char *one : {"a", "b"}) {
        ::close(::openat(many, one, O_CREAT | O_WRONLY, 0644));
        for (int i = 0; i < 50'000; ++i)
            ASSERT_EQ(::linkat(many, one, many, (one + QByteArray::number(i)).constData(), 0), 0);
    }
    ::close(many);
    for (const char *name : {"\xff\xfe.pdf", "new\nline.pdf", "\xc3.pdf", "\xed\xa0\x80.pdf"})
        ::close(::openat(top, name, O_CREAT | O_WRONLY, 0644));
    ::close(top);
    const MurnctlResult verify = run({"index", "verify"});
    EXPECT_EQ(verify.status, 0) << verify.out.left(500).constData();
    EXPECT_EQ(count("kMDItemFSName == \"*.pdf\" || kMDItemContentType == com.apple.alias-file"),
              "9\n");
}

TEST_F(MurnctlIndexFault, AStoreInsideAnIndexedFolderIsNoNews)
{
    useCache(tree + QStringLiteral("/cache"));
    makeFiles(10);
    EXPECT_EQ(run({"index", "sync"}).status, 0);
    EXPECT_EQ(count("kMDItemFSName == \"index.sqlite*\""), "0\n");
    EXPECT_EQ(run({"index", "verify"}).status, 0);
}
