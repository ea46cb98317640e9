#include "IndexStore.h"

#include "XPAtomicFile.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QDir>
#include <QScopeGuard>
#include <cstring>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

// --- Statements

IndexStatement::IndexStatement(sqlite3 *db, const char *sql)
{
    m_failed = sqlite3_prepare_v2(db, sql, -1, &m_statement, nullptr) != SQLITE_OK;
}

IndexStatement::~IndexStatement()
{
    sqlite3_finalize(m_statement);
}

IndexStatement &IndexStatement::bind(int at, qint64 value)
{
    m_failed = m_failed || sqlite3_bind_int64(m_statement, at, value) != SQLITE_OK;
    return *this;
}

IndexStatement &IndexStatement::bind(int at, const QByteArray &blob)
{
    m_failed = m_failed || sqlite3_bind_blob64(m_statement, at, blob.constData(),
                                               static_cast<sqlite3_uint64>(blob.size()),
                                               SQLITE_STATIC) != SQLITE_OK;
    return *this;
}

IndexStatement &IndexStatement::bindText(int at, const QByteArray &utf8)
{
    m_failed = m_failed || sqlite3_bind_text64(m_statement, at, utf8.constData(),
                                               static_cast<sqlite3_uint64>(utf8.size()),
                                               SQLITE_STATIC, SQLITE_UTF8) != SQLITE_OK;
    return *this;
}

bool IndexStatement::step()
{
    if (m_failed)
        return false;
    const int result = sqlite3_step(m_statement);
    m_failed = result != SQLITE_ROW && result != SQLITE_DONE;
    return result == SQLITE_ROW;
}

bool IndexStatement::execute()
{
    step();
    return !m_failed;
}

void IndexStatement::reset()
{
    sqlite3_reset(m_statement);
}

qint64 IndexStatement::integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

QByteArray IndexStatement::blob(int column) const
{
    const void *bytes = sqlite3_column_blob(m_statement, column);
    return {static_cast<const char *>(bytes), sqlite3_column_bytes(m_statement, column)};
}

// --- Checksums: against torn and foreign bytes, not against an adversary

static qint64 checksum(QByteArrayView bytes)
{
    quint64 sum = 0x9E3779B97F4A7C15ULL ^ static_cast<quint64>(bytes.size());
    const char *at = bytes.data();
    qsizetype left = bytes.size();
    for (; left >= 8; left -= 8, at += 8) {
        quint64 word = 0;
        std::memcpy(&word, at, 8);
        sum = (sum ^ word) * 0xFF51AFD7ED558CCDULL;
        sum ^= sum >> 32;
    }
    quint64 tail = 0;
    if (left > 0)
        std::memcpy(&tail, at, static_cast<size_t>(left));
    sum = (sum ^ tail) * 0xC4CEB9FE1A85EC53ULL;
    return static_cast<qint64>(sum ^ (sum >> 29));
}

static XPError damaged(const char *what)
{
    return XPError::malformed(QStringLiteral("the index is damaged: ") + QLatin1String(what));
}

// --- Opening

XPError IndexStore::failure() const
{
    const int code = sqlite3_errcode(m_db);
    const QString text = QStringLiteral("the index: ") + QString::fromUtf8(sqlite3_errmsg(m_db));
    XPError::Kind kind = XPError::Kind::Io;
    if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_ERROR)
        kind = XPError::Kind::Malformed;
    else if (code == SQLITE_FULL)
        kind = XPError::Kind::NoSpace;
    else if (code == SQLITE_READONLY || code == SQLITE_CANTOPEN || code == SQLITE_PERM)
        kind = XPError::Kind::NotPermitted;
    return XPError::make(kind, text, m_path);
}

std::optional<XPError> IndexStore::run(const char *sql) const
{
    if (sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        return failure();
    return {};
}

XPResult<std::unique_ptr<IndexStore>> IndexStore::open(const QString &path, Mode mode)
{
    const QByteArray bytes = XPPath::encode(path);
    if (mode == Mode::Write)
        QDir().mkpath(XPPath::folder(path));
    else if (::access(bytes.constData(), R_OK) != 0)
        return XPError::make(XPError::Kind::NotFound, QStringLiteral("there is no index yet"),
                             path);
    sqlite3 *db = nullptr;
    const int flags =
        SQLITE_OPEN_NOMUTEX |
        (mode == Mode::Write ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE : SQLITE_OPEN_READWRITE);
    const int result = sqlite3_open_v2(bytes.constData(), &db, flags, nullptr);
    std::unique_ptr<IndexStore> store(new IndexStore(db, path));
    if (result != SQLITE_OK)
        return store->failure();
    if (auto error = store->setUp(mode))
        return *error;
    return store;
}

std::optional<XPError> IndexStore::setUp(Mode mode)
{
    sqlite3_busy_timeout(m_db, 5000);
    if (mode == Mode::Write) {
        // File names and words of the user's documents stand in here.
        ::chmod(XPPath::encode(m_path).constData(), 0600);
        if (auto error = run("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
                             "PRAGMA journal_size_limit=67108864;"))
            return error;
        if (auto error = run(
                "CREATE TABLE IF NOT EXISTS meta(key TEXT PRIMARY KEY, value BLOB) WITHOUT ROWID;"
                "CREATE TABLE IF NOT EXISTS chunks(number INTEGER PRIMARY KEY, sum INTEGER NOT "
                "NULL, bytes BLOB NOT NULL);"
                "CREATE TABLE IF NOT EXISTS journal(sequence INTEGER PRIMARY KEY, sum INTEGER NOT "
                "NULL, bytes BLOB NOT NULL);"))
            return error;
        m_bell = ::open(XPPath::encode(bellPath(m_path)).constData(),
                        O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    }
    const auto version = meta(QStringLiteral("schema"));
    if (!version)
        return version.error();
    if (version->has_value() && (**version).toInt() != schemaVersion)
        return damaged("another version of the program made it");
    if (!version->has_value()) {
        if (mode == Mode::Read)
            return damaged("it is not finished");
        if (auto error = setMeta(QStringLiteral("schema"), QByteArray::number(schemaVersion)))
            return error;
    }
    const auto saved = meta(QStringLiteral("checkpoint"));
    if (!saved)
        return saved.error();
    m_checkpointSequence = saved->value_or(QByteArray("0")).toLongLong();
    m_lastSequence = m_checkpointSequence;
    return {};
}

IndexStore::~IndexStore()
{
    sqlite3_close_v2(m_db);
    if (m_bell >= 0)
        ::close(m_bell);
}

void IndexStore::setAside(const QString &path)
{
    const auto moved = XPAtomicFile::setAside(path);
    qCWarning(xpLog).noquote() << "The index could not be used and is built anew; the old one is"
                               << (moved ? XPPath::printable(*moved) : QStringLiteral("gone"));
    // These belong to the file that was set aside and would damage the new one.
    for (const char *tail : {"-wal", "-shm"})
        ::unlink(XPPath::encode(path + QLatin1String(tail)).constData());
}

// --- Values

std::optional<XPError> IndexStore::setMeta(const QString &key, const QByteArray &value)
{
    IndexStatement statement(m_db, "INSERT OR REPLACE INTO meta(key, value) VALUES(?1, ?2)");
    const QByteArray name = key.toUtf8();
    if (!statement.bindText(1, name).bind(2, value).execute())
        return failure();
    return {};
}

XPResult<std::optional<QByteArray>> IndexStore::meta(const QString &key) const
{
    IndexStatement statement(m_db, "SELECT value FROM meta WHERE key = ?1");
    const QByteArray name = key.toUtf8();
    if (statement.bindText(1, name).step())
        return std::optional(statement.blob(0));
    if (statement.failed())
        return failure();
    return std::optional<QByteArray>();
}

std::optional<XPError> IndexStore::saveBlob(const char *sql, qint64 key, const QByteArray &bytes)
{
    IndexStatement statement(m_db, sql);
    if (!statement.bind(1, key).bind(2, checksum(bytes)).bind(3, bytes).execute())
        return failure();
    return {};
}

// --- Load, append, checkpoint

std::optional<XPError> IndexStore::load(IndexCatalog &catalog)
{
    // One transaction, so that chunks and journal belong together whatever the writer does.
    if (auto error = run("BEGIN"))
        return error;
    const auto end = qScopeGuard([this] { run("COMMIT"); });
    const auto saved = meta(QStringLiteral("checkpoint"));
    if (!saved)
        return saved.error();
    m_checkpointSequence = saved->value_or(QByteArray("0")).toLongLong();
    m_lastSequence = m_checkpointSequence;
    std::vector<IndexChunk> chunks;
    QByteArray tables;
    IndexStatement rows(m_db, "SELECT number, sum, bytes FROM chunks ORDER BY number");
    while (rows.step()) {
        const QByteArray bytes = rows.blob(2);
        if (rows.integer(1) != checksum(bytes))
            return damaged("a checksum is wrong");
        if (rows.integer(0) < 0) {
            tables = bytes;
            continue;
        }
        if (rows.integer(0) != static_cast<qint64>(chunks.size()))
            return damaged("a part is missing");
        auto chunk = IndexChunk::deserialise(bytes);
        if (!chunk)
            return chunk.error();
        chunks.push_back(*std::move(chunk));
    }
    if (rows.failed())
        return failure();
    if (tables.isEmpty())
        catalog.clear();
    else if (auto error = catalog.load(std::move(chunks), tables))
        return error;
    auto batches = readNew();
    if (!batches)
        return batches.error();
    for (const IndexBatch &batch : *batches)
        catalog.apply(batch);
    return {};
}

XPResult<std::vector<IndexBatch>> IndexStore::readNew()
{
    std::vector<IndexBatch> batches;
    IndexStatement rows(m_db, "SELECT sequence, sum, bytes FROM journal WHERE sequence > ?1 "
                              "ORDER BY sequence");
    rows.bind(1, m_lastSequence);
    while (rows.step()) {
        if (rows.integer(0) != m_lastSequence + 1)
            return XPError::make(XPError::Kind::NotFound,
                                 QStringLiteral("the index's journal has moved on"), m_path);
        const QByteArray bytes = rows.blob(2);
        if (rows.integer(1) != checksum(bytes))
            return damaged("a checksum in the journal is wrong");
        auto batch = decodeIndexBatch(bytes);
        if (!batch)
            return batch.error();
        batches.push_back(*std::move(batch));
        ++m_lastSequence;
    }
    if (rows.failed())
        return failure();
    const auto saved = meta(QStringLiteral("checkpoint"));
    if (!saved)
        return saved.error();
    // A first crawl saves chunks without a journal: what came in between is not to be had singly.
    if (saved->value_or(QByteArray("0")).toLongLong() > m_lastSequence)
        return XPError::make(XPError::Kind::NotFound,
                             QStringLiteral("the index's journal has moved on"), m_path);
    return batches;
}

std::optional<XPError> IndexStore::append(const IndexBatch &batch)
{
    if (auto error = saveBlob("INSERT INTO journal(sequence, sum, bytes) VALUES(?1, ?2, ?3)",
                              m_lastSequence + 1, encodeIndexBatch(batch)))
        return error;
    ++m_lastSequence;
    ringBell();
    return {};
}

std::optional<XPError> IndexStore::checkpoint(IndexCatalog &catalog, bool withoutJournal)
{
    static constexpr qint64 keptForFollowers = 64;
    if (withoutJournal)
        ++m_lastSequence;
    if (auto error = run("BEGIN IMMEDIATE"))
        return error;
    const auto save = [&]() -> std::optional<XPError> {
        const char *sql = "INSERT OR REPLACE INTO chunks(number, sum, bytes) VALUES(?1, ?2, ?3)";
        for (const size_t number : catalog.dirtyChunks()) {
            const QByteArray bytes = catalog.chunk(number).serialise();
            if (auto error = saveBlob(sql, static_cast<qint64>(number), bytes))
                return error;
        }
        if (auto error = saveBlob(sql, -1, catalog.serialiseTables()))
            return error;
        if (auto error = setMeta(QStringLiteral("checkpoint"), QByteArray::number(m_lastSequence)))
            return error;
        IndexStatement purge(m_db, "DELETE FROM journal WHERE sequence <= ?1");
        if (!purge.bind(1, m_lastSequence - keptForFollowers).execute())
            return failure();
        return run("COMMIT");
    };
    if (auto error = save()) {
        (void)run("ROLLBACK");
        return error;
    }
    m_checkpointSequence = m_lastSequence;
    catalog.markSaved();
    ringBell();
    return {};
}

void IndexStore::ringBell() const
{
    // Followers watch the file; what stands in it does not matter.
    if (m_bell >= 0)
        (void)!::pwrite(m_bell, &m_lastSequence, sizeof m_lastSequence, 0);
}
