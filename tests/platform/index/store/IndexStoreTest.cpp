#include "IndexStore.h"
#include "TestSystem.h"

#include <QDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

IndexBatch batchOf(IndexItem first, int count)
{
    IndexBatch batch;
    for (int i = 0; i < count; ++i) {
        IndexChange change;
        IndexRecord &record = change.record;
        record.item = first + static_cast<IndexItem>(i);
        record.parent = record.item == 1 ? 0 : 1;
        record.name =
            record.item == 1 ? QByteArray("/home/me") : "f" + QByteArray::number(record.item);
        record.info.mode = record.item == 1 ? S_IFDIR | 0755U : S_IFREG | 0644U;
        record.attributes.insert(QStringLiteral("kMDItemFinderComment"),
                                 QString(200, QChar(u'a' + i % 20)));
        batch.push_back(change);
    }
    return batch;
}

} // namespace

// Without room a batch is there or not, never in part, and the store goes on once there is room.
TEST(IndexStore, AFullDiskTearsNothing)
{
    const auto volume = TestVolume::tmpfs("2m");
    if (!volume)
        GTEST_SKIP() << "needs root";
    const QString path = volume->path(QStringLiteral("store/index.sqlite"));
    auto store = IndexStore::open(path, IndexStore::Mode::Write);
    ASSERT_TRUE(store);
    IndexCatalog written;
    IndexItem next = 1;
    for (; next < 100'000; next += 500) {
        const IndexBatch batch = batchOf(next, 500);
        if ((*store)->append(batch))
            break;
        (void)written.apply(batch);
    }
    ASSERT_GT(written.count(), 0);
    ASSERT_LT(next, 100'000U);
    IndexCatalog read;
    auto reader = IndexStore::open(path, IndexStore::Mode::Read);
    ASSERT_TRUE(reader);
    ASSERT_FALSE((*reader)->load(read));
    EXPECT_EQ(read.count(), written.count());
    // A checkpoint that cannot be written leaves the one before, and the journal.
    const auto error = (*store)->checkpoint(written);
    EXPECT_TRUE(error);
    IndexCatalog again;
    auto second = IndexStore::open(path, IndexStore::Mode::Read);
    ASSERT_TRUE(second);
    ASSERT_FALSE((*second)->load(again));
    EXPECT_EQ(again.count(), written.count());
}

TEST(IndexStore, FollowersGetEachBatchOnceOrAreToldToLoadAnew)
{
    const TestFolder folder;
    const QString path = folder.path(QStringLiteral("index.sqlite"));
    auto store = IndexStore::open(path, IndexStore::Mode::Write);
    ASSERT_TRUE(store);
    IndexCatalog catalog;
    const auto add = [&](IndexItem first) {
        const IndexBatch batch = batchOf(first, 10);
        (void)catalog.apply(batch);
        ASSERT_FALSE((*store)->append(batch));
    };
    add(1);
    auto follower = IndexStore::open(path, IndexStore::Mode::Read);
    ASSERT_TRUE(follower);
    IndexCatalog followed;
    ASSERT_FALSE((*follower)->load(followed));
    EXPECT_EQ(followed.count(), 10);
    add(11);
    add(21);
    auto news = (*follower)->readNew();
    ASSERT_TRUE(news);
    ASSERT_EQ(news->size(), 2U);
    EXPECT_EQ((*news)[1], batchOf(21, 10));
    EXPECT_TRUE((*follower)->readNew()->empty());
    // A crawl's batches are not in the journal: what has not seen them must not go on as if it had.
    (void)catalog.apply(batchOf(31, 10));
    ASSERT_FALSE((*store)->checkpoint(catalog, true));
    news = (*follower)->readNew();
    ASSERT_FALSE(news);
    EXPECT_EQ(news.error().kind, XPError::Kind::NotFound);
}
