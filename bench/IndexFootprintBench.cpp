// What an index costs: memory, disk, and nothing at rest.
#include "IndexBenchChild.h"
#include "IndexCorpus.h"
#include "MurnBench.h"

#include <QDirIterator>
#include <QFile>

using XPBench::Footprint;
using XPBench::footprint;

static const Footprint &million()
{
    return footprint(IndexCorpus::onDisk(1'000'000, IndexCorpus::Bodies::None), false);
}

static void report(benchmark::State &state, double (*figure)(const Footprint &), double most)
{
    double value = 0;
    for ([[maybe_unused]] auto _ : state)
        value = figure(million());
    XPBench::valueAtMost(state, value, most);
}

static void memory(benchmark::State &state)
{
    report(
        state, [](const Footprint &cost) { return cost.memory / cost.items; }, 120);
}

static void peak(benchmark::State &state)
{
    report(
        state, [](const Footprint &cost) { return cost.peak / (1 << 20); }, 350);
}

static void disk(benchmark::State &state)
{
    report(
        state, [](const Footprint &cost) { return cost.metadata / cost.items; }, 110);
}

static void switches(benchmark::State &state)
{
    report(
        state, [](const Footprint &cost) { return cost.switches; }, 0);
}

static void processor(benchmark::State &state)
{
    report(
        state, [](const Footprint &cost) { return cost.processor * 1e3; }, 1);
}

// The text store beside the bytes of the text that it makes searchable.
static void textOnDisk(benchmark::State &state)
{
    const QString root = IndexCorpus::onDisk(100'000, IndexCorpus::Bodies::Prose);
    double ratio = 0;
    for ([[maybe_unused]] auto _ : state) {
        double bytes = 0;
        QDirIterator files(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            files.next();
            if (IndexCorpusWords::isTextExtension(files.fileInfo().suffix().toLower().toUtf8()))
                bytes += static_cast<double>(files.fileInfo().size());
        }
        ratio = footprint(root, true).text / bytes;
    }
    XPBench::valueAtMost(state, ratio, 0.5);
}

BENCHMARK(memory)->Name("indexMemory_bytesAFile")->Iterations(1);
BENCHMARK(peak)->Name("indexMemoryPeak_MiB")->Iterations(1);
BENCHMARK(disk)->Name("indexDisk_bytesAFile")->Iterations(1);
BENCHMARK(textOnDisk)->Name("indexTextOnDisk_ofItsBytes")->Iterations(1);
BENCHMARK(switches)->Name("indexIdleWakeUps")->Iterations(1);
BENCHMARK(processor)->Name("indexIdleProcessor_ms")->Iterations(1);
