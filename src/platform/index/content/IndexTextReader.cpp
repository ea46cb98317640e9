#include "IndexTextReader.h"

#include "IndexStore.h"
#include "IndexTextTokenizer.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <algorithm>
#include <fcntl.h>
#include <sqlite3.h>

// A wildcard word stands for so many words of the index at most; those asked of FTS5 at once.
static constexpr size_t mostWords = 20'000;
static constexpr size_t wordsATime = 100;

void IndexTextReader::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

IndexTextReader::Statement IndexTextReader::prepare(const QByteArray &sql) const
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v3(m_db, sql.constData(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    return Statement(statement);
}

XPError IndexTextReader::failure() const
{
    return XPError::make(XPError::Kind::Io, QStringLiteral("the index of contents: ") + m_failure,
                         m_path);
}

// At once, as the next call, be it a COMMIT, overwrites what SQLite knows of it.
bool IndexTextReader::fail()
{
    const int code = m_db ? sqlite3_errcode(m_db) & 0xFF : SQLITE_NOMEM; // without the extension
    m_damaged = code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
    m_failure = QString::fromUtf8(m_db ? sqlite3_errmsg(m_db) : "out of memory");
    return false;
}

XPResult<std::unique_ptr<IndexTextReader>> IndexTextReader::open(const QString &path)
{
    const QByteArray bytes = XPPath::encode(path);
    const XPLocker lock(IndexStore::names());
    const auto info = XPFileInfo::readAt(AT_FDCWD, bytes.constData());
    if (!info)
        return info.error();
    std::unique_ptr<IndexTextReader> reader(new IndexTextReader(path));
    reader->m_device = info->device;
    reader->m_inode = info->inode;
    // Not read-only, as a reader may be the first to need the shared memory of the log.
    if (sqlite3_open_v2(bytes.constData(), &reader->m_db,
                        SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        reader->fail();
        return reader->failure();
    }
    sqlite3_busy_timeout(reader->m_db, 5000);
    // The log belongs to the writer: a reader of a file that was set aside, where it is the last
    // one, would put the next file's log into that and delete it.
    sqlite3_db_config(reader->m_db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    // Opens the log. What fails here fails again when something is asked.
    (void)sqlite3_exec(reader->m_db, "SELECT 1 FROM sqlite_schema", nullptr, nullptr, nullptr);
    reader->m_begin = reader->prepare("BEGIN");
    reader->m_commit = reader->prepare("COMMIT");
    reader->m_version = reader->prepare("PRAGMA data_version");
    if (!registerIndexTokenizers(reader->m_db) || !reader->m_version) {
        reader->fail();
        return reader->failure();
    }
    return reader;
}

IndexTextReader::~IndexTextReader()
{
    m_generations.clear();
    m_begin.reset();
    m_commit.reset();
    m_version.reset();
    sqlite3_close_v2(m_db);
}

bool IndexTextReader::isCurrent() const
{
    const auto info = XPFileInfo::readAt(AT_FDCWD, XPPath::encode(m_path).constData());
    return info && info->device == m_device && info->inode == m_inode;
}

bool IndexTextReader::step(sqlite3_stmt *statement)
{
    const int result = sqlite3_step(statement);
    sqlite3_reset(statement);
    return result == SQLITE_ROW || result == SQLITE_DONE || fail();
}

bool IndexTextReader::begin()
{
    if (!step(m_begin.get()))
        return false;
    const bool known = sqlite3_step(m_version.get()) == SQLITE_ROW || fail();
    if (known)
        m_now = sqlite3_column_int64(m_version.get(), 0);
    sqlite3_reset(m_version.get());
    if (known && (m_generationsRead == m_now || readGenerations())) {
        m_generationsRead = m_now;
        return true;
    }
    end();
    return false;
}

void IndexTextReader::end()
{
    step(m_commit.get());
}

bool IndexTextReader::readGenerations()
{
    const Statement rows = prepare("SELECT number FROM generations ORDER BY number");
    std::vector<Generation> generations;
    int result = rows ? SQLITE_ROW : SQLITE_ERROR;
    while (rows && (result = sqlite3_step(rows.get())) == SQLITE_ROW) {
        Generation generation;
        generation.number = sqlite3_column_int64(rows.get(), 0);
        const auto known =
            std::find_if(m_generations.begin(), m_generations.end(), [&](const Generation &other) {
                return other.number == generation.number;
            });
        if (known != m_generations.end()) {
            generation.words = std::move(known->words);
            generation.heads = std::move(known->heads);
        } else {
            const QByteArray number = QByteArray::number(generation.number);
            generation.words = prepare("SELECT rowid FROM words" + number + " WHERE words" +
                                       number + " MATCH ?1 AND rowid BETWEEN ?2 AND ?3");
            generation.heads = prepare("SELECT rowid FROM heads" + number + " WHERE heads" +
                                       number + " MATCH ?1 AND rowid BETWEEN ?2 AND ?3");
        }
        if (!generation.words || !generation.heads)
            return fail();
        generations.push_back(std::move(generation));
    }
    if (result != SQLITE_DONE)
        return fail();
    m_generations = std::move(generations);
    return true;
}

bool IndexTextReader::readDocuments(IndexTextDocuments &documents)
{
    if (m_documentsRead == m_now && documents.next() >= m_documentsNext)
        return true;
    // Rows hold as many documents as were stored at once; the first new one may stand inside.
    const Statement rows =
        prepare("SELECT first, entries FROM docs WHERE first >= coalesce((SELECT max(first) FROM "
                "docs WHERE first <= ?1), 0) ORDER BY first");
    if (!rows || sqlite3_bind_int64(rows.get(), 1, documents.next()) != SQLITE_OK)
        return fail();
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(rows.get())) == SQLITE_ROW) {
        const qint64 first = sqlite3_column_int64(rows.get(), 0);
        const QByteArrayView bytes(static_cast<const char *>(sqlite3_column_blob(rows.get(), 1)),
                                   sqlite3_column_bytes(rows.get(), 1));
        if (first > documents.next())
            documents.clear(static_cast<quint32>(first)); // what was known is dropped by now
        const auto known = qsizetype(documents.next() - first) * qsizetype{12};
        if (known < bytes.size() && !documents.appendEncoded(bytes.sliced(known))) {
            m_failure = QStringLiteral("the list of documents is damaged");
            m_damaged = true;
            return false;
        }
    }
    if (result != SQLITE_DONE)
        return fail();
    m_documentsRead = m_now;
    m_documentsNext = documents.next();
    return true;
}

bool IndexTextReader::find(const IndexTextExpression::Phrase &phrase, quint32 low, quint32 high,
                           const Take &take)
{
    const QByteArray head = IndexTextExpression::headOf(phrase);
    bool stopped = false;
    for (const Generation &generation : m_generations) {
        bool good = true;
        if (!head.isEmpty())
            good = run(generation.heads.get(), '"' + head + '"', low, high, take, stopped);
        else if (IndexTextExpression::patternIn(phrase) >= 0)
            good = findPattern(generation, phrase, low, high, take, stopped);
        else
            good = run(generation.words.get(), IndexTextExpression::match(phrase), low, high, take,
                       stopped);
        if (!good || stopped)
            return good;
    }
    return true;
}

bool IndexTextReader::run(sqlite3_stmt *statement, const QByteArray &match, quint32 low,
                          quint32 high, const Take &take, bool &stopped)
{
    sqlite3_bind_text64(statement, 1, match.constData(), static_cast<sqlite3_uint64>(match.size()),
                        SQLITE_STATIC, SQLITE_UTF8);
    sqlite3_bind_int64(statement, 2, low);
    sqlite3_bind_int64(statement, 3, high);
    int result = SQLITE_ROW;
    while (!stopped && (result = sqlite3_step(statement)) == SQLITE_ROW)
        stopped = !take(static_cast<quint32>(sqlite3_column_int64(statement, 0)));
    const bool good = stopped || result == SQLITE_DONE || fail();
    sqlite3_reset(statement);
    return good;
}

bool IndexTextReader::findPattern(const Generation &generation,
                                  const IndexTextExpression::Phrase &phrase, quint32 low,
                                  quint32 high, const Take &take, bool &stopped)
{
    const qsizetype at = IndexTextExpression::patternIn(phrase);
    const QByteArray &pattern = phrase[static_cast<size_t>(at)];
    const QByteArray number = QByteArray::number(generation.number);
    const QByteArray table = "CREATE VIRTUAL TABLE IF NOT EXISTS temp.vocabulary" + number +
                             " USING fts5vocab(main, words" + number + ", row)";
    if (sqlite3_exec(m_db, table.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        return fail();
    const auto wildcard = std::find_if(pattern.begin(), pattern.end(), [](char byte) {
        return byte == IndexTextExpression::anyOne || byte == IndexTextExpression::anyRun;
    });
    const QByteArray low8 = pattern.left(wildcard - pattern.begin());
    const QByteArray high8 = low8 + char(0xFF); // no UTF-8 holds this byte
    const Statement words =
        prepare("SELECT term FROM vocabulary" + number + " WHERE term >= ?1 AND term < ?2");
    if (!words)
        return fail();
    sqlite3_bind_text(words.get(), 1, low8.constData(), static_cast<int>(low8.size()),
                      SQLITE_STATIC);
    sqlite3_bind_text(words.get(), 2, high8.constData(), static_cast<int>(high8.size()),
                      SQLITE_STATIC);
    QByteArrayList expressions;
    int result = SQLITE_ROW;
    for (size_t found = 0;
         found < mostWords && (result = sqlite3_step(words.get())) == SQLITE_ROW;) {
        const QByteArray word(reinterpret_cast<const char *>(sqlite3_column_text(words.get(), 0)),
                              sqlite3_column_bytes(words.get(), 0));
        if (!IndexTextExpression::matches(pattern, word))
            continue;
        if (found++ % wordsATime == 0)
            expressions.emplace_back();
        else
            expressions.back() += " OR ";
        expressions.back() += '(' + IndexTextExpression::match(phrase, at, word) + ')';
    }
    if (result != SQLITE_DONE && result != SQLITE_ROW)
        return fail();
    sqlite3_reset(words.get());
    // A document may hold several of the words.
    std::vector<quint32> documents;
    for (const QByteArray &expression : expressions) {
        bool never = false;
        if (!run(
                generation.words.get(), expression, low, high,
                [&](quint32 document) {
                    documents.push_back(document);
                    return true;
                },
                never))
            return false;
    }
    std::sort(documents.begin(), documents.end());
    documents.erase(std::unique(documents.begin(), documents.end()), documents.end());
    for (size_t i = 0; i < documents.size() && !stopped; ++i)
        stopped = !take(documents[i]);
    return true;
}
