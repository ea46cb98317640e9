// What stands around the results: the steps of the search, and the counts beside a list's rows.
#include "CatalogSource.h"
#include "IndexCorpus.h"
#include "IndexLook.h"
#include "KPActiveFolders.h"
#include "KPBookmarks.h"
#include "KPCrumbController.h"
#include "KPCrumbTrail.h"
#include "KPRowCounts.h"
#include "KPSearcher.h"
#include "KPTagName.h"
#include "MDQuery.h"
#include "MurnBench.h"

#include <QApplication>
#include <QHash>
#include <QPixmap>
#include <QTemporaryDir>

using XPBench::CatalogSource;

// --- The crumb trail

namespace {

class Navigator : public KPNavigator
{
public:
    explicit Navigator(IndexSource &source) : m_searcher(source) {}

    KPSearcher &searcher() override { return m_searcher; }
    void setSearchStateAndUpdateUI(const KPSearchState::Ptr &state, bool addToHistory,
                                   const SourceItem &, const LocationItem &) override
    {
        m_searcher.setSearchState(state, addToHistory);
    }
    void doSearch(const QString &, bool, bool) override {}
    void showSimilarDocuments(const KPDoc::Docs &) override {}
    bool userIsCurrentlyTyping() const override { return false; }
    void manageWindowTitle() override {}
    void showTagMenu(KPTagName *, const QPoint &) override {}

private:
    KPSearcher m_searcher;
};

// Seven criteria, of which a tag takes turns.
KPSearchState::Ptr manyCriteria(int turn)
{
    return KPSearchState::blankSearchState()
        ->searchStateByAddingTag(QStringLiteral("tag %1").arg(turn))
        ->searchStateByAddingTag(QStringLiteral("work"))
        ->searchStateByAddingExcludeTag(QStringLiteral("draft"))
        ->searchStateWithNewRating(QStringLiteral(">= 3"))
        ->searchStateWithNewUTIs(KPTagName::arrayOfUTIsToKPTagNames(
            {QStringLiteral("com.adobe.pdf"), QStringLiteral("public.plain-text")}))
        ->searchStateWithNewSearchString(QStringLiteral("river boat"), false, false, true);
}

} // namespace

static void drawCrumbTrail(benchmark::State &state)
{
    const IndexCatalog nothing;
    CatalogSource source(nothing);
    Navigator navigator(source);
    KPCrumbController controller(navigator);
    KPCrumbTrail trail(controller);
    trail.resize(1200, trail.sizeHint().height());
    trail.show();
    QPixmap picture(trail.size());
    int turn = 0;
    for ([[maybe_unused]] auto _ : state) {
        const KPSearchState::Ptr shown = manyCriteria(++turn % 2);
        controller.applyState(shown);
        while (!trail.crumbs().state()->isEqualToSearchState(*shown))
            QCoreApplication::processEvents();
        trail.render(&picture);
    }
    state.SetItemsProcessed(state.iterations());
    XPBench::itemsPerSecondAtLeast(state, 250); // 4 ms
}
BENCHMARK(drawCrumbTrail)->Unit(benchmark::kMillisecond);

// --- Counts of rows

static const char *const types[] = {
    "com.adobe.pdf",      "public.plain-text", "public.jpeg", "public.png",
    "public.html",        "public.rtf",        "public.mp3",  "public.mpeg-4",
    "public.zip-archive", "public.xml",        "public.json", "public.comma-separated-values-text"};

// Sixty rows over a million files, from rows that are wanted to counts on the main thread; which
// files are documents at all is known by then.
static void countRows(benchmark::State &state)
{
    CatalogSource source(IndexCorpus::million());
    KPRowCounts counts(source);
    KPRowCounts::Rows rows;
    for (int i = 0; i < 60; ++i) {
        const auto type = QLatin1String(types[static_cast<size_t>(i) % std::size(types)]);
        auto wanted = KPSearchState::blankSearchState()
                          ->searchStateWithNewContstraintFolders({QStringLiteral("/")})
                          ->searchStateWithNewManagedDocuments(false)
                          ->searchStateWithNewUTIs(KPTagName::arrayOfUTIsToKPTagNames({type}));
        if (const size_t of = static_cast<size_t>(i) / std::size(types); of > 0)
            wanted = wanted->searchStateWithNewRating(QStringLiteral("= %1").arg(of));
        rows.insert(QString::number(i), wanted);
    }
    const auto count = [&] {
        counts.setRows(rows);
        while (!std::all_of(rows.keyBegin(), rows.keyEnd(),
                            [&](const QString &row) { return counts.count(row).has_value(); }))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    count();
    if (counts.count(QStringLiteral("0")).value_or(0) < 1000)
        state.SkipWithError("too few are counted");
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        counts.setRows({{QStringLiteral("none"), KPSearchState::blankSearchState()}});
        while (!counts.count(QStringLiteral("none")).has_value())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        state.ResumeTiming();
        count();
    }
    XPBench::timeAtMost(state, 1.5);
}
BENCHMARK(countRows)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

// One pass over all files that counts them by their type.
static void facetPass(benchmark::State &state)
{
    CatalogSource source(IndexCorpus::million());
    const auto query = *MDQuery::create(source, QStringLiteral("kMDItemFSName == *"));
    query->execute(MDQuery::Synchronous);
    for ([[maybe_unused]] auto _ : state) {
        QHash<QString, int> counted;
        const IndexLook look(source);
        for (qsizetype i = 0; i < query->resultCount(); ++i)
            ++counted[look.at(query->itemAt(i))->type()];
        benchmark::DoNotOptimize(counted);
    }
}
BENCHMARK(facetPass)->Name("countRows/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();

// --- Trees

// A node of a tree of a hundred thousand folders, opened: the first one, with all below it, and
// one far inside.
static void openNode(benchmark::State &state)
{
    KPActiveFolders::Table table;
    for (int top = 0; top < 50; ++top) {
        for (int middle = 0; middle < 40; ++middle) {
            for (int folder = 0; folder < 50; ++folder)
                table.insert(KPPool::pooledString(QStringLiteral("/home/user/top %1/middle %2/%3")
                                                      .arg(top)
                                                      .arg(middle)
                                                      .arg(folder)),
                             1);
            table.insert(KPPool::pooledString(
                             QStringLiteral("/home/user/top %1/middle %2").arg(top).arg(middle)),
                         50);
        }
        table.insert(KPPool::pooledString(QStringLiteral("/home/user/top %1").arg(top)), 2000);
    }
    table.insert(KPPool::pooledString(QStringLiteral("/home/user")), 100'000);
    const KPActiveFolders folders(table);
    qint64 opened = 0;
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &node :
             {QStringLiteral("/home/user"), QStringLiteral("/home/user/top 7/middle 3")}) {
            benchmark::DoNotOptimize(folders.below({node}));
            ++opened;
        }
    }
    state.SetItemsProcessed(opened);
    XPBench::itemsPerSecondAtLeast(state, 62.5); // 16 ms
}
BENCHMARK(openNode)->Unit(benchmark::kMillisecond);

// Five thousand bookmarks, read as at the start.
static void readBookmarks(benchmark::State &state)
{
    const QTemporaryDir folder(QDir::currentPath() + QStringLiteral("/bookmarks-XXXXXX"));
    const QString file = folder.filePath(QStringLiteral("bookmarks.plist"));
    QList<KPBookmark> many;
    for (int i = 0; i < 5000; ++i)
        many.append(KPBookmark::search(QStringLiteral("bookmark %1").arg(i), *manyCriteria(i)));
    {
        KPBookmarks made(file);
        if (made.insert(many))
            state.SkipWithError("they cannot be kept");
    }
    for ([[maybe_unused]] auto _ : state) {
        const KPBookmarks bookmarks(file);
        benchmark::DoNotOptimize(bookmarks.root().children.size());
    }
}
BENCHMARK(readBookmarks)->Unit(benchmark::kMillisecond);
