// Words and beginnings of words in the contents of files, as a whole query, beside FTS5 alone over
// the same files with the same options and an index of two-letter beginnings.
#include "IndexBenchKeeper.h"
#include "IndexCorpus.h"
#include "IndexLatency.h"
#include "MDQuery.h"
#include "MurnBench.h"
#include "PlainTexts.h"
#include "XPText.h"

#include <QDirIterator>
#include <QFile>
#include <sqlite3.h>

static constexpr int firstHits = 1000;

static QString corpus()
{
    return IndexCorpus::onDisk(100'000, IndexCorpus::Bodies::Prose);
}

// Words from everywhere in the vocabulary, and the two letters that some of them begin with.
static const QStringList &questions()
{
    static const QStringList list = [] {
        QStringList made;
        IndexCorpusWords::Random random(13);
        while (made.size() < 100) {
            const QString word =
                IndexCorpusWords::vocabulary()[random.zipf(IndexCorpusWords::vocabularySize)];
            made.append(made.size() % 3 == 2 ? word.left(2) + u'*' : word);
        }
        return made;
    }();
    return list;
}

static QString question(size_t i)
{
    return questions()[static_cast<qsizetype>(i)];
}

static void content(benchmark::State &state)
{
    static const XPBench::StoreFolder folder;
    const XPBench::PlainTexts plain;
    const auto keeper = XPBench::keep(folder.store(), {corpus()});
    keeper->sync(true); // imports once; the next time all is there
    qsizetype found = 0;
    XPBench::measureQuantile(state, static_cast<size_t>(questions().size()), [&](size_t i) {
        const auto query = MDQuery::create(
            keeper->source(), QStringLiteral("kMDItemTextContent == \"%1\"cdw").arg(question(i)));
        (*query)->setMaxCount(firstHits);
        (*query)->execute(MDQuery::Synchronous);
        found += (*query)->resultCount();
    });
    if (found == 0)
        std::abort(); // the figure would be of nothing
    XPBench::timeAtMost(state, 2);
}

namespace {

class BareFts
{
public:
    BareFts()
    {
        if (sqlite3_open(m_folder.store().toUtf8().constData(), &m_db) != SQLITE_OK)
            std::abort();
        run("PRAGMA journal_mode=off; CREATE VIRTUAL TABLE words USING fts5(body, content='', "
            "columnsize=0, prefix='2'); BEGIN");
        sqlite3_stmt *insert = prepared("INSERT INTO words(rowid, body) VALUES(?1, ?2)");
        QDirIterator files(corpus(), QDir::Files, QDirIterator::Subdirectories);
        for (sqlite3_int64 number = 1; files.hasNext(); ++number) {
            QFile file(files.next());
            if (!IndexCorpusWords::isTextExtension(files.fileInfo().suffix().toLower().toUtf8()) ||
                !file.open(QIODevice::ReadOnly))
                continue;
            const QByteArray text = foldText(QString::fromUtf8(file.readAll())).toUtf8();
            sqlite3_bind_int64(insert, 1, number);
            sqlite3_bind_text(insert, 2, text.constData(), static_cast<int>(text.size()),
                              SQLITE_STATIC);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        run("COMMIT");
        m_query = prepared("SELECT rowid FROM words WHERE words MATCH ?1 LIMIT ?2");
    }
    ~BareFts()
    {
        sqlite3_finalize(m_query);
        sqlite3_close(m_db);
    }

    int count(const QString &word) const
    {
        const QByteArray expression = word.endsWith(u'*')
                                          ? '"' + foldText(word.chopped(1)).toUtf8() + "\" *"
                                          : '"' + foldText(word).toUtf8() + '"';
        sqlite3_bind_text(m_query, 1, expression.constData(), static_cast<int>(expression.size()),
                          SQLITE_STATIC);
        sqlite3_bind_int(m_query, 2, firstHits);
        int found = 0;
        while (sqlite3_step(m_query) == SQLITE_ROW)
            ++found;
        sqlite3_reset(m_query);
        return found;
    }

private:
    void run(const char *sql) const
    {
        if (sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
            std::abort();
    }
    sqlite3_stmt *prepared(const char *sql) const
    {
        sqlite3_stmt *statement = nullptr;
        if (sqlite3_prepare_v2(m_db, sql, -1, &statement, nullptr) != SQLITE_OK)
            std::abort();
        return statement;
    }

    XPBench::StoreFolder m_folder;
    sqlite3 *m_db = nullptr;
    sqlite3_stmt *m_query = nullptr;
};

} // namespace

static void bareFts(benchmark::State &state)
{
    static const BareFts words;
    XPBench::measureQuantile(state, static_cast<size_t>(questions().size()),
                             [&](size_t i) { benchmark::DoNotOptimize(words.count(question(i))); });
}

BENCHMARK(content)->Name("indexContent")->Apply(XPBench::indexQuantiles);
BENCHMARK(bareFts)->Name("indexContent/baseline")->Apply(XPBench::indexQuantiles);
