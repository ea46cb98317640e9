// The importer on mixed documents, beside the same readers and libraries without a process and a
// cage around them; and the pictures of a screenful of PDF files, beside Poppler alone.
#include "DocumentReaders.h"
#include "ImportDocument.h"
#include "ImportWorker.h"
#include "KPDocCache.h"
#include "KPFileType.h"
#include "KPQuickLook.h"
#include "MurnBench.h"
#include "XPFactorySettings.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdlib>
#include <poppler/qt6/poppler-qt6.h>
#include <thread>

static constexpr int mixedCount = 1000;
static constexpr qsizetype screenful = 30;
static constexpr int side = 256;

// Made once, in the folder of the measurements.
static const QStringList &mixed()
{
    static const QStringList files = [] {
        const QString folder = QDir::current().filePath(QStringLiteral("mixed-documents"));
        if (!QDir(folder).exists() && QProcess::execute(QStringLiteral(MURN_MIXED_DOCUMENTS),
                                                        {folder, QString::number(mixedCount)}) != 0)
            std::abort();
        QStringList found;
        QDirIterator walk(folder, QDir::Files, QDirIterator::Subdirectories);
        while (walk.hasNext())
            found.append(walk.next());
        found.sort();
        return found;
    }();
    return files;
}

static QStringList pdfs()
{
    return mixed().filter(QStringLiteral(".pdf")).first(screenful);
}

static ImportDocument opened(const QString &path)
{
    auto document = ImportDocument::open(
        XPPath::encode(path), KPFileType::utiForPath(path, XPPath::extension(path), S_IFREG));
    if (!document)
        std::abort();
    return std::move(document).value();
}

static void importMixed(benchmark::State &state)
{
    ImportWorker worker({.program = MURN_IMPORTER, .idle = false});
    if (!worker.hello())
        std::abort();
    for (auto _ : state) {
        for (const QString &path : mixed()) {
            const ImportDocument document = opened(path);
            const auto outcome = worker.run(document.job(), document.descriptor.get());
            if (!std::holds_alternative<ImportFrame>(outcome))
                std::abort();
        }
    }
    state.SetItemsProcessed(state.iterations() * mixed().size());
    XPBench::timeAtMost(state, 1.5);
}

static void importBare(benchmark::State &state)
{
    for (auto _ : state) {
        for (const QString &path : mixed()) {
            const ImportDocument document = opened(path);
            const ImportJob job = document.job();
            const DocumentSource source(document.descriptor.get(),
                                        {job.size, job.type, job.tree, job.mime, job.extension},
                                        [] { return false; });
            DocumentAnswer answer;
            if (const DocumentReader *reader = documentReaderFor(job.tree))
                (void)reader->read(source, answer);
            benchmark::DoNotOptimize(answer);
        }
    }
    state.SetItemsProcessed(state.iterations() * mixed().size());
}

namespace {

// A cache over shared thumbnails of its own, which are empty at first.
class Screen
{
public:
    Screen()
    {
        XPFactorySettings::registerAll();
        for (const QString &path : pdfs()) {
            KPDoc *doc = KPDocCache::docAtPath(path);
            wanted.push_back({doc, side});
        }
    }
    std::unique_ptr<KPQuickLook> looks(const QString &shared) const
    {
        return std::make_unique<KPQuickLook>(
            KPQuickLook::Setup{{.importer = MURN_IMPORTER,
                                .sharedCache = shared,
                                .failuresFolder = QStringLiteral("murn-bench")},
                               nullptr});
    }
    // Milliseconds until the first picture is there, and until all are.
    std::pair<double, double> show(KPQuickLook &looks) const
    {
        QEventLoop loop;
        QElapsedTimer clock;
        double first = 0;
        QObject::connect(&looks, &KPQuickLook::looksReady, &loop, [&] {
            if (first == 0)
                first = static_cast<double>(clock.nsecsElapsed()) / 1e6;
        });
        QObject::connect(&looks, &KPQuickLook::settled, &loop, &QEventLoop::quit);
        clock.start();
        looks.want(&loop, wanted);
        if (looks.isBusy())
            loop.exec();
        return {first, static_cast<double>(clock.nsecsElapsed()) / 1e6};
    }
    // The importer of the first picture is there once the window is.
    static void warmUp(KPQuickLook &looks)
    {
        QEventLoop loop;
        QObject::connect(&looks, &KPQuickLook::resultsWaiting, &loop, &QEventLoop::quit,
                         Qt::QueuedConnection);
        loop.exec();
    }
    std::vector<KPQuickLook::Wanted> wanted;
};

} // namespace

static void screenNeverSeen(benchmark::State &state)
{
    const Screen screen;
    for (auto _ : state) {
        const QTemporaryDir folder(QDir::current().filePath(QStringLiteral("shared-XXXXXX")));
        const auto looks = screen.looks(folder.path());
        Screen::warmUp(*looks);
        state.SetIterationTime(screen.show(*looks).second / 1e3);
    }
    XPBench::timeAtMost(state, 1.3);
}

static void screenByPoppler(benchmark::State &state)
{
    const QStringList files = pdfs();
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        std::atomic<qsizetype> next = 0;
        const auto work = [&] {
            for (qsizetype i = next++; i < files.size(); i = next++) {
                const auto document = Poppler::Document::load(files[i]);
                document->setRenderHint(Poppler::Document::Antialiasing);
                document->setRenderHint(Poppler::Document::TextAntialiasing);
                const auto page = document->page(0);
                const double scale =
                    side / std::max(page->pageSizeF().width(), page->pageSizeF().height()) * 72;
                benchmark::DoNotOptimize(page->renderToImage(scale, scale));
            }
        };
        std::thread other(work);
        work();
        other.join();
        state.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) / 1e9);
    }
}

static void screenFirstPicture(benchmark::State &state)
{
    const Screen screen;
    double worst = 0;
    for (auto _ : state) {
        const QTemporaryDir folder(QDir::current().filePath(QStringLiteral("shared-XXXXXX")));
        const auto looks = screen.looks(folder.path());
        Screen::warmUp(*looks);
        const double first = screen.show(*looks).first;
        state.SetIterationTime(first / 1e3);
        worst = std::max(worst, first);
    }
    XPBench::valueAtMost(state, worst, 80);
}

static void screenSeenBefore(benchmark::State &state)
{
    const Screen screen;
    const QTemporaryDir folder(QDir::current().filePath(QStringLiteral("shared-XXXXXX")));
    screen.show(*screen.looks(folder.path()));
    double each = 0;
    for (auto _ : state) {
        const auto looks = screen.looks(folder.path());
        Screen::warmUp(*looks);
        const double all = screen.show(*looks).second;
        state.SetIterationTime(all / 1e3);
        each = std::max(each, all / static_cast<double>(screenful));
    }
    XPBench::valueAtMost(state, each, 2);
}

BENCHMARK(importMixed)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(importBare)->Name("importMixed/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(screenNeverSeen)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(screenByPoppler)
    ->Name("screenNeverSeen/baseline")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK(screenFirstPicture)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(screenSeenBefore)->Unit(benchmark::kMillisecond)->UseManualTime();
