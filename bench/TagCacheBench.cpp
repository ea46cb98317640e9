// Attribute caches filled and read; the backup of 100,000 tagged files beside a bare pass.
#include "IndexBenchKeeper.h"
#include "IndexCorpus.h"
#include "IndexText.h"
#include "KPTagName.h"
#include "Karvex.h"
#include "KarvexBackup.h"
#include "KarvexRestore.h"
#include "MDQuery.h"
#include "MurnBench.h"
#include "XPAttributeCache.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <fcntl.h>
#include <random>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

static constexpr quint32 cachedCount = 50'000;
static constexpr int backedUpCount = 100'000;

namespace {

// A catalog in which 50,000 of 100,000 files have tags; below another folder each time, as what
// was in the pool once costs less.
class TaggedSource : public IndexSource
{
public:
    TaggedSource()
    {
        static int number = 0;
        const QByteArray root = "/home/" + QByteArray::number(++number);
        quint32 tagged = 0;
        quint32 seen = 0;
        IndexCorpus(2 * cachedCount, IndexCorpus::Bodies::None).batches([&](IndexBatch batch) {
            for (IndexChange &change : batch) {
                IndexRecord &record = change.record;
                if (record.parent == 0)
                    record.name = root;
                record.attributes.remove(Karvex::userTagsKey);
                if (record.info.isDirectory() || ++seen % 2 != 0 || tagged == cachedCount)
                    continue;
                ++tagged;
                record.attributes.insert(
                    Karvex::userTagsKey,
                    QStringList{QStringLiteral("tag %1").arg(seen % 300), QStringLiteral("all")});
            }
            m_catalog.apply(batch);
        });
    }
    const IndexCatalog &catalog() const override { return m_catalog; }
    const IndexText *text() const override { return nullptr; }
    int addListener(Listener) override { return 1; } // nothing ever changes
    void removeListener(int) override {}
    void reimport(const QByteArray &) override {}
    bool waitUntilLoaded(const std::function<bool()> &) const override { return true; }

private:
    IndexCatalog m_catalog;
};

std::unique_ptr<XPAttributeCache> filledCache(IndexSource &source)
{
    auto cache = std::make_unique<XPAttributeCache>(
        source, Karvex::userTagsKey, 2 * cachedCount, QStringList(), [](const PropertyValue &raw) {
            return XPAttributeOf<KPTagName::Tags>::make(
                KPTagName::tagNamesForUserEnteredTags(raw.strings(), true));
        });
    while (!cache->isUpToDate())
        std::this_thread::yield();
    return cache;
}

} // namespace

static void fillAttributeCache(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        TaggedSource source;
        state.ResumeTiming();
        auto cache = filledCache(source);
        state.PauseTiming();
        if (cache->values().size() < cachedCount - 100)
            state.SkipWithError("values are missing");
        cache.reset();
        state.ResumeTiming();
    }
    XPBench::timeAtMost(state, 3);
}
BENCHMARK(fillAttributeCache)->Unit(benchmark::kMillisecond)->UseRealTime();

static void bareQuery(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        TaggedSource source;
        state.ResumeTiming();
        const QString text = QStringLiteral("(%1 == *)").arg(Karvex::userTagsKey);
        const auto query = MDQuery::create(source, text, {Karvex::userTagsKey});
        (*query)->execute(MDQuery::Synchronous);
        for (qsizetype i = 0; i < (*query)->resultCount(); ++i) {
            const QString path = (*query)->valueAt(i, QStringLiteral("kMDItemPath")).string();
            const QStringList tags = (*query)->valueAt(i, Karvex::userTagsKey).strings();
            benchmark::DoNotOptimize(path.constData());
            benchmark::DoNotOptimize(tags.constData());
        }
    }
}
BENCHMARK(bareQuery)
    ->Name("fillAttributeCache/baseline")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// By pooled path, in random order; with two threads each reads all.
static void readAttributes(benchmark::State &state)
{
    static TaggedSource source;
    static const auto cache = filledCache(source);
    std::vector<KPPooledString> paths;
    for (const auto &[path, value] : cache->values())
        paths.push_back(path);
    std::shuffle(paths.begin(), paths.end(), std::mt19937(1)); // NOLINT(cert-msc51-cpp)
    for (auto _ : state) {
        for (const KPPooledString path : paths)
            benchmark::DoNotOptimize(cache->attributeAtPath(path).data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(paths.size()));
    XPBench::itemsPerSecondAtLeast(state, 10e6);
}
BENCHMARK(readAttributes)->UseRealTime();
BENCHMARK(readAttributes)->Name("readAttributesOnTwoThreads")->Threads(2)->UseRealTime();

// --- Backup

namespace {

// Tagged and rated files on the disk at hand, in the index; made once.
class TaggedFiles
{
public:
    TaggedFiles() : m_folder(QDir::currentPath() + QStringLiteral("/backup-bench-XXXXXX"))
    {
        for (int i = 0; i < backedUpCount; ++i) {
            const QString folder = m_folder.filePath(QString::number(i / 200));
            if (i % 200 == 0)
                QDir().mkpath(folder);
            const QString path = folder + QStringLiteral("/a document, %1.pdf").arg(i);
            const QByteArray bytes = XPPath::encode(path);
            ::close(::open(bytes.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
            if (Karvex::setUserTags(
                    QStringList{QStringLiteral("tag %1").arg(i % 500), QStringLiteral("all")},
                    path) ||
                Karvex::setRating(1 + i % 5, path))
                std::abort(); // the figures would be of failures
            encoded.push_back(bytes);
        }
        m_index = XPBench::keep(m_store.store(), {m_folder.path()});
        if (m_index->sync(false))
            std::abort();
    }
    IndexSource &index() const { return m_index->source(); }
    QString backup() const { return m_store.store() + QStringLiteral(".backup"); }

    std::vector<QByteArray> encoded;

private:
    QTemporaryDir m_folder;
    XPBench::StoreFolder m_store;
    std::unique_ptr<MetadataIndex> m_index;
};

const TaggedFiles &taggedFiles()
{
    static const TaggedFiles files;
    return files;
}

} // namespace

static void backUp(benchmark::State &state)
{
    const TaggedFiles &files = taggedFiles();
    for (auto _ : state) {
        state.PauseTiming();
        QFile::remove(files.backup());
        state.ResumeTiming();
        const auto result = KarvexBackup::writeSingleFile(files.index(), {files.backup()});
        if (!result.worked || result.itemCount != backedUpCount)
            state.SkipWithError("the backup failed");
    }
    XPBench::timeAtMost(state, 2);
}
BENCHMARK(backUp)->Unit(benchmark::kMillisecond)->UseRealTime();

// Reads the four attributes of each file, and writes a file of the backup's bytes.
static void backUpBare(benchmark::State &state)
{
    const TaggedFiles &files = taggedFiles();
    (void)KarvexBackup::writeSingleFile(files.index(), {files.backup()});
    const QByteArray bytes = KarvexBackupFile::readBytes(files.backup()).valueOr({});
    const QByteArray copy = XPPath::encode(files.backup() + QStringLiteral(".bare"));
    QByteArrayList names;
    for (const QString &key : {Karvex::userTagsKey, Karvex::userTagTimeKey, Karvex::starRatingKey,
                               Karvex::ratingTimeKey})
        names.append(XPExtendedAttributes::nameOnDisk(Karvex::spotlightKey(key)));
    for (auto _ : state) {
        for (const QByteArray &path : files.encoded) {
            for (const QByteArray &name : names) {
                char value[Karvex::maximumValueSize];
                if (::lgetxattr(path.constData(), name.constData(), value, sizeof value) <= 0)
                    state.SkipWithError("a read failed");
            }
        }
        const int file = ::open(copy.constData(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600);
        if (::write(file, bytes.constData(), static_cast<size_t>(bytes.size())) != bytes.size() ||
            ::fsync(file) != 0 || ::close(file) != 0)
            state.SkipWithError("a write failed");
    }
    ::unlink(copy.constData());
}
BENCHMARK(backUpBare)->Name("backUp/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();

// Nothing is to be restored: every file is looked at.
static void restoreNothing(benchmark::State &state)
{
    const TaggedFiles &files = taggedFiles();
    (void)KarvexBackup::writeSingleFile(files.index(), {files.backup()});
    for (auto _ : state) {
        const auto result = KarvexRestore(files.index(), {}).readSingleFile(files.backup());
        if (result.records != backedUpCount || !result.changes.isEmpty())
            state.SkipWithError("the restore changed something");
    }
}
BENCHMARK(restoreNothing)->Unit(benchmark::kMillisecond)->UseRealTime();
