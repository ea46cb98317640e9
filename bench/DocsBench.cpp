// A million document records: what they cost, made and found.
#include "KPDocCache.h"
#include "Karvex.h"
#include "MurnBench.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>
#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

static constexpr int docCount = 1'000'000;
static constexpr int docsPerFolder = 100;
static constexpr qsizetype pathSize = 80;

namespace {

// What a searcher hands over: pooled paths of 80 ASCII characters in the order of a walk, and
// what lstat said of each.
struct Walk
{
    std::vector<KPPooledString> paths;
    std::vector<XPFileInfo> infos;
};

// Never the same paths twice.
Walk newWalk()
{
    static int run = 0;
    ++run;
    Walk walk;
    walk.paths.reserve(docCount);
    walk.infos.reserve(docCount);
    for (int i = 0; i < docCount; ++i) {
        const QString path = QStringLiteral("/home/ann/Documents/Filed Documents/%1/%2/%3 ")
                                 .arg(run)
                                 .arg(i / docsPerFolder, 5, 10, QLatin1Char('0'))
                                 .arg(i, 7, 10, QLatin1Char('0'))
                                 .leftJustified(pathSize - 4, u'x');
        walk.paths.push_back(KPPool::pooledString(QString(path + QStringLiteral(".pdf"))));
        XPFileInfo info;
        info.mode = S_IFREG | 0644;
        info.size = 1000 + i;
        info.modified = 1'600'000'000'000'000'000 + i;
        info.birth = info.modified;
        walk.infos.push_back(info);
    }
    return walk;
}

double residentBytes()
{
    ::malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').at(1).toDouble() *
           static_cast<double>(::sysconf(_SC_PAGESIZE));
}

void askForAll(const Walk &walk, size_t first, size_t last)
{
    for (size_t i = first; i < last; ++i)
        benchmark::DoNotOptimize(KPDocCache::docAtPath(walk.paths[i], &walk.infos[i]));
}

} // namespace

// In all beyond the paths' texts: what the process grows by, and the pool's pointer from the path
// to the record. Only once, as records stay.
static void docMemory(benchmark::State &state)
{
    double bytes = 0;
    for ([[maybe_unused]] auto _ : state) {
        const Walk walk = newWalk();
        const double before = residentBytes();
        askForAll(walk, 0, docCount);
        bytes = (residentBytes() - before) / docCount + sizeof(void *);
    }
    XPBench::valueAtMost(state, bytes, 320);
}
BENCHMARK(docMemory)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);

static void docsNew(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const Walk walk = newWalk();
        state.ResumeTiming();
        askForAll(walk, 0, docCount);
    }
    state.SetItemsProcessed(state.iterations() * docCount);
    XPBench::itemsPerSecondAtLeast(state, 1e6);
}
BENCHMARK(docsNew)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

static const Walk &known()
{
    static const Walk walk = [] {
        Walk made = newWalk();
        askForAll(made, 0, docCount);
        return made;
    }();
    return walk;
}

static void docsKnown(benchmark::State &state)
{
    const Walk &walk = known();
    for ([[maybe_unused]] auto _ : state)
        askForAll(walk, 0, docCount);
    state.SetItemsProcessed(state.iterations() * docCount);
    XPBench::itemsPerSecondAtLeast(state, 5e6);
}
BENCHMARK(docsKnown)->Unit(benchmark::kMillisecond)->UseRealTime();

// Two threads, each with half of the walk, against one with all of it.
static void docsKnownByTwo(benchmark::State &state)
{
    const Walk &walk = known();
    const size_t half = docCount / 2;
    const size_t first = static_cast<size_t>(state.thread_index()) * half;
    for ([[maybe_unused]] auto _ : state)
        askForAll(walk, first, first + half);
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(half));
    XPBench::speedAtLeast(state, 1);
}
BENCHMARK(docsKnownByTwo)->Threads(2)->Unit(benchmark::kMillisecond)->UseRealTime();

static void docsKnownByOne(benchmark::State &state)
{
    const Walk &walk = known();
    for ([[maybe_unused]] auto _ : state)
        askForAll(walk, 0, docCount);
    state.SetItemsProcessed(state.iterations() * docCount);
}
BENCHMARK(docsKnownByOne)
    ->Name("docsKnownByTwo/baseline")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// --- The managed flag

namespace {

// Files on the disk of the build, all of them managed.
class ManagedFiles
{
public:
    static constexpr int count = 10'000;

    ManagedFiles() : m_folder(QDir::currentPath() + QStringLiteral("/docs-bench-XXXXXX"))
    {
        for (int i = 0; i < count; ++i) {
            const QString path = m_folder.filePath(QStringLiteral("document %1.pdf").arg(i));
            const QByteArray bytes = XPPath::encode(path);
            ::close(::open(bytes.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
            if (Karvex::setXAttrMetaData(PropertyValue::boolean(true), Karvex::managedKey, path))
                std::abort(); // the figures would be of failures
            docs.push_back(KPDocCache::docAtPath(path));
            encoded.push_back(bytes);
        }
    }

    std::vector<KPDoc *> docs;
    std::vector<QByteArray> encoded;

private:
    QTemporaryDir m_folder;
};

} // namespace

static const ManagedFiles &managedFiles()
{
    static const ManagedFiles files;
    return files;
}

static void docsManaged(benchmark::State &state)
{
    const std::vector<KPDoc *> &docs = managedFiles().docs;
    for ([[maybe_unused]] auto _ : state) {
        for (const KPDoc *doc : docs) {
            if (!doc->isManaged())
                state.SkipWithError("not managed");
        }
    }
    XPBench::timeAtMost(state, 1.3);
}
BENCHMARK(docsManaged)->Unit(benchmark::kMillisecond)->UseRealTime();

static void docsManagedBare(benchmark::State &state)
{
    const QByteArray older =
        XPExtendedAttributes::nameOnDisk(Karvex::karvexKey(Karvex::managedKey));
    const QByteArray name =
        XPExtendedAttributes::nameOnDisk(Karvex::spotlightKey(Karvex::managedKey));
    const std::vector<QByteArray> &paths = managedFiles().encoded;
    for ([[maybe_unused]] auto _ : state) {
        for (const QByteArray &path : paths) {
            char value[100];
            if (::lgetxattr(path.constData(), older.constData(), value, sizeof value) >= 0 ||
                ::lgetxattr(path.constData(), name.constData(), value, sizeof value) <= 0)
                state.SkipWithError("a read failed");
        }
    }
}
BENCHMARK(docsManagedBare)
    ->Name("docsManaged/baseline")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
