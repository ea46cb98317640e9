// What a person waits for in the window: the whole window over an index, driven by keys, until
// what was asked for is painted. The files of the corpus are nowhere on a disk, so that their
// pictures are those of their types.
#include "CatalogSource.h"
#include "IndexBenchChild.h"
#include "IndexCorpus.h"
#include "IndexLatency.h"
#include "KPArrangedDocs.h"
#include "KPController.h"
#include "KPDocIcons.h"
#include "KPDocMetaData.h"
#include "KPDocsView.h"
#include "KPQuickLook.h"
#include "KPSearchField.h"
#include "KPSearcher.h"
#include "KPTagName.h"
#include "MurnBench.h"
#include "XPFactorySettings.h"
#include "XPMutex.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTimer>

using XPBench::CatalogSource;

namespace {

double since(qint64 start)
{
    return static_cast<double>(XPBench::monotonicNow() - start) / 1e6; // ms
}

// Counts the paints of one widget.
class Paints : public QObject
{
public:
    explicit Paints(QWidget *widget) { widget->installEventFilter(this); }
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

private:
    int m_count = 0;
};

// What is waited for need not come with an event of its own; and what never comes is a fault.
template <typename Condition>
void waitFor(Condition done)
{
    QTimer again;
    again.start(std::chrono::milliseconds(5));
    const qint64 start = XPBench::monotonicNow();
    while (!done()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (since(start) > 30'000) {
            std::fprintf(stderr, "WindowBench: what was ordered never showed\n");
            std::abort();
        }
    }
}

void makeReady()
{
    static const bool isReady = [] {
        KPTagName::intializeGlobals();
        KPDocMetaData::holdFilledValues();
        KPDocIcons::registerIcons();
        XPFactorySettings::registerAll();
        xpGuiThread.assertHere();
        KPQuickLook::Setup pictures;
        pictures.maker.importer = MURN_IMPORTER;
        KPQuickLook::initializeGlobals(pictures);
        qAddPostRoutine([] {
            xpGuiThread.assertHere();
            KPQuickLook::shutDown();
        });
        return true;
    }();
    benchmark::DoNotOptimize(isReady);
}

class Window
{
public:
    explicit Window(qint64 files) : m_source(catalogOf(files))
    {
        QObject::connect(
            &m_window.searcher(), &KPSearcher::delivered, &m_paints, [this](const auto &delivery) {
                if (m_asked && delivery->state->searchString() == m_asked->searchString())
                    m_paintsBefore = m_paints.count();
            });
        m_window.resize(1280, 800);
        m_window.show();
        waitFor([this] { return view().docs().count() > 0 && m_paints.count() > 0; });
    }
    KPDocsView &view() { return m_view; }
    KPController &window() { return m_window; }
    void settle()
    {
        waitFor([this] { return m_window.isSettled(); });
    }

    // From an order to what it leads to on the screen, in milliseconds.
    template <typename Order>
    double untilPainted(Order order)
    {
        const qint64 start = XPBench::monotonicNow();
        const int before = m_paints.count();
        order();
        waitFor([&] { return m_paints.count() > before; });
        return since(start);
    }
    // The same with the first results of the search that the order begins.
    template <typename Order>
    double untilFound(Order order)
    {
        const qint64 start = XPBench::monotonicNow();
        m_paintsBefore.reset();
        order();
        m_asked = m_window.searcher().searchState();
        waitFor([&] { return m_paintsBefore && m_paints.count() > *m_paintsBefore; });
        return since(start);
    }
    void press(int key)
    {
        QWidget *entry = m_window.findChild<KPSearchField *>()->entry();
        const QString text = key < 128 ? QString(QChar(key)).toLower() : QString();
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(entry, &down);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QApplication::sendEvent(entry, &up);
    }

private:
    static const IndexCatalog &catalogOf(qint64 files)
    {
        makeReady();
        return files > 100'000 ? IndexCorpus::million() : IndexCorpus::hundredThousand();
    }

    CatalogSource m_source;
    KPController m_window{m_source, {QStringLiteral("/")}, nullptr};
    KPDocsView &m_view = *m_window.findChild<KPDocsView *>();
    Paints m_paints{m_view.viewport()};
    KPSearchState::Ptr m_asked;
    std::optional<int> m_paintsBefore; // when the results of m_asked came
};

} // namespace

// --- Beginning

// From the window's making to its first results, painted.
static void firstResultsShown(benchmark::State &state)
{
    {
        const Window once(state.range(0)); // the corpus is made
    }
    for ([[maybe_unused]] auto _ : state)
        const Window window(state.range(0));
}
BENCHMARK(firstResultsShown)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->UseRealTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

// A bare window with a list of a thousand rows.
static void bareWindow(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        QStandardItemModel rows;
        for (int i = 0; i < 1000; ++i)
            rows.appendRow(new QStandardItem(QStringLiteral("document %1").arg(i)));
        QListView list;
        list.setModel(&rows);
        const Paints paints(list.viewport());
        list.resize(1280, 800);
        list.show();
        waitFor([&] { return paints.count() > 0; });
    }
}
BENCHMARK(bareWindow)->UseRealTime()->Unit(benchmark::kMillisecond);

// --- Typing

// Milliseconds from a key in the search field to its first results on the screen: words that
// begin anew, letter after letter. Arguments: files, and the quantile in percent.
static void keyToResults(benchmark::State &state)
{
    Window window(state.range(0));
    window.settle();
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        for (const char *word : {"report", "meeting", "river", "notes", "invoice"}) {
            for (const char *letter = word; *letter != 0; ++letter) {
                const int key = Qt::Key_A + (*letter - 'a');
                times.push_back(window.untilFound([&] { window.press(key); }));
            }
            window.settle();
            window.window().findChild<KPSearchField *>()->entry()->selectAll();
            window.press(Qt::Key_Delete);
            window.settle();
        }
    }
    const bool isMedian = state.range(1) == 50;
    const bool isLarge = state.range(0) > 100'000;
    XPBench::valueAtMost(state, XPBench::quantile(times, static_cast<double>(state.range(1))),
                         isMedian ? (isLarge ? 100 : 40) : (isLarge ? 250 : 120));
}
BENCHMARK(keyToResults)
    ->ArgsProduct({{100'000, 1'000'000}, {50, 99}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// --- Looking

// Milliseconds of the longest frame from the first document to the last.
static void longestFrameOfScrolling(benchmark::State &state)
{
    Window window(100'000);
    window.settle();
    QScrollBar *bar = window.view().verticalScrollBar();
    constexpr int steps = 1000;
    for ([[maybe_unused]] auto _ : state) {
        double longest = 0;
        for (int step = 0; step <= steps; ++step) {
            const int place = static_cast<int>(qint64{bar->maximum()} * step / steps);
            if (place != bar->value())
                longest = std::max(longest, window.untilPainted([&] { bar->setValue(place); }));
        }
        XPBench::valueAtMost(state, longest, 16);
    }
}
BENCHMARK(longestFrameOfScrolling)->Iterations(1)->Unit(benchmark::kMillisecond);

// A command, or an entry of a command's menu.
static QAction *actionCalled(KPController &window, const char *id)
{
    if (QAction *action = window.commands().action(id))
        return action;
    const QList<QAction *> actions = window.findChildren<QAction *>();
    const auto called = std::find_if(actions.begin(), actions.end(), [id](const QAction *action) {
        return action->text() == qtTrId(id);
    });
    return called == actions.end() ? nullptr : *called;
}

// Milliseconds of commands over all hundred thousand, until they show.
static void commands(benchmark::State &state, const QList<const char *> &ids, double most)
{
    Window window(100'000);
    window.settle();
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < 5; ++i) {
            for (const char *id : ids) {
                QAction *action = actionCalled(window.window(), id);
                times.push_back(window.untilPainted([&] { action->trigger(); }));
                window.settle();
            }
            window.view().docs().selectRow(0);
            window.settle();
        }
    }
    XPBench::valueAtMost(state, XPBench::quantile(times, 50), most);
}
BENCHMARK_CAPTURE(commands, selectAll, {"KPSelectAll"}, 50)->Iterations(1);
BENCHMARK_CAPTURE(commands, sort, {"KPSortSize", "KPSortName"}, 150)->Iterations(1);
BENCHMARK_CAPTURE(commands, group, {"KPGroupMode", "KPThumbnailMode"}, 150)->Iterations(1);
