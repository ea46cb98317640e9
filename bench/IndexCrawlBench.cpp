// The index over files on disk: made, opened, verified; beside bare walks of the same files.
#include "IndexBaselines.h"
#include "IndexBenchKeeper.h"
#include "IndexCorpus.h"
#include "IndexLatency.h"
#include "MDQuery.h"
#include "MurnBench.h"
#include "XPPath.h"

#include <QDirIterator>
#include <QEventLoop>

using IndexBaselines::Calls;
using XPBench::Clock;
using XPBench::keep;
using XPBench::secondsSince;
using XPBench::StoreFolder;

static IndexCorpus::Bodies bodiesFor(qint64 files)
{
    return files < 1'000'000 ? IndexCorpus::Bodies::Prose : IndexCorpus::Bodies::None;
}

// The corpus that the benchmark's argument asks for, its names and facts in the page cache.
static QString corpus(const benchmark::State &state)
{
    const auto files = static_cast<quint32>(state.range(0));
    QString path = IndexCorpus::onDisk(files, bodiesFor(files));
    if (IndexBaselines::walk(XPPath::encode(path), Calls::FactsAndAttributes) < files)
        std::abort();
    return path;
}

static void expectWhole(MetadataIndex &keeper, const benchmark::State &state)
{
    const IndexCatalog::Reading reading(keeper.source().catalog());
    if (keeper.source().catalog().count() < state.range(0))
        std::abort(); // the figure would be of something else
}

static void onFiles(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(100'000)->Arg(1'000'000)->Iterations(1)->UseManualTime()->Unit(
        benchmark::kMillisecond);
}

// --- The first crawl

static void crawl(benchmark::State &state)
{
    const QString root = corpus(state);
    for ([[maybe_unused]] auto _ : state) {
        const StoreFolder folder;
        const auto start = Clock::now();
        const auto keeper = keep(folder.store(), {root});
        keeper->sync(false);
        state.SetIterationTime(secondsSince(start));
        expectWhole(*keeper, state);
    }
    XPBench::speedAtLeast(state, 0.5);
}

static void bareCrawl(benchmark::State &state)
{
    const QByteArray root = XPPath::encode(corpus(state));
    for ([[maybe_unused]] auto _ : state) {
        const auto start = Clock::now();
        IndexBaselines::walk(root, Calls::FactsAndAttributes);
        state.SetIterationTime(secondsSince(start));
    }
}

BENCHMARK(crawl)->Name("indexCrawl")->Apply(onFiles);
BENCHMARK(bareCrawl)->Name("indexCrawl/baseline")->Apply(onFiles);

// From the moment a folder is given until a live query shows something of it.
static void firstRows(benchmark::State &state)
{
    const QString root = corpus(state);
    double seconds = 0;
    for ([[maybe_unused]] auto _ : state) {
        const StoreFolder folder;
        const auto start = Clock::now();
        const auto keeper = keep(folder.store(), {root});
        const auto query =
            MDQuery::create(keeper->source(), QStringLiteral("kMDItemFSName == \"*.pdf\"c"));
        bool shown = false;
        const auto look = [&] { shown = shown || (*query)->resultCount() > 0; };
        QObject::connect(query->get(), &MDQuery::progress, look);
        QObject::connect(query->get(), &MDQuery::finished, look);
        QObject::connect(query->get(), &MDQuery::updated, look);
        (*query)->execute(MDQuery::WantsUpdates);
        QEventLoop loop;
        while (!shown)
            loop.processEvents(QEventLoop::WaitForMoreEvents);
        seconds = secondsSince(start);
        state.SetIterationTime(seconds);
    }
    XPBench::valueAtMost(state, seconds * 1e3, 100);
}

BENCHMARK(firstRows)->Name("indexFirstRows_ms")->Apply(onFiles);

// --- A saved index

// The store of the corpus as a first crawl left it, made once.
static QString savedStore(const benchmark::State &state)
{
    static std::map<qint64, StoreFolder> stores;
    const auto files = state.range(0);
    const bool made = stores.count(files) > 0;
    QString path = stores[files].store();
    if (!made)
        keep(path, {corpus(state)})->sync(false);
    return path;
}

static size_t readStore(const QString &store)
{
    size_t bytes = 0;
    QDirIterator files(XPPath::folder(store), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        if (!files.fileName().contains(QStringLiteral(".text")))
            bytes += IndexBaselines::readWhole(XPPath::encode(file));
    }
    return bytes;
}

static void openAndAsk(benchmark::State &state)
{
    const QString store = savedStore(state);
    const QString root = corpus(state);
    readStore(store);
    for ([[maybe_unused]] auto _ : state) {
        const auto start = Clock::now();
        const auto keeper = keep(store, {root});
        const auto query =
            MDQuery::create(keeper->source(), QStringLiteral("kMDItemDisplayName == \"*rep*\"cd"));
        (*query)->execute(MDQuery::Synchronous);
        state.SetIterationTime(secondsSince(start));
        expectWhole(*keeper, state);
    }
    XPBench::timeAtMost(state, 2);
}

static void bareRead(benchmark::State &state)
{
    const QString store = savedStore(state);
    readStore(store);
    for ([[maybe_unused]] auto _ : state) {
        const auto start = Clock::now();
        const size_t bytes = readStore(store);
        state.SetIterationTime(secondsSince(start));
        state.counters["bytes"] = static_cast<double>(bytes);
    }
}

BENCHMARK(openAndAsk)->Name("indexOpen")->Apply(onFiles);
BENCHMARK(bareRead)->Name("indexOpen/baseline")->Apply(onFiles);

// Until a saved index, of which nothing changed, is known to be right.
static void verify(benchmark::State &state)
{
    const QString store = savedStore(state);
    const QString root = corpus(state);
    for ([[maybe_unused]] auto _ : state) {
        const auto start = Clock::now();
        const auto keeper = keep(store, {root});
        keeper->sync(false);
        state.SetIterationTime(secondsSince(start));
        expectWhole(*keeper, state);
    }
    XPBench::timeAtMost(state, 1.3);
}

static void bareFacts(benchmark::State &state)
{
    const QByteArray root = XPPath::encode(corpus(state));
    for ([[maybe_unused]] auto _ : state) {
        const auto start = Clock::now();
        IndexBaselines::walk(root, Calls::Facts);
        state.SetIterationTime(secondsSince(start));
    }
}

BENCHMARK(verify)->Name("indexVerify")->Apply(onFiles);
BENCHMARK(bareFacts)->Name("indexVerify/baseline")->Apply(onFiles);
