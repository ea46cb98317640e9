#include "IndexCatalog.h"
#include "IndexRequests.h"
#include "IndexSetup.h"
#include "IndexTestKept.h"
#include "IndexVerifier.h"
#include "TestChild.h"
#include "TestHome.h"
#include "XPPath.h"

#include <csignal>
#include <semaphore.h>

static IndexItem itemOf(MetadataIndex &index, const QString &path)
{
    const IndexCatalog::Reading reading(index.source().catalog());
    return index.source().catalog().itemAtPath(XPPath::encode(path));
}

static std::unique_ptr<MetadataIndex> openIndex(const QString &store, const QString &root)
{
    IndexSetup setup;
    setup.path = store;
    setup.roots = {root};
    return MetadataIndex::open(setup);
}

struct End
{
    const char *name;
    int signal;
};
class IndexTakeOver : public testing::TestWithParam<End>
{
};

TEST_P(IndexTakeOver, GoesOnWhereTheOtherProcessEnded)
{
    const TestFolder store;
    const TestFolder tree;
    const QString path = store.path(QStringLiteral("index.sqlite"));
    const QString old = tree.file(QStringLiteral("sub/old.txt"));
    const pid_t child = startChild([&] {
        static sem_t end;
        ::sem_init(&end, 0, 0);
        std::signal(SIGTERM, [](int) { ::sem_post(&end); });
        const auto index = openIndex(path, tree.path());
        while (::sem_wait(&end) != 0)
            continue;
    });
    // The other one has to be first.
    ASSERT_TRUE(holdsSoon(
        [&] { return IndexRequests::ask(path, IndexRequests::Kind::Sync, "0").hasValue(); }));
    const auto index = openIndex(path, tree.path());
    ASSERT_FALSE(index->isKeptHere());
    ASSERT_FALSE(index->sync(true));
    const IndexItem number = itemOf(*index, old);
    EXPECT_NE(number, 0U);

    // What happens now is heard of through the other one.
    const QString second = tree.file(QStringLiteral("sub/second.txt"));
    EXPECT_TRUE(holdsSoon([&] { return itemOf(*index, second) != 0; }));
    index->source().reimport(XPPath::encode(second));
    const auto status = index->status();
    ASSERT_TRUE(status);
    EXPECT_EQ(status->roots.size(), 1);

    ::kill(child, GetParam().signal);
    EXPECT_EQ(waitForChild(child), GetParam().signal == SIGKILL ? -SIGKILL : 0);
    const QString third = tree.file(QStringLiteral("other/third.txt"));
    EXPECT_TRUE(holdsSoon([&] { return itemOf(*index, third) != 0; }));
    EXPECT_TRUE(index->isKeptHere());
    EXPECT_EQ(itemOf(*index, old), number);
    ASSERT_FALSE(index->sync(true));
    EXPECT_TRUE(IndexVerifier(index->source().catalog(), IndexRules()).run().empty());
}

INSTANTIATE_TEST_SUITE_P(Ends, IndexTakeOver,
                         testing::Values(End{"Clean", SIGTERM}, End{"Killed", SIGKILL}),
                         [](const auto &row) { return row.param.name; });

TEST(MetadataIndex, TellsOfWhatWasLoadedLate)
{
    const TestFolder store;
    const TestFolder tree;
    const QString file = tree.file(QStringLiteral("file.txt"));
    const QString path = store.path(QStringLiteral("index.sqlite"));
    ASSERT_FALSE(openIndex(path, tree.path())->sync(true));
    std::atomic<bool> told = false;
    const auto index = openIndex(path, tree.path());
    index->source().addListener([&](const std::vector<IndexItem> &) { told = true; });
    ASSERT_TRUE(index->waitUntilLoaded());
    EXPECT_NE(itemOf(*index, file), 0U);
    EXPECT_TRUE(holdsSoon([&] { return told || index->status()->items > 0; }));
}

TEST(MetadataIndex, WorksInMemoryWhereNothingCanBeSaved)
{
    const TestFolder tree;
    const QString file = tree.file(QStringLiteral("file.txt"));
    const auto index = openIndex(QStringLiteral("/proc/no/index.sqlite"), tree.path());
    ASSERT_FALSE(index->sync(true));
    EXPECT_NE(itemOf(*index, file), 0U);
    const QList<IndexProblem> problems = index->status()->problems;
    ASSERT_EQ(problems.size(), 1);
    EXPECT_EQ(problems.front().kind, IndexProblem::Kind::NothingSaved);
}
