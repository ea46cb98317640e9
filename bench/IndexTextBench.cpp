// The index of contents beside FTS5 alone, with the same documents in transactions of the same
// size: 100,000 documents of one to two kilobytes of prose.
#include "IndexCorpusWords.h"
#include "IndexLatency.h"
#include "IndexTextStore.h"
#include "IndexWords.h"
#include "MurnBench.h"
#include "XPPath.h"

#include <QDir>
#include <QTemporaryDir>
#include <sqlite3.h>
#include <sys/stat.h>

static constexpr IndexItem documentCount = 100'000;
static constexpr qsizetype bytesATime = 2 << 20; // as the queue stores
static constexpr qsizetype firstHits = 1000;

namespace {

struct Documents
{
    std::vector<QByteArray> texts;
    std::vector<QByteArray> folded; // what FTS5 alone is given
    qint64 bytes = 0;

    static const Documents &instance()
    {
        static const Documents documents;
        return documents;
    }

private:
    Documents()
    {
        IndexCorpusWords::Random random(7);
        for (IndexItem i = 0; i < documentCount; ++i) {
            texts.push_back(
                IndexCorpusWords::prose(random, 1000 + static_cast<int>(random.below(1000))));
            bytes += texts.back().size();
            QByteArray words;
            for (const QByteArray &word : IndexWords::of(QString::fromUtf8(texts.back())))
                words += word + ' ';
            folded.push_back(words);
        }
    }
};

// Both indexes, filled once each by the benchmark that measures filling or by the first that asks.
class Indexes
{
public:
    static Indexes &instance()
    {
        static Indexes indexes;
        return indexes;
    }
    IndexTextStore &store()
    {
        if (!m_store)
            fillStore();
        return *m_store;
    }
    sqlite3 *bare()
    {
        if (!m_bare)
            fillBare();
        return m_bare;
    }
    double fillStore();
    double fillBare();
    qint64 storeBytes() const
    {
        struct stat facts = {};
        ::stat(XPPath::encode(path("store")).constData(), &facts);
        return facts.st_size;
    }

private:
    Indexes() = default;
    ~Indexes()
    {
        m_store.reset();
        sqlite3_close_v2(m_bare);
    }
    QString path(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_folder{QDir::current().filePath(QStringLiteral("text-bench-XXXXXX"))};
    std::unique_ptr<IndexTextStore> m_store;
    sqlite3 *m_bare = nullptr;
    int m_fills = 0;
};

} // namespace

double Indexes::fillStore()
{
    const Documents &documents = Documents::instance();
    m_store.reset();
    for (const char *tail : {"", "-wal", "-shm"})
        QFile::remove(path("store") + QLatin1String(tail));
    m_store = *IndexTextStore::open(path("store"), true);
    const auto start = XPBench::Clock::now();
    std::vector<IndexTextStore::Text> batch;
    qsizetype bytes = 0;
    for (IndexItem i = 0; i < documentCount; ++i) {
        batch.push_back({i + 1, documents.texts[i], 1, documents.texts[i].size()});
        bytes += documents.texts[i].size();
        if (bytes < bytesATime && i + 1 < documentCount)
            continue;
        if (m_store->put(batch))
            std::abort();
        batch.clear();
        bytes = 0;
    }
    return XPBench::secondsSince(start);
}

static void run(sqlite3 *db, const char *sql)
{
    if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        std::abort();
}

double Indexes::fillBare()
{
    const Documents &documents = Documents::instance();
    sqlite3_close_v2(m_bare);
    const QByteArray file = XPPath::encode(path("bare")) + QByteArray::number(m_fills++);
    if (sqlite3_open(file.constData(), &m_bare) != SQLITE_OK)
        std::abort();
    run(m_bare, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL; PRAGMA secure_delete=OFF;"
                "CREATE VIRTUAL TABLE words USING fts5(body, content='', columnsize=0, "
                "prefix='2', tokenize='unicode61 remove_diacritics 0')");
    sqlite3_stmt *insert = nullptr;
    sqlite3_prepare_v2(m_bare, "INSERT INTO words(rowid, body) VALUES(?1, ?2)", -1, &insert,
                       nullptr);
    const auto start = XPBench::Clock::now();
    qsizetype bytes = 0;
    run(m_bare, "BEGIN");
    for (IndexItem i = 0; i < documentCount; ++i) {
        const QByteArray &text = documents.folded[i];
        sqlite3_bind_int64(insert, 1, i + 1);
        sqlite3_bind_text(insert, 2, text.constData(), static_cast<int>(text.size()),
                          SQLITE_STATIC);
        if (sqlite3_step(insert) != SQLITE_DONE)
            std::abort();
        sqlite3_reset(insert);
        bytes += text.size();
        if (bytes >= bytesATime) {
            run(m_bare, "COMMIT; BEGIN");
            bytes = 0;
        }
    }
    run(m_bare, "COMMIT");
    const double seconds = XPBench::secondsSince(start);
    sqlite3_finalize(insert);
    return seconds;
}

static void contentImport(benchmark::State &state)
{
    Documents::instance();
    for ([[maybe_unused]] auto _ : state)
        state.SetIterationTime(Indexes::instance().fillStore());
    state.SetItemsProcessed(state.iterations() * documentCount);
    XPBench::speedAtLeast(state, 0.7);
}
BENCHMARK(contentImport)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

static void bareInsert(benchmark::State &state)
{
    Documents::instance();
    for ([[maybe_unused]] auto _ : state)
        state.SetIterationTime(Indexes::instance().fillBare());
    state.SetItemsProcessed(state.iterations() * documentCount);
}
BENCHMARK(bareInsert)
    ->Name("contentImport/baseline")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

static void contentBytesForEachOfText(benchmark::State &state)
{
    Indexes &indexes = Indexes::instance();
    indexes.store();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(indexes.storeBytes());
    XPBench::valueAtMost(state,
                         static_cast<double>(indexes.storeBytes()) /
                             static_cast<double>(Documents::instance().bytes),
                         0.5);
}
BENCHMARK(contentBytesForEachOfText)->Iterations(1);

// --- Questions

// Folded words from the most frequent to rare ones.
static const std::vector<QByteArray> &someWords()
{
    static const std::vector<QByteArray> words = [] {
        std::vector<QByteArray> some;
        const QStringList &all = IndexCorpusWords::vocabulary();
        for (qsizetype rank = 0; rank < all.size() && some.size() < 200; rank += 1 + rank / 8) {
            const std::vector<QByteArray> folded = IndexWords::of(all[rank]);
            if (folded.size() == 1)
                some.push_back(folded.front());
        }
        return some;
    }();
    return words;
}

static std::vector<QByteArray> beginnings(int characters)
{
    std::vector<QByteArray> heads;
    for (const QByteArray &word : someWords()) {
        const QByteArray head = word.left(characters);
        if (head.size() == characters &&
            std::all_of(head.begin(), head.end(), [](char c) { return c > 0; }) &&
            std::find(heads.begin(), heads.end(), head) == heads.end())
            heads.push_back(head);
    }
    return heads;
}

static void ask(benchmark::State &state, const std::vector<QByteArray> &words, bool prefix)
{
    IndexTextStore &store = Indexes::instance().store();
    std::vector<MDPredicate::Value> values;
    for (const QByteArray &word : words) {
        MDPredicate::Value value;
        value.text = QString::fromUtf8(word) + (prefix ? QStringLiteral("*") : QString());
        value.wildcard.assign(static_cast<size_t>(value.text.size()), false);
        value.wildcard.back() = prefix;
        values.push_back(value);
    }
    XPBench::measureQuantile(state, values.size(), [&](size_t i) {
        benchmark::DoNotOptimize(store.itemsMatching(values[i], firstHits, nullptr));
    });
    XPBench::timeAtMost(state, 2);
}

static void askBare(benchmark::State &state, const std::vector<QByteArray> &words, bool prefix)
{
    sqlite3_stmt *select = nullptr;
    sqlite3_prepare_v2(Indexes::instance().bare(),
                       "SELECT rowid FROM words WHERE words MATCH ?1 LIMIT 1000", -1, &select,
                       nullptr);
    XPBench::measureQuantile(state, words.size(), [&](size_t i) {
        const QByteArray match = '"' + words[i] + (prefix ? "\" *" : "\"");
        sqlite3_bind_text(select, 1, match.constData(), static_cast<int>(match.size()),
                          SQLITE_STATIC);
        std::vector<qint64> rows;
        while (sqlite3_step(select) == SQLITE_ROW)
            rows.push_back(sqlite3_column_int64(select, 0));
        sqlite3_reset(select);
        benchmark::DoNotOptimize(rows);
    });
    sqlite3_finalize(select);
}

static void contentWord(benchmark::State &state)
{
    ask(state, someWords(), false);
}
BENCHMARK(contentWord)->Apply(XPBench::indexQuantiles);

static void bareWord(benchmark::State &state)
{
    askBare(state, someWords(), false);
}
BENCHMARK(bareWord)->Name("contentWord/baseline")->Apply(XPBench::indexQuantiles);

static void contentTwoLetters(benchmark::State &state)
{
    ask(state, beginnings(2), true);
}
BENCHMARK(contentTwoLetters)->Apply(XPBench::indexQuantiles);

static void bareTwoLetters(benchmark::State &state)
{
    askBare(state, beginnings(2), true);
}
BENCHMARK(bareTwoLetters)->Name("contentTwoLetters/baseline")->Apply(XPBench::indexQuantiles);

static void contentFourLetters(benchmark::State &state)
{
    ask(state, beginnings(4), true);
}
BENCHMARK(contentFourLetters)->Apply(XPBench::indexQuantiles);

static void bareFourLetters(benchmark::State &state)
{
    askBare(state, beginnings(4), true);
}
BENCHMARK(bareFourLetters)->Name("contentFourLetters/baseline")->Apply(XPBench::indexQuantiles);
