#include "IndexContentQueue.h"
#include "MDQueryParser.h"
#include "TestHome.h"
#include "TestTextImporter.h"
#include "XPPath.h"

#include <QElapsedTimer>
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>

using Items = std::vector<IndexItem>;

using namespace std::chrono_literals;

static void setTime(const QString &path, std::chrono::system_clock::time_point time)
{
    const auto since = time.time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(since);
    const timespec times[] = {{0, UTIME_OMIT}, {seconds.count(), (since - seconds) / 1ns}};
    ::utimensat(AT_FDCWD, XPPath::encode(path).constData(), times, 0);
}

namespace {

// What the keeper is to a queue: files by item, and what was imported of them.
class Files
{
public:
    void write(IndexItem item, const QByteArray &bytes, const char *type = "public.plain-text")
    {
        const QString path = m_folder.file(QString::number(item), bytes);
        const XPLocker lock(m_mutex);
        setTime(path, std::chrono::system_clock::now() - 1h); // long enough ago to be read at once
        m_files[item].path = XPPath::encode(path);
        m_files[item].type = QString::fromLatin1(type);
        m_files[item].imported = false;
        readFacts(m_files[item]);
    }
    // As the catalog, which keeps what was imported of just this state.
    void look(IndexItem item)
    {
        const XPLocker lock(m_mutex);
        IndexContentQueue::File &file = m_files[item];
        readFacts(file);
        file.imported = m_imported[item] == std::pair(file.modified, file.size);
    }
    void remove(IndexItem item)
    {
        const XPLocker lock(m_mutex);
        m_files.erase(item);
    }
    void movedTo(IndexItem item, const std::string &path)
    {
        const XPLocker lock(m_mutex);
        m_files[item].path = QByteArray::fromStdString(path);
    }
    QString storePath() const { return m_folder.path(QStringLiteral("text")); }

    IndexContentQueue::Callbacks callbacks()
    {
        IndexContentQueue::Callbacks callbacks;
        callbacks.lookUp = [this](IndexItem item) -> std::optional<IndexContentQueue::File> {
            const XPLocker lock(m_mutex);
            const auto file = m_files.find(item);
            return file == m_files.end() ? std::nullopt : std::optional(file->second);
        };
        callbacks.done = [this](const IndexBatch &batch) {
            const XPLocker lock(m_mutex);
            for (const IndexChange &change : batch) {
                m_order.push_back(change.record.item);
                m_titles[change.record.item] =
                    change.record.imported.value(QStringLiteral("kMDItemTitle"));
                m_imported[change.record.item] = {change.record.importedModified,
                                                  change.record.importedSize};
                auto file = m_files.find(change.record.item);
                if (file != m_files.end())
                    file->second.imported = m_imported[change.record.item] ==
                                            std::pair(file->second.modified, file->second.size);
            }
        };
        callbacks.idle = [] {};
        callbacks.problem = [this](const std::optional<XPError> &error) {
            const XPLocker lock(m_mutex);
            m_problems.push_back(error);
        };
        callbacks.startedOver = [this] {
            const XPLocker lock(m_mutex);
            m_startedOver = true;
        };
        return callbacks;
    }
    Items order()
    {
        const XPLocker lock(m_mutex);
        return std::exchange(m_order, {});
    }
    QString title(IndexItem item)
    {
        const XPLocker lock(m_mutex);
        return m_titles[item].isString() ? m_titles[item].string() : QString();
    }
    std::vector<std::optional<XPError>> problems()
    {
        const XPLocker lock(m_mutex);
        return m_problems;
    }
    bool startedOver()
    {
        const XPLocker lock(m_mutex);
        return m_startedOver;
    }

private:
    static void readFacts(IndexContentQueue::File &file)
    {
        struct stat facts = {};
        ::stat(file.path.constData(), &facts);
        file.modified = qint64{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec;
        file.size = facts.st_size;
        file.inode = facts.st_ino;
    }

    TestFolder m_folder;
    XPMutex m_mutex;
    std::map<IndexItem, std::pair<qint64, qint64>> m_imported XP_GUARDED_BY(m_mutex);
    std::map<IndexItem, IndexContentQueue::File> m_files XP_GUARDED_BY(m_mutex);
    Items m_order XP_GUARDED_BY(m_mutex);
    std::map<IndexItem, PropertyValue> m_titles XP_GUARDED_BY(m_mutex);
    std::vector<std::optional<XPError>> m_problems XP_GUARDED_BY(m_mutex);
    bool m_startedOver XP_GUARDED_BY(m_mutex) = false;
};

// Writes the file anew when it has read it the first time, within the same tick of the clock.
class OvertakenImporter : public TestTextImporter
{
public:
    XPResult<Content> import(const QByteArray &path, const QString &type,
                             const std::stop_token &stop) override
    {
        const QString name = XPPath::decode(path);
        const auto now = std::chrono::system_clock::now();
        if (m_reads++ == 0)
            setTime(name, now);
        auto content = TestTextImporter::import(path, type, stop);
        if (m_reads == 1) {
            std::ofstream(path.toStdString()) << "later";
            setTime(name, now);
        }
        return content;
    }

private:
    int m_reads = 0;
};

// Stands at its gate until the test opens it, so that an order can be prepared.
class GatedImporter : public TestTextImporter
{
public:
    explicit GatedImporter(std::counting_semaphore<> &gate) : m_gate(gate) {}
    XPResult<Content> import(const QByteArray &path, const QString &type,
                             const std::stop_token &stop) override
    {
        m_gate.acquire();
        return TestTextImporter::import(path, type, stop);
    }

private:
    std::counting_semaphore<> &m_gate;
};

} // namespace

static Items found(const IndexText &store, const char *word)
{
    const auto predicate =
        MDQueryParser::parse(QString::fromUtf8("kMDItemTextContent == " + QByteArray(word)));
    Items items = store.itemsMatching((*predicate)->value, 0, nullptr);
    std::sort(items.begin(), items.end());
    return items;
}

template <typename Condition>
static bool becomes(Condition condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(20'000))
            return false;
        std::this_thread::yield();
    }
    return true;
}

static bool drained(const IndexContentQueue &queue)
{
    return becomes([&] { return queue.waiting() == 0; });
}

TEST(IndexContentQueue, ImportsChangesFirstThenTheNewest)
{
    Files files;
    const auto store = *IndexTextStore::open(files.storePath(), true);
    std::counting_semaphore<> gate(0);
    IndexContentQueue::Importers importers;
    importers.push_back(std::make_unique<GatedImporter>(gate));
    IndexContentQueue queue(*store, files.callbacks(), std::move(importers));
    std::vector<IndexContentQueue::Waiting> backlog;
    for (IndexItem item = 1; item <= 8; ++item) {
        files.write(item, "word" + QByteArray::number(item));
        backlog.push_back({item * 100, item});
    }
    files.write(20, "changed");
    queue.addBacklog({{1000, 8}, {1000, 8}}); // taken at once, and asked for twice
    ASSERT_TRUE(becomes([&] { return queue.waiting() == 1; }));
    queue.addBacklog(std::move(backlog));
    queue.add(20);
    gate.release(100);
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(files.order(), (Items{8, 20, 7, 6, 5, 4, 3, 2, 1}));
    EXPECT_EQ(found(*store, "\"w*\""), (Items{1, 2, 3, 4, 5, 6, 7, 8}));
    // What is imported already is not read again.
    queue.addBacklog({{1, 1}, {2, 2}});
    queue.add(20);
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(files.order(), Items{});
}

TEST(IndexContentQueue, FollowsFilesThatChangeAndGo)
{
    Files files;
    const auto store = *IndexTextStore::open(files.storePath(), true);
    IndexContentQueue queue(*store, files.callbacks());
    files.write(1, "first text");
    files.write(2, "# A Title \nbody", "net.daringfireball.markdown");
    files.write(3, "picture", "public.jpeg");
    for (const IndexItem item : {1U, 2U, 3U})
        queue.add(item);
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(found(*store, "*"), (Items{1, 2}));
    EXPECT_EQ(files.title(2), QStringLiteral("A Title"));
    // Saved again and again: the last state counts.
    for (int i = 0; i < 5; ++i) {
        files.write(1, "saved " + QByteArray::number(i));
        queue.add(1);
    }
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(found(*store, "first"), Items{});
    EXPECT_EQ(found(*store, "\"saved 4\""), Items{1});
    // Of another type now, and gone.
    files.write(1, "saved 4", "public.data");
    files.remove(2);
    queue.forget(1);
    queue.forget(2);
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(found(*store, "*"), Items{});
    // Deleted before it was read: nothing to tell.
    (void)files.order();
    files.write(4, "short-lived");
    std::filesystem::remove(std::filesystem::path(files.storePath().toStdString()).parent_path() /
                            "4");
    queue.add(4);
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(files.order(), Items{});
}

// Of a folder that moves, its files get no word of their own.
TEST(IndexContentQueue, FindsFilesAgainWhoseFolderMovedMeanwhile)
{
    Files files;
    const auto store = *IndexTextStore::open(files.storePath(), true);
    IndexContentQueue queue(*store, files.callbacks());
    files.write(1, "text below");
    files.write(2, "gone for good");
    const std::filesystem::path folder =
        std::filesystem::path(files.storePath().toStdString()).parent_path();
    std::filesystem::rename(folder / "1", folder / "elsewhere");
    std::filesystem::remove(folder / "2");
    queue.add(1);
    queue.add(2);
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(found(*store, "*"), Items{});
    files.movedTo(1, (folder / "elsewhere").string());
    files.remove(2);
    queue.forget(2);
    queue.folderMoved();
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(found(*store, "*"), Items{1});
}

// The same while another folder takes its place, with a file of the same name, time and size.
TEST(IndexContentQueue, DoesNotTakeAnotherFileAtThePathForItsOwn)
{
    Files files;
    const auto store = *IndexTextStore::open(files.storePath(), true);
    IndexContentQueue queue(*store, files.callbacks());
    files.write(1, "mine");
    const std::filesystem::path folder =
        std::filesystem::path(files.storePath().toStdString()).parent_path();
    std::filesystem::rename(folder / "1", folder / "elsewhere");
    std::ofstream(folder / "1") << "your";
    std::filesystem::last_write_time(folder / "1",
                                     std::filesystem::last_write_time(folder / "elsewhere"));
    queue.add(1);
    ASSERT_TRUE(drained(queue));
    files.movedTo(1, (folder / "elsewhere").string());
    queue.folderMoved();
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(found(*store, "mine"), Items{1});
    EXPECT_EQ(found(*store, "your"), Items{});
}

TEST(IndexContentQueue, ReadsAgainWhatMayHaveChangedWithoutASign)
{
    Files files;
    const auto store = *IndexTextStore::open(files.storePath(), true);
    IndexContentQueue::Importers importers;
    importers.push_back(std::make_unique<OvertakenImporter>());
    IndexContentQueue queue(*store, files.callbacks(), std::move(importers));
    files.write(1, "early");
    queue.add(1);
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(found(*store, "early"), Items{1});
    // The catalog hears of the first change only now, and the second does not show.
    files.look(1);
    queue.add(1);
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(found(*store, "early"), Items{});
    EXPECT_EQ(found(*store, "later"), Items{1});
}

TEST(IndexContentQueue, StopsWithinAFileAndGoesOnAtTheNextStart)
{
    Files files;
    const auto store = *IndexTextStore::open(files.storePath(), true);
    std::vector<IndexContentQueue::Waiting> backlog;
    for (IndexItem item = 1; item <= 300; ++item) {
        files.write(item, "text");
        backlog.push_back({item, item});
    }
    {
        std::counting_semaphore<> gate(10);
        IndexContentQueue::Importers importers;
        importers.push_back(std::make_unique<GatedImporter>(gate));
        IndexContentQueue queue(*store, files.callbacks(), std::move(importers));
        queue.addBacklog(std::vector(backlog));
        std::thread opener([&] { gate.release(10); });
        opener.join();
        ASSERT_TRUE(becomes([&] { return queue.waiting() > 0; }));
        std::thread late([&] { gate.release(1); });
        late.join();
        gate.release(300);
    }
    // What was stored is what was told, and the rest is done by another queue.
    const size_t before = files.order().size();
    EXPECT_EQ(found(*store, "text").size(), before);
    IndexContentQueue queue(*store, files.callbacks());
    queue.addBacklog(std::move(backlog));
    ASSERT_TRUE(drained(queue));
    EXPECT_EQ(files.order().size() + before, 300U);
    EXPECT_EQ(found(*store, "text").size(), 300U);
}

TEST(IndexContentQueue, RenewsAMostlyStaleStore)
{
    Files files;
    const auto store = *IndexTextStore::open(files.storePath(), true);
    const QByteArray large = "waste" + QByteArray(3 << 20, ' ');
    for (int i = 0; i < 9; ++i)
        ASSERT_FALSE(store->put({{50, large, i, large.size()}}));
    IndexContentQueue queue(*store, files.callbacks());
    files.write(50, "small now");
    files.write(51, "another");
    queue.addBacklog({});
    queue.add(50);
    queue.add(51);
    // Nothing waits, nothing is stale, and the old table is gone.
    ASSERT_TRUE(becomes([&] {
        return queue.waiting() == 0 && !store->isRenewing() && !store->isMostlyStale() &&
               found(*store, "\"small now\"") == Items{50};
    }));
    EXPECT_EQ(found(*store, "*"), (Items{50, 51}));
    EXPECT_EQ(found(*store, "waste"), Items{});
}

TEST(IndexContentQueue, TriesAgainWhatCouldNotBeStored)
{
    Files files;
    const auto store = *IndexTextStore::open(files.storePath(), true);
    IndexContentQueue queue(*store, files.callbacks());
    files.write(1, "needle " + QByteArray(200'000, 'x'));
    // Files may not grow: as a full disk, for this process.
    rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto signalBefore = ::signal(SIGXFSZ, SIG_IGN);
    rlimit none = before;
    none.rlim_cur = 1000;
    ::setrlimit(RLIMIT_FSIZE, &none);
    queue.add(1);
    const bool failed = becomes([&] { return queue.postponed() == 1; });
    EXPECT_EQ(queue.waiting(), 0);
    ::setrlimit(RLIMIT_FSIZE, &before);
    (void)::signal(SIGXFSZ, signalBefore);
    ASSERT_TRUE(failed);
    EXPECT_EQ(files.problems().size(), 1);
    EXPECT_EQ(files.order(), Items{});
    queue.retry();
    ASSERT_TRUE(becomes([&] { return queue.waiting() == 0 && queue.postponed() == 0; }));
    EXPECT_EQ(found(*store, "needle"), Items{1});
    EXPECT_FALSE(files.problems().back());
}

// Bytes on the disk that only a question meets, be it another process's.
TEST(IndexContentQueue, BeginsAnewWhenAQuestionMeetsDamage)
{
    for (const bool ours : {true, false}) {
        SCOPED_TRACE(ours);
        Files files;
        files.write(1, "one");
        ASSERT_FALSE((*IndexTextStore::open(files.storePath(), true))->put({{1, "one", 1, 3}}));
        sqlite3 *db = nullptr;
        ASSERT_EQ(sqlite3_open(files.storePath().toUtf8().constData(), &db), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(db, "UPDATE words1_data SET block = zeroblob(3) WHERE id > 10",
                               nullptr, nullptr, nullptr),
                  SQLITE_OK);
        sqlite3_close(db);
        const auto store = *IndexTextStore::open(files.storePath(), true);
        IndexContentQueue queue(*store, files.callbacks());
        const auto follower = *IndexTextStore::open(files.storePath(), false);
        follower->setDamaged([&](quint64 inode) { queue.storeIsDamaged(inode); });
        EXPECT_EQ(found(ours ? *store : *follower, "one"), Items{});
        ASSERT_TRUE(becomes([&] { return files.startedOver(); }));
        queue.addBacklog({{1, 1}});
        ASSERT_TRUE(drained(queue));
        EXPECT_EQ(found(*store, "one"), Items{1});
        EXPECT_EQ(found(*follower, "one"), Items{1});
        // Told late of the file that was set aside, or of one that never was.
        queue.storeIsDamaged(1);
        ASSERT_TRUE(drained(queue));
        EXPECT_EQ(found(*store, "one"), Items{1});
    }
}
