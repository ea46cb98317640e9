// Which of 100,000 paths lie in one of 50 folders.
#include "KPSearchFolders.h"
#include "MurnBench.h"

static constexpr int pathCount = 100'000;
static constexpr int folderCount = 50;

static QString folder(int number)
{
    return QStringLiteral("/home/ann/Documents/Filed Documents/%1").arg(number * 7);
}

static const QStringList &folders()
{
    static const QStringList all = [] {
        QStringList made;
        for (int i = 0; i < folderCount; ++i)
            made.append(folder(i));
        return made;
    }();
    return all;
}

// One in seven is in a folder of the list.
static const QStringList &paths()
{
    static const QStringList all = [] {
        QStringList made;
        for (int i = 0; i < pathCount; ++i)
            made.append(QStringLiteral("/home/ann/Documents/Filed Documents/%1/2026/report %2.pdf")
                            .arg(i % (folderCount * 7))
                            .arg(i));
        return made;
    }();
    return all;
}

static void pathInFolderArray(benchmark::State &state)
{
    const KPSearchFolders &registry = KPSearchFolders::instance();
    qsizetype found = 0;
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &path : paths())
            found += registry.pathInFolderArray(folders(), path) ? 1 : 0;
    }
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(state.iterations() * pathCount);
    XPBench::itemsPerSecondAtLeast(state, 5e6);
}
BENCHMARK(pathInFolderArray)->Unit(benchmark::kMillisecond);

// The same paths and folders, each pair compared.
static void compareAll(benchmark::State &state)
{
    qsizetype found = 0;
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &path : paths()) {
            for (const QString &each : folders()) {
                if (path.startsWith(each) &&
                    (path.size() == each.size() || path.at(each.size()) == u'/')) {
                    ++found;
                    break;
                }
            }
        }
    }
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(state.iterations() * pathCount);
}
BENCHMARK(compareAll)->Name("pathInFolderArray/baseline")->Unit(benchmark::kMillisecond);
