#include "KPTagName.h"

#include "MurnBench.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

static constexpr int tagCount = 5'000;
static constexpr int textCount = 1'000'000;

// Tags as people write them: one or two words, one in ten with a letter beyond ASCII, as typed
// (composed) and as stored in files (decomposed) in turn.
static QString tagText(int number)
{
    static const QStringList words{QStringLiteral("Invoice"),      QStringLiteral("holiday 2019"),
                                   QStringLiteral("Tax return"),   QStringLiteral("to do"),
                                   QStringLiteral("Project Blue"), QStringLiteral("receipts")};
    QString text = words[number % words.size()] + QLatin1Char(' ') + QString::number(number);
    if (number % 10 != 0)
        return text;
    return number % 20 == 0 ? QStringLiteral("Büro ") + text
                            : QStringLiteral("Re\u0301sume\u0301 ") + text;
}

// A million texts over 5,000 tags in random order, each of them in one of four spellings.
static const std::vector<QString> &texts()
{
    static const std::vector<QString> made = [] {
        std::vector<QString> result(textCount);
        std::mt19937 random(1); // NOLINT(cert-msc51-cpp,cert-msc32-c): the same in every run
        for (QString &text : result) {
            text = tagText(static_cast<int>(random() % tagCount));
            switch (random() % 4) {
            case 0:
                text = text.toUpper();
                break;
            case 1:
                text = text.toLower();
                break;
            case 2:
                text = QLatin1Char(' ') + text + QLatin1Char(' ');
                break;
            default:
                break;
            }
            text.detach();
        }
        return result;
    }();
    return made;
}

static void tagNameForUserEnteredTag(benchmark::State &state)
{
    const auto &all = texts();
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &text : all)
            benchmark::DoNotOptimize(KPTagName::tagNameForUserEnteredTag(text));
    }
    state.SetItemsProcessed(state.iterations() * textCount);
    XPBench::itemsPerSecondAtLeast(state, 3e6);
}
BENCHMARK(tagNameForUserEnteredTag)->Unit(benchmark::kMillisecond);

// Two threads, each over all texts, against one: together they must not be slower.
static void tagNamesByThreads(benchmark::State &state)
{
    const auto &all = texts();
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &text : all)
            benchmark::DoNotOptimize(KPTagName::tagNameForUserEnteredTag(text));
    }
    state.SetItemsProcessed(state.iterations() * textCount);
    XPBench::speedAtLeast(state, 1);
}
BENCHMARK(tagNamesByThreads)
    ->Name("tagNamesByTwoThreads")
    ->Threads(2)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(tagNamesByThreads)
    ->Name("tagNamesByTwoThreads/baseline")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// What the look-up costs beside the barest loop over the same memory: the hash of each text.
static void tagNamesBesideHashing(benchmark::State &state)
{
    const auto &all = texts();
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &text : all)
            benchmark::DoNotOptimize(KPTagName::tagNameForUserEnteredTag(text));
    }
    state.SetItemsProcessed(state.iterations() * textCount);
}
BENCHMARK(tagNamesBesideHashing)->Unit(benchmark::kMillisecond);

static void hashTexts(benchmark::State &state)
{
    const auto &all = texts();
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &text : all)
            benchmark::DoNotOptimize(qHash(text, size_t{1}));
    }
    state.SetItemsProcessed(state.iterations() * textCount);
}
BENCHMARK(hashTexts)->Name("tagNamesBesideHashing/baseline")->Unit(benchmark::kMillisecond);

// A whole cloud sorted: no allocation in a comparison.
static void sortTags(benchmark::State &state)
{
    std::vector<KPTagName *> tags(tagCount);
    for (int i = 0; i < tagCount; ++i)
        tags[static_cast<size_t>(i)] = KPTagName::tagNameForUserEnteredTag(tagText(i));
    for ([[maybe_unused]] auto _ : state) {
        auto sorted = tags;
        std::sort(sorted.begin(), sorted.end(), [](const KPTagName *a, const KPTagName *b) {
            return a->compareNumerically(b) < 0;
        });
        benchmark::DoNotOptimize(sorted.data());
    }
    state.SetItemsProcessed(state.iterations() * tagCount);
}
BENCHMARK(sortTags)->Unit(benchmark::kMillisecond);
