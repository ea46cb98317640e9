#include "KPDocCache.h"

#include "TestHome.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace {

XPFileInfo fileOf(qint64 size, qint64 modified = 1'500'000'000'000'000'001)
{
    XPFileInfo info;
    info.mode = S_IFREG | 0644;
    info.size = size;
    info.modified = modified;
    info.birth = 1'400'000'000'500'000'000;
    return info;
}

KPDoc *made(const QString &path, qint64 size = 1)
{
    const XPFileInfo info = fileOf(size);
    return KPDocCache::docAtPath(path, &info);
}

// A path that no other test uses.
QString newPath(const QString &name = QStringLiteral("a.pdf"))
{
    static std::atomic<int> number = 0;
    return QStringLiteral("/nowhere/%1/%2").arg(++number).arg(name);
}

} // namespace

TEST(DocCache, GivesOneRecordForAPath)
{
    const QString path = newPath();
    EXPECT_EQ(KPDocCache::docAtPathIfExists(path), nullptr);
    KPDoc *doc = made(path);
    EXPECT_EQ(KPDocCache::docAtPath(path), doc);
    EXPECT_EQ(KPDocCache::docAtPathIfExists(QString(path)), doc);
    EXPECT_EQ(doc->filePath(), path);
    EXPECT_EQ(doc->parentPath(), XPPath::folder(path));
    EXPECT_EQ(doc->fsName(), u"a.pdf");
    EXPECT_EQ(doc->fileSystemRepresentation(), XPPath::encode(path));
    EXPECT_EQ(KPDocCache::docAtPath(QString()), nullptr);
    EXPECT_EQ(KPDocCache::docAtPath(QStringLiteral("gone")), nullptr);
    EXPECT_EQ(made(QStringLiteral("/top.pdf"))->parentPath(), u"/");
}

TEST(DocCache, TakesWhatLstatSays)
{
    const QString path = newPath();
    KPDoc *doc = made(path, 5);
    EXPECT_EQ(doc->unixFileSize(), 5);
    EXPECT_EQ(doc->unixFileModificationDate().toMSecsSinceEpoch(), 1'500'000'000'000);
    EXPECT_EQ(doc->creationTimeSince1970(), 1'400'000'000.5);
    EXPECT_EQ(doc->cacheID(), u"a.pdf15000000005");

    XPFileInfo later = fileOf(6, 1'600'000'000'000'000'000);
    later.birth = 2'000'000'001'000'000'000;
    EXPECT_EQ(KPDocCache::docAtPath(path, &later), doc);
    EXPECT_EQ(doc->cacheID(), u"a.pdf16000000006");
    EXPECT_EQ(doc->creationTimeSince1970(), 0) << "after 2033";
    later.birth = -1;
    doc->updateFromLStat(later);
    EXPECT_EQ(doc->creationTimeSince1970(), 0) << "before 1970";
}

TEST(DocCache, ReadsTheFileItself)
{
    const TestFolder folder;
    const QString path = folder.file(QStringLiteral("caf\u00e9.txt"), "four");
    KPDoc *doc = KPDocCache::docAtPath(path);
    EXPECT_TRUE(doc->isRegularFile());
    EXPECT_EQ(doc->unixFileSize(), 4);
    EXPECT_TRUE(KPDocCache::docAtPath(folder.path())->isDirectory());
    EXPECT_EQ(KPDocCache::docAtPath(folder.path(QStringLiteral("none")))->unixFileMode(), 0u);
}

TEST(DocCache, ComparesPathAndSize)
{
    KPDoc *doc = made(newPath(), 3);
    KPDoc *other = made(newPath(), 3);
    EXPECT_TRUE(doc->isEqual(doc));
    EXPECT_FALSE(doc->isEqual(other));
    EXPECT_FALSE(doc->isEqual(nullptr));
}

TEST(DocCache, FollowsARename)
{
    const QString oldPath = newPath(QStringLiteral("old.pdf"));
    const QString path = newPath(QStringLiteral("new.txt"));
    KPDoc *doc = made(oldPath);
    EXPECT_EQ(doc->fileType(), u"com.adobe.pdf");
    EXPECT_EQ(doc->fsDisplayNameLC(), u"old.pdf");
    doc->setCachedDescriptorHash(7);
    static const int group = 1;
    doc->setCachedGroup(&group);
    const XPFileInfo info = fileOf(1);
    doc->setFilePath(path, &info);
    EXPECT_EQ(KPDocCache::docAtPath(path), doc);
    EXPECT_EQ(KPDocCache::docAtPathIfExists(oldPath), nullptr);
    EXPECT_EQ(doc->fsDisplayNameLC(), u"new.txt");
    EXPECT_EQ(doc->fileType(), u"public.plain-text");
    EXPECT_EQ(doc->cachedDescriptorHash(), -1);
    EXPECT_EQ(doc->cachedGroup(), nullptr);
    EXPECT_EQ(doc->fileSystemRepresentation(), XPPath::encode(path));
    EXPECT_NE(made(oldPath), doc) << "a new file under the old name";
    KPDocCache::pathChanged(path, oldPath + u'2');
    EXPECT_EQ(KPDocCache::docAtPathIfExists(QString(oldPath + u'2')), doc);
}

TEST(DocCache, LetsAFileTakeTheNameOfAnother)
{
    const QString path = newPath();
    KPDoc *replaced = made(path, 1);
    KPDoc *doc = made(newPath(), 2);
    const XPFileInfo info = fileOf(2);
    doc->setFilePath(path, &info);
    EXPECT_EQ(KPDocCache::docAtPath(path), doc);
    EXPECT_TRUE(replaced->isGone());
    EXPECT_FALSE(replaced->passesExcludePaths());
    EXPECT_FALSE(replaced->passesMDQueryExcludePaths());
    EXPECT_EQ(replaced->utiTagName(), nullptr);
    EXPECT_EQ(KPDocCache::docAtPathIfExists(KPDoc::gonePath()), nullptr);
}

TEST(DocCache, HearsOfMovedAndVanishedFiles)
{
    xpGuiThread.assertHere();
    KPDocCache::intializeGlobals();
    const auto post = [](const QString &oldPath, const QString &path) {
        XPNotificationCenter::instance().post(
            QStringLiteral("documentPathChanged"), {},
            {{QStringLiteral("oldPath"), oldPath}, {QStringLiteral("newPath"), path}});
    };
    const TestFolder folder;
    const QString path = folder.file(QStringLiteral("a.pdf"));
    KPDoc *doc = KPDocCache::docAtPath(path);
    post(path, {});
    EXPECT_EQ(doc->filePath(), path) << "the file is still there";
    const QString moved = folder.path(QStringLiteral("b.pdf"));
    ASSERT_EQ(std::rename(path.toUtf8().constData(), moved.toUtf8().constData()), 0);
    post(path, moved);
    EXPECT_EQ(doc->filePath(), moved);
    EXPECT_EQ(doc->unixFileSize(), 1);

    int changes = 0;
    const auto observation = XPNotificationCenter::instance().addObserver(
        KPDoc::didChangeNotification, [&](const XPNotification &) { ++changes; });
    XPNotificationCenter::instance().post(QStringLiteral("documentChanging"), moved);
    EXPECT_EQ(changes, 1);
    ASSERT_EQ(std::remove(moved.toUtf8().constData()), 0);
    post(moved, {});
    EXPECT_TRUE(doc->isGone());
}

// Every record is found under its own path and nowhere else, whatever happened at once.
TEST(DocCache, StaysInOrderWhileThreadsAskAndRename)
{
    constexpr int pathCount = 400;
    constexpr int rounds = 4000;
    QList<KPPooledString> paths;
    const QString folder = newPath(QStringLiteral("folder"));
    for (int i = 0; i < pathCount; ++i)
        paths.append(KPPool::pooledString(QString(folder + u'/' + QString::number(i))));
    const auto at = [&](int i) { return paths[i % pathCount]; };
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < rounds; ++i) {
                const int n = i * (7 + 2 * thread);
                const XPFileInfo info = fileOf(n);
                KPDoc *doc = KPDocCache::docAtPath(at(n), &info);
                if (i % 3 == 0)
                    doc->setFilePath(at(n + thread).toString(), &info);
                else if (i % 50 == 1)
                    doc->setFilePath(KPDoc::gonePath().toString(), &info);
                (void)doc->fsDisplayNameLC();
                (void)doc->fileSystemRepresentation();
                (void)doc->cacheID();
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const KPPooledString path : paths) {
        const KPDoc *doc = KPDocCache::docAtPathIfExists(path);
        if (doc == nullptr)
            continue;
        EXPECT_EQ(doc->pooledPath(), path);
        EXPECT_EQ(doc->fileSystemRepresentation(), XPPath::encode(path.toString()));
        EXPECT_EQ(doc->fsDisplayNameLC(), doc->fsName());
    }
}
