// 100,000 results put in order and in groups, and one change among them.
#include "KPDocCache.h"
#include "KPNameOrder.h"
#include "KPSortedResults.h"
#include "MurnBench.h"

#include <algorithm>
#include <sys/stat.h>

static constexpr int docCount = 100'000;

static const KPDocArray &documents()
{
    static const KPDocArray all = [] {
        KPDocArray docs;
        for (int i = 0; i < docCount; ++i) {
            const int number = static_cast<int>(static_cast<quint32>(i) * 2654435761U % docCount);
            XPFileInfo info;
            info.mode = S_IFREG | 0644;
            info.size = number * 7LL;
            info.modified = 1'600'000'000'000'000'000 + number * 1'000'000'000'000LL;
            docs.push_back(KPDocCache::docAtPath(
                KPPool::pooledString(
                    QString(QStringLiteral("/home/ann/Sorted/%1/report %2 of the tax office.pdf")
                                .arg(i / 100)
                                .arg(number))),
                &info));
        }
        return docs;
    }();
    return all;
}

static KPResultsDifference everything()
{
    KPResultsDifference difference;
    difference.isReset = true;
    difference.added = documents();
    return difference;
}

static KPSortOrder orderOf(const char *keys, const char *group)
{
    KPSortOrder order;
    order.keys = *KPSortOrder::keysFromText(QLatin1String(keys));
    order.group = KPSortKey::fromText(QLatin1String(group));
    return order;
}

static void sortAll(benchmark::State &state, const KPSortOrder &order)
{
    const KPResultsDifference difference = everything();
    for ([[maybe_unused]] auto _ : state) {
        KPSortedResults results(order);
        benchmark::DoNotOptimize(results.apply(difference).docs->data());
    }
    state.SetItemsProcessed(state.iterations() * docCount);
}

static void sortByName(benchmark::State &state)
{
    sortAll(state, orderOf("name", ""));
    XPBench::timeAtMost(state, 1.2);
}
BENCHMARK(sortByName)->Unit(benchmark::kMillisecond);

static void groupByDateSortBySize(benchmark::State &state)
{
    sortAll(state, orderOf("-size", "-modified"));
    XPBench::timeAtMost(state, 1.5);
}
BENCHMARK(groupByDateSortBySize)->Unit(benchmark::kMillisecond);

// The names alone, by the keys that Qt's collator makes.
static void sortKeys(benchmark::State &state)
{
    const KPDocArray &docs = documents();
    const QCollator collator = kpNameCollator();
    for ([[maybe_unused]] auto _ : state) {
        std::vector<std::pair<QCollatorSortKey, KPDoc *>> keyed;
        keyed.reserve(docs.size());
        for (KPDoc *doc : docs)
            keyed.emplace_back(collator.sortKey(doc->fsDisplayName()), doc);
        std::sort(keyed.begin(), keyed.end(),
                  [](const auto &a, const auto &b) { return a.first.compare(b.first) < 0; });
        benchmark::DoNotOptimize(keyed.data());
    }
    state.SetItemsProcessed(state.iterations() * docCount);
}
BENCHMARK(sortKeys)->Name("sortByName/baseline")->Unit(benchmark::kMillisecond);
BENCHMARK(sortKeys)->Name("groupByDateSortBySize/baseline")->Unit(benchmark::kMillisecond);

static void changeOneOfMany(benchmark::State &state)
{
    KPSortedResults results(orderOf("name", "-modified"));
    (void)results.apply(everything());
    KPDoc *const doc = documents()[docCount / 2];
    KPResultsDifference difference;
    difference.changed = {{doc, doc->pooledPath()}};
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(results.apply(difference).docs->data());
    XPBench::timeAtMost(state, 40);
}
BENCHMARK(changeOneOfMany)->Unit(benchmark::kMicrosecond);

// What a new immutable array of the results costs by itself.
static void copyAll(benchmark::State &state)
{
    const KPDocArray &docs = documents();
    for ([[maybe_unused]] auto _ : state) {
        auto copy = std::make_shared<KPDocArray>(docs);
        benchmark::DoNotOptimize(copy->data());
    }
}
BENCHMARK(copyAll)->Name("changeOneOfMany/baseline")->Unit(benchmark::kMicrosecond);
