#include "KPTagCompletion.h"
#include "Karvex.h"
#include "KarvexMirror.h"
#include "MurnBench.h"
#include "UserDefaults.h"
#include "XPText.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>

// --- What a key costs in a field of tags

static QList<KPTagCompletion::Known> manyTags()
{
    QList<KPTagCompletion::Known> known;
    for (int i = 0; i < 50'000; ++i)
        known.append({QStringLiteral("project %1 invoice %2").arg(i % 700).arg(i), i % 90});
    return known;
}

static void completeTag(benchmark::State &state)
{
    const KPTagCompletion completion(manyTags(), {});
    for ([[maybe_unused]] auto each : state)
        benchmark::DoNotOptimize(completion.matches(QStringLiteral("Invoice 4"), {}, {}, 8));
    XPBench::timeAtMost(state, 2.5);
}
BENCHMARK(completeTag)->Unit(benchmark::kMillisecond);

// Looking at every tag once is the least that can be done.
static void lookThroughTags(benchmark::State &state)
{
    QStringList folded;
    for (const auto &each : manyTags())
        folded.append(foldText(each.tag));
    const QString wanted = foldText(QStringLiteral("Invoice 4"));
    for ([[maybe_unused]] auto each : state)
        benchmark::DoNotOptimize(std::count_if(
            folded.begin(), folded.end(), [&](const auto &tag) { return tag.contains(wanted); }));
}
BENCHMARK(lookThroughTags)->Name("completeTag/baseline")->Unit(benchmark::kMillisecond);

// --- What the desktop's tags cost beside ours

static void tagFile(benchmark::State &state, bool isMirrored)
{
    const QTemporaryDir folder(QDir::currentPath() + QStringLiteral("/tags-XXXXXX"));
    const QString file = folder.filePath(QStringLiteral("a"));
    if (!QFile(file).open(QIODevice::WriteOnly))
        state.SkipWithError("no file");
    UserDefaults::standard().setValue(KarvexMirror::settingsKey,
                                      PropertyValue::boolean(isMirrored));
    const QStringList one{QStringLiteral("invoice"), QStringLiteral("paid")};
    const QStringList other{QStringLiteral("invoice"), QStringLiteral("unpaid")};
    bool isOdd = false;
    for ([[maybe_unused]] auto each : state)
        benchmark::DoNotOptimize(Karvex::setUserTags((isOdd = !isOdd) ? one : other, file));
    UserDefaults::standard().remove(KarvexMirror::settingsKey);
}

static void tagMirroredFile(benchmark::State &state)
{
    tagFile(state, true);
    XPBench::timeAtMost(state, 1.6);
}
BENCHMARK(tagMirroredFile);
static void tagPlainFile(benchmark::State &state)
{
    tagFile(state, false);
}
BENCHMARK(tagPlainFile)->Name("tagMirroredFile/baseline");
