// What the desktop's search waits for while somebody types there.
#include "CatalogSource.h"
#include "IndexBenchChild.h"
#include "IndexCorpus.h"
#include "KPLibraryAnswers.h"
#include "MurnBench.h"
#include "XPFactorySettings.h"

namespace {

// A word that few names hold, and the first letter of it, as it is typed.
const char *const typed[] = {"i", "in", "inv", "invoice"};

void libraryServiceAnswers(benchmark::State &state)
{
    constexpr double mostMilliseconds = 30;
    XPFactorySettings::registerAll();
    XPBench::CatalogSource source(IndexCorpus::million());
    const KPLibraryAnswers answers(source);
    double slowest = 0;
    qsizetype found = 0;
    for (auto _ : state) {
        for (const char *words : typed) {
            const qint64 start = XPBench::monotonicNow();
            found += answers.search(QLatin1String(words), KPLibraryAnswers::mostResults).size();
            slowest = std::max(slowest, static_cast<double>(XPBench::monotonicNow() - start) / 1e6);
        }
    }
    if (found == 0)
        state.SkipWithError("nothing was found");
    XPBench::valueAtMost(state, slowest, mostMilliseconds);
}
BENCHMARK(libraryServiceAnswers)->Unit(benchmark::kMillisecond);

} // namespace
