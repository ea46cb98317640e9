#include "IndexTextStore.h"

#include "IndexStore.h"
#include "XPPath.h"
#include "XPText.h"

#include <algorithm>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unicode/uscript.h>

static constexpr int textSchema = 1;

static bool isWithoutBlanks(char16_t unit)
{
    if (unit < 0x0E00)
        return false;
    UErrorCode status = U_ZERO_ERROR;
    switch (uscript_getScript(unit, &status)) {
    case USCRIPT_HAN:
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_THAI:
    case USCRIPT_LAO:
    case USCRIPT_KHMER:
    case USCRIPT_MYANMAR:
        return true;
    default:
        return false;
    }
}

QString IndexTextStore::prepared(const QString &text)
{
    const QString folded = foldText(text);
    if (std::none_of(folded.begin(), folded.end(),
                     [](QChar unit) { return isWithoutBlanks(unit.unicode()); }))
        return folded;
    QString spaced;
    spaced.reserve(folded.size() * 2);
    for (const QChar unit : folded) {
        const bool sign = isWithoutBlanks(unit.unicode());
        if (sign)
            spaced += u' ';
        spaced += unit;
        if (sign)
            spaced += u' ';
    }
    return spaced;
}

QByteArray IndexTextStore::expressionFor(const MDPredicate::Value &value)
{
    QString plain;
    for (qsizetype i = 0; i < value.text.size(); ++i) {
        const bool wildcard = static_cast<size_t>(i) < value.wildcard.size() &&
                              value.wildcard[static_cast<size_t>(i)];
        plain += wildcard ? QChar(u' ') : value.text[i];
    }
    const bool prefix = !value.wildcard.empty() && value.wildcard.back();
    QString words;
    for (const QChar unit : prepared(plain))
        words += unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate() ? unit : u' ';
    words = words.simplified();
    if (words.isEmpty())
        return {};
    return '"' + words.toUtf8() + (prefix ? "\" *" : "\"");
}

XPError IndexTextStore::failure(sqlite3 *db) const
{
    const int code = db ? sqlite3_errcode(db) : SQLITE_NOMEM;
    const bool damaged = code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_ERROR;
    return XPError::make(damaged ? XPError::Kind::Malformed : XPError::Kind::Io,
                         QStringLiteral("the index of contents: ") +
                             QString::fromUtf8(db ? sqlite3_errmsg(db) : "out of memory"),
                         m_path);
}

XPResult<std::unique_ptr<IndexTextStore>> IndexTextStore::open(const QString &path, bool writable)
{
    std::unique_ptr<IndexTextStore> store(new IndexTextStore);
    if (auto error = store->setUp(path, writable))
        return *error;
    return store;
}

std::optional<XPError> IndexTextStore::setUp(const QString &path, bool writable)
{
    m_path = path;
    const QByteArray bytes = XPPath::encode(path);
    constexpr int common = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE;
    if (writable) {
        if (sqlite3_open_v2(bytes.constData(), &m_writer, common | SQLITE_OPEN_CREATE, nullptr) !=
            SQLITE_OK)
            return failure(m_writer);
        ::chmod(bytes.constData(), 0600);
        sqlite3_busy_timeout(m_writer, 5000);
        const QByteArray set = "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
                               "CREATE TABLE IF NOT EXISTS docs(item INTEGER PRIMARY KEY, doc "
                               "INTEGER NOT NULL UNIQUE);"
                               "CREATE VIRTUAL TABLE IF NOT EXISTS words USING fts5(body, "
                               "content='', columnsize=0, prefix='2', "
                               "tokenize='unicode61 remove_diacritics 0');"
                               "CREATE TABLE IF NOT EXISTS counter(last INTEGER NOT NULL);"
                               "INSERT INTO counter SELECT 0 WHERE NOT EXISTS "
                               "(SELECT 1 FROM counter);"
                               "PRAGMA user_version=" +
                               QByteArray::number(textSchema) + ';';
        IndexStatement version(m_writer, "PRAGMA user_version");
        const qint64 found = version.step() ? version.integer(0) : -1;
        version.reset();
        if (found != 0 && found != textSchema)
            return XPError::malformed(QStringLiteral("another version made the text index"));
        if (sqlite3_exec(m_writer, set.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            return failure(m_writer);
    }
    const XPLocker lock(m_readMutex);
    if (sqlite3_open_v2(bytes.constData(), &m_reader, common, nullptr) != SQLITE_OK)
        return failure(m_reader);
    sqlite3_busy_timeout(m_reader, 5000);
    return {};
}

IndexTextStore::~IndexTextStore()
{
    sqlite3_close_v2(m_writer);
    const XPLocker lock(m_readMutex);
    sqlite3_close_v2(m_reader);
}

std::vector<IndexItem> IndexTextStore::itemsMatching(const MDPredicate::Value &value,
                                                     qsizetype limit,
                                                     const std::vector<IndexItem> *among) const
{
    const XPLocker lock(m_readMutex);
    const bool present = value.type == MDPredicate::Value::Type::Present;
    const QByteArray expression = expressionFor(value);
    if (!present && expression.isEmpty())
        return {};
    QByteArray sql = present ? "SELECT item FROM docs WHERE ?1 IS NULL"
                             : "SELECT docs.item FROM words JOIN docs ON docs.doc = words.rowid "
                               "WHERE words MATCH ?1";
    if (among)
        sql += present ? " AND item = ?2" : " AND docs.item = ?2";
    else if (limit > 0)
        sql += " LIMIT " + QByteArray::number(limit);
    std::vector<IndexItem> items;
    IndexStatement rows(m_reader, sql.constData());
    if (!present)
        rows.bindText(1, expression);
    if (!among) {
        while (rows.step())
            items.push_back(static_cast<IndexItem>(rows.integer(0)));
        return items;
    }
    for (const IndexItem item : *among) {
        if (rows.bind(2, qint64{item}).step())
            items.push_back(item);
        rows.reset();
        if (limit > 0 && static_cast<qsizetype>(items.size()) == limit)
            break;
    }
    return items;
}

std::optional<XPError> IndexTextStore::put(const std::vector<Text> &texts)
{
    const auto run = [this](const char *sql) {
        return sqlite3_exec(m_writer, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    };
    if (!run("BEGIN IMMEDIATE"))
        return failure(m_writer);
    IndexStatement number(m_writer, "UPDATE counter SET last = last + 1 RETURNING last");
    IndexStatement words(m_writer, "INSERT INTO words(rowid, body) VALUES(?1, ?2)");
    IndexStatement docs(m_writer, "INSERT OR REPLACE INTO docs(item, doc) VALUES(?1, ?2)");
    IndexStatement forget(m_writer, "DELETE FROM docs WHERE item = ?1");
    bool good = true;
    for (const Text &text : texts) {
        if (text.text.isEmpty()) {
            good = good && forget.bind(1, qint64{text.item}).execute();
            forget.reset();
            continue;
        }
        const QByteArray body = prepared(text.text).toUtf8();
        good = good && number.step();
        const qint64 doc = good ? number.integer(0) : 0;
        number.reset();
        good = good && words.bind(1, doc).bindText(2, body).execute() &&
               docs.bind(1, qint64{text.item}).bind(2, doc).execute();
        words.reset();
        docs.reset();
    }
    if (good && run("COMMIT"))
        return {};
    const XPError error = failure(m_writer);
    run("ROLLBACK");
    return error;
}

bool IndexTextStore::isMostlyStale() const
{
    IndexStatement counts(m_writer,
                          "SELECT (SELECT last FROM counter), (SELECT count(*) FROM docs)");
    return counts.step() && counts.integer(0) > 1000 && counts.integer(0) > 2 * counts.integer(1);
}

std::optional<XPError> IndexTextStore::clear()
{
    const char *sql = "BEGIN IMMEDIATE; INSERT INTO words(words) VALUES('delete-all');"
                      "DELETE FROM docs; UPDATE counter SET last = 0; COMMIT;";
    if (sqlite3_exec(m_writer, sql, nullptr, nullptr, nullptr) == SQLITE_OK)
        return {};
    const XPError error = failure(m_writer);
    sqlite3_exec(m_writer, "ROLLBACK", nullptr, nullptr, nullptr);
    return error;
}
