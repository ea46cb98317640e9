// Queries over a million files in memory, each kind beside the barest loop that could answer it.
#include "IndexBaselines.h"
#include "IndexCorpus.h"
#include "IndexEvaluator.h"
#include "IndexLatency.h"
#include "IndexQuestions.h"
#include "Karvex.h"
#include "MDQuery.h"
#include "MDQueryParser.h"
#include "MurnBench.h"
#include "XPPath.h"

#include <QDateTime>

static IndexSource &million()
{
    static IndexQuestions::MillionSource source;
    return source;
}

static std::unique_ptr<MDQuery> queryFor(const QString &text)
{
    auto query = MDQuery::create(million(), text);
    if (!query) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(text), qPrintable(query.error().message));
        std::abort();
    }
    return *std::move(query);
}

static qsizetype ask(const QString &text)
{
    const auto query = queryFor(text);
    query->execute(MDQuery::Synchronous);
    return query->resultCount();
}

static QString nameQuery(const QString &part)
{
    return QStringLiteral("kMDItemDisplayName == \"*%1*\"cd").arg(part);
}

// --- Names

static void nameContains(benchmark::State &state)
{
    const QStringList &parts = IndexQuestions::nameParts();
    (void)million().catalog();
    // Nothing is known of an earlier search, as with the first letters.
    const auto forget = [](size_t) { million().catalog().recentNames().remember(0, {}, {}); };
    XPBench::measureQuantile(
        state, static_cast<size_t>(parts.size()),
        [&](size_t i) {
            benchmark::DoNotOptimize(ask(nameQuery(parts[static_cast<qsizetype>(i)])));
        },
        forget);
    XPBench::timeAtMost(state, state.range(0) == 50 ? 1.5 : 3);
}

static const IndexBaselines::NameBlob &nameBlob()
{
    static const IndexBaselines::NameBlob blob(million().catalog());
    return blob;
}

static void bareScan(benchmark::State &state)
{
    const QStringList &parts = IndexQuestions::nameParts();
    const IndexBaselines::NameBlob &blob = nameBlob();
    XPBench::measureQuantile(state, static_cast<size_t>(parts.size()), [&](size_t i) {
        benchmark::DoNotOptimize(blob.count(XPPath::encode(parts[static_cast<qsizetype>(i)])));
    });
}

// As somebody types: all but the last letter was asked for just before.
static void nameNextLetter(benchmark::State &state)
{
    QStringList parts;
    for (const QString &part : IndexQuestions::nameParts()) {
        if (part.size() > 3)
            parts.append(part);
    }
    std::unique_ptr<MDQuery> before;
    const auto typed = [&](size_t i) { return parts[static_cast<qsizetype>(i)]; };
    XPBench::measureQuantile(
        state, static_cast<size_t>(parts.size()),
        [&](size_t i) { benchmark::DoNotOptimize(ask(nameQuery(typed(i)))); },
        [&](size_t i) {
            before = queryFor(nameQuery(typed(i).chopped(1)));
            before->execute(MDQuery::Synchronous);
        });
    XPBench::timeAtMost(state, 0.5);
}

BENCHMARK(nameContains)->Name("indexNameContains")->Apply(XPBench::indexQuantiles);
BENCHMARK(bareScan)->Name("indexNameContains/baseline")->Apply(XPBench::indexQuantiles);
BENCHMARK(nameNextLetter)->Name("indexNameNextLetter")->Apply(XPBench::indexQuantiles);
BENCHMARK(bareScan)->Name("indexNameNextLetter/baseline")->Apply(XPBench::indexQuantiles);

// --- Sets that are there already

static void rowSet(benchmark::State &state, const QString &text)
{
    const auto predicate = MDQueryParser::parse(text);
    if (!predicate)
        std::abort();
    const IndexCatalog &catalog = million().catalog();
    const auto rows = [&] {
        const IndexCatalog::Reading reading(catalog);
        return IndexEvaluator(catalog).rows(*predicate);
    };
    if (rows()->isEmpty())
        std::abort();
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        const auto start = XPBench::Clock::now();
        benchmark::DoNotOptimize(rows());
        times.push_back(XPBench::secondsSince(start));
    }
    XPBench::valueAtMost(state, XPBench::quantile(times, 50) * 1e6, 100); // microseconds
}

BENCHMARK_CAPTURE(rowSet, tag,
                  QStringLiteral("kMDItemKXUserTags == \"%1\"cd").arg(IndexCorpusWords::tag(3)))
    ->Name("indexRowsOfTag_us");
BENCHMARK_CAPTURE(rowSet, type, QStringLiteral("kMDItemContentType == \"public.jpeg\""))
    ->Name("indexRowsOfType_us");
BENCHMARK_CAPTURE(rowSet, tree, QStringLiteral("kMDItemContentTypeTree == \"public.image\""))
    ->Name("indexRowsOfTypeTree_us");
BENCHMARK_CAPTURE(rowSet, rating, QStringLiteral("kMDItemStarRating == 4"))
    ->Name("indexRowsOfRating_us");
BENCHMARK_CAPTURE(rowSet, ratings, QStringLiteral("kMDItemStarRating >= 3"))
    ->Name("indexRowsOfRatings_us");
BENCHMARK_CAPTURE(rowSet, managed, QStringLiteral("kMDItemKXManaged == 1"))
    ->Name("indexRowsManaged_us");

// --- Four facts at once

struct FourFacts
{
    QString type;
    quint8 rating;
    bool managed;
    quint16 day; // since 1970
};

static const std::vector<FourFacts> &fourFacts()
{
    static const std::vector<FourFacts> list = [] {
        std::vector<FourFacts> made;
        IndexCorpusWords::Random random(9);
        const char *const types[] = {"com.adobe.pdf", "public.jpeg", "public.plain-text",
                                     "public.html",   "public.png",  "public.mp3"};
        while (made.size() < 60)
            made.push_back({QString::fromLatin1(types[random.below(6)]),
                            static_cast<quint8>(1 + random.below(5)), true,
                            static_cast<quint16>(16436 + random.below(3600))});
        return made;
    }();
    return list;
}

static void joined(benchmark::State &state)
{
    QStringList queries;
    for (const FourFacts &facts : fourFacts())
        queries.append(
            QStringLiteral("kMDItemContentType == \"%1\" && kMDItemStarRating >= %2 && "
                           "kMDItemKXManaged == %3 && "
                           "kMDItemContentModificationDate >= $time.iso(%4)")
                .arg(facts.type)
                .arg(facts.rating)
                .arg(facts.managed ? 1 : 0)
                .arg(QDateTime::fromSecsSinceEpoch((facts.day + 1) * qint64{86400}, Qt::UTC)
                         .toString(Qt::ISODate)));
    const IndexCatalog &catalog = million().catalog();
    std::vector<MDPredicatePtr> predicates;
    qsizetype found = 0;
    for (const QString &query : queries) {
        predicates.push_back(*MDQueryParser::parse(query));
        found += ask(query);
    }
    if (found == 0)
        std::abort();
    XPBench::measureQuantile(state, predicates.size(), [&](size_t i) {
        const IndexCatalog::Reading reading(catalog);
        benchmark::DoNotOptimize(IndexEvaluator(catalog).rows(*predicates[i])->cardinality());
    });
    XPBench::timeAtMost(state, state.range(0) == 50 ? 2 : 4);
}

static void bareColumns(benchmark::State &state)
{
    static const IndexBaselines::PackedColumns columns(million().catalog());
    XPBench::measureQuantile(state, fourFacts().size(), [&](size_t i) {
        const FourFacts &facts = fourFacts()[i];
        benchmark::DoNotOptimize(
            columns.count(columns.typeNumber(facts.type), facts.rating, facts.managed, facts.day));
    });
}

BENCHMARK(joined)->Name("indexFourFacts")->Apply(XPBench::indexQuantiles);
BENCHMARK(bareColumns)->Name("indexFourFacts/baseline")->Apply(XPBench::indexQuantiles);

// --- What a view asks

static void wholeView(benchmark::State &state)
{
    const QStringList &queries = IndexQuestions::wholeViews();
    (void)million().catalog();
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        for (const QString &text : queries) {
            std::vector<double> runs;
            for (int run = 0; run < 3; ++run) {
                const auto start = XPBench::Clock::now();
                const auto query = queryFor(text);
                query->setMaxCount(1000);
                query->setSortOrder(QStringLiteral("kMDItemFSName"));
                query->execute(MDQuery::Synchronous);
                benchmark::DoNotOptimize(query->resultCount());
                runs.push_back(XPBench::secondsSince(start));
            }
            times.push_back(XPBench::quantile(runs, 50));
        }
    }
    if (std::getenv("MURN_BENCH_VERBOSE")) { // NOLINT(concurrency-mt-unsafe): nobody sets it
        for (size_t i = 0; i < times.size(); ++i)
            std::fprintf(stderr, "%9.3f ms  %s\n", times[i] * 1e3,
                         qPrintable(queries[static_cast<qsizetype>(i) % queries.size()]));
    }
    const bool median = state.range(0) == 50;
    XPBench::valueAtMost(state, XPBench::quantile(times, static_cast<double>(state.range(0))) * 1e3,
                         median ? 5 : 16.7);
}

BENCHMARK(wholeView)->Name("indexWholeView_ms")->Arg(50)->Arg(99)->Iterations(1);
