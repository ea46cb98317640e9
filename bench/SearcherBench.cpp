// What a searcher costs from the state that is handed over to the results on the main thread.
#include "CatalogSource.h"
#include "IndexBenchChild.h"
#include "IndexBenchKeeper.h"
#include "IndexCorpus.h"
#include "IndexLatency.h"
#include "KPDocMetaData.h"
#include "KPDocValues.h"
#include "KPSearcher.h"
#include "MDQuery.h"
#include "MurnBench.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QFile>
#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

using XPBench::CatalogSource;
using XPBench::Clock;

namespace {

const IndexCatalog &catalogOf(qint64 files)
{
    return files > 100'000 ? IndexCorpus::million() : IndexCorpus::hundredThousand();
}

// With the files that nobody tagged: the more there are, the harder.
KPSearchState::Ptr everywhere()
{
    return KPSearchState::blankSearchState()
        ->searchStateWithNewContstraintFolders({QStringLiteral("/")})
        ->searchStateWithNewManagedDocuments(false);
}

KPSearchState::Ptr everything()
{
    return everywhere()->searchStateWithNewSearchString(QStringLiteral("mdq:kMDItemFSName == *"),
                                                        false, false, true);
}

KPSearchState::Ptr named(const char *words)
{
    return everywhere()->searchStateWithNewSearchString(QLatin1String(words), false, false, true);
}

KPSortOrder groupedOrder()
{
    KPSortOrder order;
    order.group = KPSortKey{KPSortKey::Field::Modified, false};
    return order;
}

// A searcher of a window, and when it delivered what.
class Run
{
public:
    explicit Run(IndexSource &source, const KPThreadedSearcher::Setup &setup = {})
        : m_searcher(source, setup)
    {
        KPDocMetaData::holdFilledValues();
        QObject::connect(&m_searcher, &KPSearcher::delivered, &m_searcher, [this](const auto &) {
            m_seen = XPBench::monotonicNow();
            ++m_deliveries;
        });
    }
    KPSearcher &searcher() { return m_searcher; }
    qint64 lastSeen() const { return m_seen; }
    int deliveries() const { return m_deliveries; }
    bool isDone() const
    {
        return m_deliveries > 0 && m_searcher.currentDelivery() &&
               m_searcher.currentDelivery()->isDone;
    }

    void begin(const KPSearchState::Ptr &state)
    {
        m_deliveries = 0;
        m_searcher.forceNewSearchNextTime();
        m_searcher.setSearchState(state, false);
    }
    template <typename Condition>
    void waitFor(Condition done)
    {
        while (!done())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    void search(const KPSearchState::Ptr &state)
    {
        begin(state);
        waitFor([this] { return isDone(); });
    }
    qsizetype count() const
    {
        return static_cast<qsizetype>(m_searcher.currentSearchResults().size());
    }

private:
    KPSearcher m_searcher;
    qint64 m_seen = 0;
    int m_deliveries = 0;
};

// Without the time that a state may lie.
KPThreadedSearcher::Setup atOnce()
{
    KPThreadedSearcher::Setup setup;
    setup.pickUp = std::chrono::milliseconds(0);
    return setup;
}

void expect(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "SearcherBench: %s\n", what);
    std::abort();
}

} // namespace

// --- First results

// Milliseconds from a state to the first results on the main thread, the pick-up included.
static void firstDelivery(benchmark::State &state)
{
    CatalogSource source(catalogOf(state.range(0)));
    Run run(source);
    run.searcher().setResultsOrder(groupedOrder());
    std::vector<double> times;
    bool isOdd = false;
    for ([[maybe_unused]] auto _ : state) {
        const auto wanted = named((isOdd = !isOdd) ? "a" : "e");
        const qint64 start = XPBench::monotonicNow();
        run.begin(wanted);
        run.waitFor([&] { return run.deliveries() > 0; });
        times.push_back(static_cast<double>(run.lastSeen() - start) / 1e6);
        run.waitFor([&] { return run.isDone(); });
    }
    expect(run.count() > 1000, "too few results");
    XPBench::valueAtMost(state, XPBench::quantile(times, 50), state.range(0) > 100'000 ? 110 : 80);
}
BENCHMARK(firstDelivery)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

// --- All results

static void allSortedGroupedCounted(benchmark::State &state)
{
    CatalogSource source(IndexCorpus::hundredThousand());
    Run run(source, atOnce());
    run.searcher().setResultsOrder(groupedOrder());
    for ([[maybe_unused]] auto _ : state)
        run.search(everything());
    expect(run.count() > 90'000, "too few results");
    state.SetItemsProcessed(state.iterations() * run.count());
    XPBench::timeAtMost(state, 4);
}
BENCHMARK(allSortedGroupedCounted)->UseRealTime()->Unit(benchmark::kMillisecond);

static void bareQuery(benchmark::State &state)
{
    CatalogSource source(IndexCorpus::hundredThousand());
    const QString text = everything()->queryText();
    qsizetype count = 0;
    for ([[maybe_unused]] auto _ : state) {
        const auto query = *MDQuery::create(source, text);
        query->execute(MDQuery::Synchronous);
        count = query->resultCount();
        const IndexLook look(source);
        for (qsizetype i = 0; i < count; ++i) {
            const auto row = look.at(query->itemAt(i));
            expect(row.has_value(), "a result without a row");
            benchmark::DoNotOptimize(row->path());
            benchmark::DoNotOptimize(KPDocValues::ofRow(*row));
        }
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(bareQuery)
    ->Name("allSortedGroupedCounted/baseline")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// --- Memory

static double heapBytes()
{
    const struct mallinfo2 now = ::mallinfo2();
    return static_cast<double>(now.uordblks) + static_cast<double>(now.hblkhd);
}

// Bytes for each of a million files' first hundred thousand results, the records included; this
// must run before anything else makes records of the same files.
static void memoryOfAResult(benchmark::State &state)
{
    CatalogSource source(IndexCorpus::million());
    Run run(source, atOnce());
    run.searcher().setResultsOrder(groupedOrder());
    for ([[maybe_unused]] auto _ : state) {
        static const double bytes = [&] {
            const double before = heapBytes();
            run.search(everything());
            return (heapBytes() - before) / static_cast<double>(run.count());
        }();
        XPBench::valueAtMost(state, bytes, 350);
    }
}
BENCHMARK(memoryOfAResult)->Iterations(1);

// Bytes after many searches that take turns, as a ratio to those after the first few.
static void memoryAfterManySearches(benchmark::State &state)
{
    CatalogSource source(IndexCorpus::hundredThousand());
    Run run(source, atOnce());
    run.searcher().setResultsOrder(groupedOrder());
    const char *words[] = {"a", "e", "re", "in", "o"};
    constexpr int searches = 1000;
    for ([[maybe_unused]] auto _ : state) {
        double before = 0;
        for (int i = 0; i <= searches; ++i) {
            run.search(named(words[static_cast<size_t>(i) % std::size(words)]));
            if (i == 50)
                before = heapBytes();
        }
        XPBench::valueAtMost(state, heapBytes() / before, 1.05);
    }
}
BENCHMARK(memoryAfterManySearches)->Iterations(1)->Repetitions(1)->Unit(benchmark::kSecond);

// --- Changes of another program

// Milliseconds until a rating that another program wrote has come into, or gone out of, a live
// result.
static void changeOfAnotherProgram(benchmark::State &state)
{
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        const QTemporaryDir work(QStringLiteral("searcher-bench-XXXXXX"));
        const QString root = XPPath::absolute(work.path());
        for (int i = 0; i < 200; ++i) {
            QFile file(work.filePath(QStringLiteral("live-%1.txt").arg(i)));
            expect(file.open(QIODevice::WriteOnly), "no file could be made");
        }
        const XPBench::StoreFolder store;
        const auto keeper = XPBench::keep(store.store(), {root});
        keeper->sync(false);
        Run run(keeper->source());
        run.searcher().setResultsOrder(groupedOrder());
        run.search(KPSearchState::blankSearchState()
                       ->searchStateWithNewRating(QStringLiteral(">= 4"))
                       ->searchStateWithNewContstraintFolders({root}));
        XPBench::Mutator mutator;
        for (int i = 0; i < 200; ++i) {
            const qsizetype before = run.count();
            mutator.begin("rate " + XPPath::encode(root) + "/live-" + QByteArray::number(i) +
                          ".txt 5");
            run.waitFor([&] { return run.count() > before; });
            times.push_back(static_cast<double>(run.lastSeen() - mutator.times().begun) / 1e6);
        }
    }
    const auto percent = static_cast<double>(state.range(0));
    XPBench::valueAtMost(state, XPBench::quantile(times, percent), percent > 50 ? 150 : 100);
}
BENCHMARK(changeOfAnotherProgram)->Arg(50)->Arg(99)->Iterations(1)->Unit(benchmark::kSecond);

// --- Listings

static void deepListing(benchmark::State &state)
{
    const QString corpus = IndexCorpus::onDisk(100'000, IndexCorpus::Bodies::None);
    CatalogSource source(IndexCorpus::hundredThousand());
    // As the shell asks: nothing of what stands on the files.
    KPThreadedSearcher::Setup setup = atOnce();
    setup.live = false;
    setup.countsTags = false;
    setup.maximum = 0;
    Run run(source, setup);
    const auto listing = KPSearchState::blankSearchState()
                             ->searchStateWithNewFinderListing(true, true)
                             ->searchStateWithNewContstraintFolders({corpus});
    for ([[maybe_unused]] auto _ : state)
        run.search(listing);
    expect(run.count() >= 100'000, "too few files");
    state.SetItemsProcessed(state.iterations() * run.count());
    XPBench::timeAtMost(state, 2);
}
BENCHMARK(deepListing)->UseRealTime()->Unit(benchmark::kMillisecond);

static size_t bareWalk(int parent, const char *name)
{
    const int folder = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    DIR *const stream = folder >= 0 ? ::fdopendir(folder) : nullptr;
    expect(stream != nullptr, "a folder cannot be read");
    size_t files = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): this stream is no other thread's
    while (const dirent *entry = ::readdir(stream)) {
        if (entry->d_name[0] == '.')
            continue;
        struct stat facts = {};
        if (::fstatat(folder, entry->d_name, &facts, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        files += S_ISDIR(facts.st_mode) ? bareWalk(folder, entry->d_name)
                                        : 1; // NOLINT(misc-no-recursion)
    }
    ::closedir(stream);
    return files;
}

static void walkWithLstat(benchmark::State &state)
{
    const QByteArray corpus =
        XPPath::encode(IndexCorpus::onDisk(100'000, IndexCorpus::Bodies::None));
    size_t files = 0;
    for ([[maybe_unused]] auto _ : state)
        files = bareWalk(AT_FDCWD, corpus.constData());
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(files));
}
BENCHMARK(walkWithLstat)
    ->Name("deepListing/baseline")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
