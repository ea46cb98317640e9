// How soon a live query tells of what another program did to a file.
#include "IndexBenchChild.h"
#include "IndexBenchKeeper.h"
#include "IndexCorpus.h"
#include "IndexLatency.h"
#include "MDQuery.h"
#include "MurnBench.h"
#include "XPPath.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

using XPBench::monotonicNow;
using XPBench::Mutator;

static constexpr int watchedFiles = 200;

// A folder of files, an index of it and perhaps more, a live query, and somebody else.
class LiveScene
{
public:
    explicit LiveScene(const QString &text, const QStringList &moreRoots = {})
        : m_work(QStringLiteral("live-bench-XXXXXX"))
    {
        for (int i = 0; i < watchedFiles; ++i) {
            QFile file(m_work.filePath(QStringLiteral("live-%1.txt").arg(i)));
            if (!file.open(QIODevice::WriteOnly))
                std::abort();
        }
        m_keeper = XPBench::keep(m_store.store(), QStringList{root()} + moreRoots);
        m_query = *MDQuery::create(m_keeper->source(), text);
        m_query->setSearchScope({root()}); // not what else is being read
        MDQuery::BatchingParameters batching;
        batching.updateMaxMs = 1; // one change after the other, each as soon as it is known
        m_query->setBatchingParameters(batching);
        QObject::connect(m_query.get(), &MDQuery::updated,
                         [this](const auto &added, const auto &, const auto &removed) {
                             m_seen = monotonicNow();
                             m_added += added.size();
                             m_removed += removed.size();
                         });
    }

    QString root() const { return XPPath::absolute(m_work.path()); }
    QByteArray path(const QByteArray &name) const { return XPPath::encode(root()) + '/' + name; }
    MetadataIndex &keeper() { return *m_keeper; }
    MDQuery &query() { return *m_query; }
    Mutator &mutator() { return m_mutator; }

    void begin()
    {
        m_query->execute(MDQuery::WantsUpdates);
        waitFor([this] { return m_query->isGatheringComplete(); }, "first results");
    }

    void waitFor(const std::function<bool()> &done, const QByteArray &what)
    {
        QEventLoop loop;
        bool late = false;
        QTimer::singleShot(120'000, &loop, [&] { late = true; });
        while (!done()) {
            loop.processEvents(QEventLoop::WaitForMoreEvents);
            if (late) {
                std::fprintf(stderr, "not in two minutes: %s\n", what.constData());
                std::abort();
            }
        }
    }

    // Milliseconds from the beginning of a change until the query tells that one came or went.
    double latency(const QByteArray &change, bool comes)
    {
        m_added = m_removed = 0;
        m_mutator.begin(change);
        waitFor([&] { return (comes ? m_added : m_removed) > 0; }, change);
        return static_cast<double>(m_seen - m_mutator.times().begun) / 1e6;
    }

    // One file comes by an attribute and goes, another is made, renamed out and in, and deleted.
    void cycle(int number, std::vector<double> &out)
    {
        const QByteArray rated = path("live-" + QByteArray::number(number % watchedFiles) + ".txt");
        const QByteArray fresh = path("fresh-" + QByteArray::number(number) + ".txt");
        const QByteArray other = path("other-" + QByteArray::number(number) + ".txt");
        out.push_back(latency("rate " + rated + " 5", true));
        out.push_back(latency("rate " + rated + " 0", false));
        out.push_back(latency("write " + fresh + " text", true));
        out.push_back(latency("rename " + fresh + ' ' + other, false));
        out.push_back(latency("rename " + other + ' ' + fresh, true));
        out.push_back(latency("delete " + fresh, false));
    }

    qint64 lastSeen() const { return m_seen; }

private:
    QTemporaryDir m_work;
    XPBench::StoreFolder m_store;
    std::unique_ptr<MetadataIndex> m_keeper;
    std::unique_ptr<MDQuery> m_query;
    Mutator m_mutator;
    qint64 m_seen = 0;
    qsizetype m_added = 0;
    qsizetype m_removed = 0;
};

static const QString coming =
    QStringLiteral("kMDItemStarRating >= 4 || kMDItemFSName == \"fresh-*\"");

static void report(benchmark::State &state, const std::vector<double> &times, double median,
                   double most)
{
    if (times.size() < 100)
        std::fprintf(stderr, "only %zu changes measured\n", times.size());
    const auto percent = static_cast<double>(state.range(0));
    XPBench::valueAtMost(state, XPBench::quantile(times, percent), percent > 50 ? most : median);
}

static void idle(benchmark::State &state)
{
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        LiveScene scene(coming);
        scene.keeper().sync(true);
        scene.begin();
        for (int i = 0; i < 50; ++i)
            scene.cycle(i, times);
    }
    report(state, times, 2, 10);
}

static void whileCrawling(benchmark::State &state)
{
    const QString corpus = IndexCorpus::onDisk(1'000'000, IndexCorpus::Bodies::None);
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        LiveScene scene(coming, {corpus});
        scene.begin();
        scene.latency("write " + scene.path("fresh-first.txt") + " text", true); // all is watched
        for (int i = 0; scene.keeper().status()->phase != IndexStatus::Phase::Live; ++i)
            scene.cycle(i, times);
    }
    report(state, times, 50, 50);
}

static void whileImporting(benchmark::State &state)
{
    const QString corpus = IndexCorpus::onDisk(100'000, IndexCorpus::Bodies::Prose);
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        LiveScene scene(coming, {corpus});
        scene.keeper().sync(false);
        scene.begin();
        for (int i = 0; i < 200 && scene.keeper().status()->contentsWaiting > 0; ++i)
            scene.cycle(i, times);
    }
    report(state, times, 50, 50);
}

static void newText(benchmark::State &state)
{
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        LiveScene scene(QStringLiteral("kMDItemTextContent == \"zebra*\"cdw"));
        scene.keeper().sync(true);
        scene.begin();
        for (int i = 0; i < 100; ++i) {
            const QByteArray number = QByteArray::number(i);
            times.push_back(scene.latency(
                "write " + scene.path("text-" + number + ".txt") + " zebra" + number, true));
        }
    }
    report(state, times, 20, 100);
}

// What the kernel and the change itself take: the same changes, read from inotify at once.
static void inotifyAlone(benchmark::State &state)
{
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        const QTemporaryDir folder(QStringLiteral("live-bench-XXXXXX"));
        const QByteArray root = XPPath::encode(XPPath::absolute(folder.path()));
        const int events = ::inotify_init1(IN_CLOEXEC);
        ::inotify_add_watch(events, root.constData(), IN_ATTRIB);
        Mutator mutator;
        mutator.begin("write " + root + "/file text");
        mutator.times();
        for (int i = 0; i < 300; ++i) {
            mutator.begin("rate " + root + "/file " + QByteArray::number(1 + i % 5));
            pollfd waiting = {events, POLLIN, 0};
            ::poll(&waiting, 1, 60'000);
            const qint64 seen = monotonicNow();
            char buffer[4096];
            if (::read(events, buffer, sizeof buffer) <= 0)
                std::abort();
            times.push_back(static_cast<double>(seen - mutator.times().begun) / 1e6);
        }
        ::close(events);
    }
    report(state, times, 2, 10);
}

static constexpr int burstFiles = 10'000;

// 10,000 files rated as fast as one program can: milliseconds from its end until the query has
// them all, at most what a first crawl of as many takes and 200 more.
static void burst(benchmark::State &state)
{
    double late = 0;
    double crawl = 0;
    for ([[maybe_unused]] auto _ : state) {
        LiveScene scene(QStringLiteral("kMDItemStarRating == 5"));
        scene.keeper().sync(true);
        scene.begin();
        QDir(scene.root()).mkdir(QStringLiteral("burst"));
        for (int i = 0; i < burstFiles; ++i) {
            QFile file(scene.root() + QStringLiteral("/burst/burst-%1.txt").arg(i));
            if (!file.open(QIODevice::WriteOnly))
                std::abort();
        }
        scene.keeper().sync(true);
        {
            const XPBench::StoreFolder other;
            const qint64 start = monotonicNow();
            XPBench::keep(other.store(), {scene.root()})->sync(false);
            crawl = static_cast<double>(monotonicNow() - start) / 1e6;
        }
        scene.mutator().begin("touch " + scene.path("burst") + ' ' +
                              QByteArray::number(burstFiles));
        scene.waitFor([&] { return scene.query().resultCount() == burstFiles; }, "all files");
        late = static_cast<double>(scene.lastSeen() - scene.mutator().times().done) / 1e6;
    }
    XPBench::valueAtMost(state, late, crawl + 200);
}

BENCHMARK(idle)->Name("indexLive_ms")->Arg(50)->Arg(99)->Iterations(1);
BENCHMARK(inotifyAlone)->Name("indexLiveInotifyAlone_ms")->Arg(50)->Arg(99)->Iterations(1);
BENCHMARK(whileCrawling)->Name("indexLiveWhileCrawling_ms")->Arg(99)->Iterations(1);
BENCHMARK(whileImporting)->Name("indexLiveWhileImporting_ms")->Arg(99)->Iterations(1);
BENCHMARK(newText)->Name("indexLiveNewText_ms")->Arg(50)->Iterations(1);
BENCHMARK(burst)->Name("indexLive10000Files_ms")->Iterations(1);
