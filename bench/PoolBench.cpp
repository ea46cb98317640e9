#include "KPPool.h"

#include "MurnBench.h"

#include <QFile>
#include <malloc.h>
#include <unistd.h>
#include <vector>

static constexpr int pathCount = 1'000'000;
static constexpr qsizetype pathSize = 80;

// Distinct paths of 80 ASCII characters; every call makes another million.
static std::vector<QString> newPaths()
{
    static int run = 0;
    ++run;
    std::vector<QString> paths;
    paths.reserve(pathCount);
    for (int i = 0; i < pathCount; ++i) {
        const QString name = QStringLiteral("/home/ann/Documents/Filed Documents/%1/%2 %3.pdf")
                                 .arg(run)
                                 .arg(i % 1000)
                                 .arg(i, 7, 10, QLatin1Char('0'));
        paths.push_back(name.leftJustified(pathSize, u'x'));
    }
    return paths;
}

static double residentBytes()
{
    ::malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').at(1).toDouble() *
           static_cast<double>(::sysconf(_SC_PAGESIZE));
}

// What a new path costs in memory that stays: the growth of the process. Only once, and with at
// most one million known before, as the share of the table depends on how full it is.
static void poolMemory(benchmark::State &state)
{
    double bytes = 0;
    for ([[maybe_unused]] auto _ : state) {
        const std::vector<QString> paths = newPaths();
        const double before = residentBytes();
        for (const QString &path : paths)
            benchmark::DoNotOptimize(KPPool::pooledString(path));
        bytes = (residentBytes() - before) / pathCount;
    }
    XPBench::valueAtMost(state, bytes, 2 * pathSize + 48);
}
BENCHMARK(poolMemory)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);

static const std::vector<QString> &knownPaths()
{
    static const std::vector<QString> paths = [] {
        std::vector<QString> made = newPaths();
        for (const QString &path : made)
            (void)KPPool::pooledString(path);
        return made;
    }();
    return paths;
}

static void poolFindKnown(benchmark::State &state)
{
    const auto &paths = knownPaths();
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &path : paths)
            benchmark::DoNotOptimize(KPPool::pooledString(path));
    }
    state.SetItemsProcessed(state.iterations() * pathCount);
}
BENCHMARK(poolFindKnown)->Unit(benchmark::kMillisecond);
BENCHMARK(poolFindKnown)
    ->Name("poolFindKnownByTwo")
    ->Threads(2)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// The barest pass over the same texts: their hash.
static void hashPaths(benchmark::State &state)
{
    const auto &paths = knownPaths();
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &path : paths)
            benchmark::DoNotOptimize(qHash(path, size_t{1}));
    }
    state.SetItemsProcessed(state.iterations() * pathCount);
}
BENCHMARK(hashPaths)->Name("poolFindKnown/baseline")->Unit(benchmark::kMillisecond);
