#include "IndexStore.h"

#include "IndexBothCores.h"
#include "XPAtomicFile.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QDir>
#include <QScopeGuard>
#include <array>
#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

static constexpr int mostWaiting = 5000; // milliseconds, for what another process holds

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
    m_failed = m_statement == nullptr;
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

// --- Opening

static fs::path segmentFolder(const QString &path)
{
    return (XPPath::encode(path) + ".segments").toStdString();
}

static XPError damaged(const char *what)
{
    return XPError::malformed(QStringLiteral("the index is damaged: ") + QLatin1String(what));
}

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

void IndexStore::setJournal(sqlite3 *&db)
{
    const auto works = [&db](const char *sql) {
        return sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    };
    sqlite3_busy_timeout(db, mostWaiting);
    if (works("PRAGMA journal_mode=WAL; SELECT 1 FROM sqlite_schema") ||
        (sqlite3_errcode(db) & 0xFF) != SQLITE_IOERR)
        return;
    const QByteArray path = sqlite3_db_filename(db, "main");
    const auto openAgain = [&] {
        sqlite3_close_v2(db);
        sqlite3_open_v2(path.constData(), &db, SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE,
                        nullptr);
        sqlite3_busy_timeout(db, mostWaiting);
    };
    // Alone with the file from its first look on it needs no shared memory, so that a log of before
    // can be taken in.
    openAgain();
    works("PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=TRUNCATE");
    openAgain();
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
    sqlite3_busy_timeout(m_db, mostWaiting);
    struct stat rung = {};
    if (::stat(XPPath::encode(bellPath(m_path)).constData(), &rung) == 0)
        m_lastWritten = rung.st_mtim.tv_sec * qint64{1'000'000'000} + rung.st_mtim.tv_nsec;
    if (mode == Mode::Write) {
        // File names and words of the user's documents stand in here.
        ::chmod(XPPath::encode(m_path).constData(), 0600);
        setJournal(m_db);
        if (auto error = run("PRAGMA synchronous=NORMAL; PRAGMA journal_size_limit=67108864;"))
            return error;
        if (auto error = run(
                "CREATE TABLE IF NOT EXISTS meta(key TEXT PRIMARY KEY, value BLOB) WITHOUT ROWID;"
                "CREATE TABLE IF NOT EXISTS segments(number INTEGER PRIMARY KEY, file TEXT NOT "
                "NULL, sum INTEGER NOT NULL, size INTEGER NOT NULL);"
                "CREATE TABLE IF NOT EXISTS journal(sequence INTEGER PRIMARY KEY, sum INTEGER NOT "
                "NULL, bytes BLOB NOT NULL);"))
            return error;
        std::error_code ignored; // writing a segment will tell
        fs::create_directories(segmentFolder(m_path), ignored);
        sweepSegments();
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

std::optional<XPError> IndexStore::becomeWriter(IndexCatalog &catalog)
{
    // The rows may stand elsewhere than in the segments of the process that was the writer.
    catalog.markUnsaved();
    m_savedOrder = ~0ULL;
    const qint64 last = m_lastSequence;
    auto error = setUp(Mode::Write);
    m_lastSequence = last;
    return error;
}

IndexStore::~IndexStore()
{
    sqlite3_close_v2(m_db);
    if (m_bell >= 0)
        ::close(m_bell);
}

XPMutex &IndexStore::names()
{
    static XPMutex mutex;
    return mutex;
}

static void removeFiles(const QString &path)
{
    for (const char *tail : {"", "-wal", "-shm"})
        ::unlink(XPPath::encode(path + QLatin1String(tail)).constData());
    std::error_code ignored;
    fs::remove_all(segmentFolder(path), ignored);
}

void IndexStore::setAside(const QString &path)
{
    const XPLocker lock(names());
    const auto moved = XPAtomicFile::setAside(path);
    qCWarning(xpLog).noquote() << "The index could not be used and is built anew; the old one is"
                               << (moved ? XPPath::printable(*moved) : QStringLiteral("gone"));
    // These belong to the file that was set aside and would damage the new one.
    removeFiles(path);
}

void IndexStore::remove(const QString &path)
{
    const XPLocker lock(names());
    removeFiles(path);
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

// --- Load, append, checkpoint

std::optional<XPError> IndexStore::load(IndexCatalog &catalog)
{
    // A follower may find that a segment was replaced and deleted meanwhile: then once more.
    std::optional<XPError> error;
    for (int attempt = 0; attempt < 3; ++attempt) {
        // One transaction, so that segments and journal belong together whatever the writer does.
        if (error = run("BEGIN"); error)
            return error;
        const auto end = qScopeGuard([this] { (void)run("COMMIT"); });
        error = loadSegments(catalog);
        if (error && error->kind == XPError::Kind::NotFound)
            continue;
        if (error)
            return error;
        auto batches = readNew();
        if (!batches)
            return batches.error();
        for (const IndexBatch &batch : *batches)
            catalog.apply(batch);
        return {};
    }
    return damaged("a part is missing");
}

std::optional<XPError> IndexStore::loadSegments(IndexCatalog &catalog)
{
    const auto saved = meta(QStringLiteral("checkpoint"));
    if (!saved)
        return saved.error();
    m_checkpointSequence = saved->value_or(QByteArray("0")).toLongLong();
    m_lastSequence = m_checkpointSequence;
    m_journalBytes = 0;
    auto segments = readSegments();
    if (!segments)
        return segments.error();
    m_segmentBytes = 0;
    if (segments->empty()) {
        catalog.clear();
        return {};
    }
    IndexCatalog::Loading loading;
    std::vector<const Segment *> chunks;
    for (const auto &[number, segment] : *segments) {
        m_segmentBytes += segment.size;
        if (number >= 0 && number != static_cast<qint64>(chunks.size()))
            return damaged("a part is missing");
        if (number >= 0)
            chunks.push_back(&segment);
    }
    loading.chunks.resize(chunks.size());
    // On both cores: reading what is in memory already is mostly checking and copying, and the
    // tables take as long as half of the chunks.
    std::atomic<size_t> next = 0;
    const auto readChunks = [&](std::optional<XPError> &error) {
        for (size_t i = next++; i < chunks.size() && !error; i = next++) {
            error = readSegment(*chunks[i], [&](IndexSegment::Reader &in) {
                auto chunk = IndexChunk::read(in);
                if (!chunk)
                    return false;
                loading.chunks[i] = std::make_unique<IndexChunk>(*std::move(chunk));
                return true;
            });
        }
    };
    std::array<std::optional<XPError>, 2> errors;
    indexRunBoth(
        [&] {
            errors[0] = loadTables(*segments, loading);
            readChunks(errors[0]);
        },
        [&] { readChunks(errors[1]); });
    for (const auto &error : errors) {
        if (error)
            return error;
    }
    if (auto error = catalog.load(std::move(loading)))
        return error;
    m_savedOrder = catalog.nameOrderVersion();
    return {};
}

std::optional<XPError> IndexStore::loadTables(const Segments &segments,
                                              IndexCatalog::Loading &loading) const
{
    const auto names = segments.find(namesSegment);
    if (names != segments.end()) {
        const Segment &segment = names->second;
        const auto read = [&](IndexSegment::Reader &in) {
            return in.read(&loading.nameRanks,
                           static_cast<quint64>(segment.size) / sizeof(quint32));
        };
        if (auto error = readSegment(segment, read))
            return error;
    }
    const auto tables = segments.find(tablesSegment);
    if (tables == segments.end())
        return damaged("a part is missing");
    const Segment &segment = tables->second;
    QByteArray bytes;
    const auto read = [&](IndexSegment::Reader &in) {
        return in.read(&bytes, static_cast<quint64>(segment.size));
    };
    if (auto error = readSegment(segment, read))
        return error;
    return loading.readTables(bytes) ? std::nullopt : std::optional(damaged("damaged tables"));
}

std::optional<XPError>
IndexStore::readSegment(const Segment &segment,
                        const std::function<bool(IndexSegment::Reader &in)> &read) const
{
    IndexSegment::Reader in(segmentPath(segment.file));
    if (in.error())
        return XPError::fromErrno(in.error(), m_path);
    if (!read(in) || !in.atEnd() || static_cast<qint64>(in.sum()) != segment.sum)
        return damaged("a part of it does not check");
    return {};
}

XPResult<IndexStore::Segments> IndexStore::readSegments() const
{
    Segments segments;
    IndexStatement rows(m_db, "SELECT number, file, sum, size FROM segments");
    while (rows.step()) {
        const QByteArray file = rows.blob(1);
        if (file.contains('/'))
            return damaged("a part has a strange name");
        segments[rows.integer(0)] = {file, rows.integer(2), rows.integer(3)};
    }
    if (rows.failed())
        return failure();
    return segments;
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
        if (rows.integer(1) != static_cast<qint64>(IndexSegment::checksum(bytes)))
            return damaged("a checksum in the journal is wrong");
        auto batch = decodeIndexBatch(bytes);
        if (!batch)
            return batch.error();
        batches.push_back(*std::move(batch));
        m_journalBytes += bytes.size();
        ++m_lastSequence;
    }
    if (rows.failed())
        return failure();
    const auto saved = meta(QStringLiteral("checkpoint"));
    if (!saved)
        return saved.error();
    // A first crawl saves segments without a journal: what came in between is not to be had singly.
    if (saved->value_or(QByteArray("0")).toLongLong() > m_lastSequence)
        return XPError::make(XPError::Kind::NotFound,
                             QStringLiteral("the index's journal has moved on"), m_path);
    return batches;
}

std::optional<XPError> IndexStore::append(const IndexBatch &batch)
{
    const QByteArray bytes = encodeIndexBatch(batch);
    IndexStatement statement(m_db, "INSERT INTO journal(sequence, sum, bytes) VALUES(?1, ?2, ?3)");
    if (!statement.bind(1, m_lastSequence + 1)
             .bind(2, static_cast<qint64>(IndexSegment::checksum(bytes)))
             .bind(3, bytes)
             .execute())
        return failure();
    ++m_lastSequence;
    m_journalBytes += bytes.size();
    ringBell();
    return {};
}

std::optional<XPError> IndexStore::checkpoint(IndexCatalog &catalog, bool withoutJournal)
{
    if (withoutJournal)
        ++m_lastSequence;
    if (auto error = run("BEGIN IMMEDIATE"))
        return error;
    if (auto error = saveTransaction(catalog)) {
        (void)run("ROLLBACK");
        return error;
    }
    m_checkpointSequence = m_lastSequence;
    m_journalBytes = 0;
    m_savedOrder = catalog.nameOrderVersion();
    catalog.markSaved();
    sweepSegments();
    ringBell();
    return {};
}

std::optional<XPError> IndexStore::saveTransaction(const IndexCatalog &catalog)
{
    static constexpr qint64 keptForFollowers = 64;
    if (auto error = saveChanged(catalog))
        return error;
    if (auto error = setMeta(QStringLiteral("checkpoint"), QByteArray::number(m_lastSequence)))
        return error;
    IndexStatement purge(m_db, "DELETE FROM journal WHERE sequence <= ?1");
    if (!purge.bind(1, m_lastSequence - keptForFollowers).execute())
        return failure();
    return run("COMMIT");
}

std::optional<XPError> IndexStore::saveChanged(const IndexCatalog &catalog)
{
    for (size_t number = 0; number < catalog.chunkCount(); ++number) {
        const IndexChunk &chunk = catalog.chunk(number);
        if (!chunk.dirty)
            continue;
        IndexSegment::Writer segment;
        chunk.write(segment);
        if (auto error = saveSegment(static_cast<qint64>(number), segment))
            return error;
    }
    IndexStatement fewer(m_db, "DELETE FROM segments WHERE number >= ?1");
    if (!fewer.bind(1, static_cast<qint64>(catalog.chunkCount())).execute())
        return failure();
    if (m_savedOrder != catalog.nameOrderVersion()) {
        IndexSegment::Writer names;
        names.add(catalog.nameOrder());
        if (auto error = saveSegment(namesSegment, names))
            return error;
    }
    const QByteArray bytes = catalog.serialiseTables();
    IndexSegment::Writer tables;
    tables.add(bytes);
    return saveSegment(tablesSegment, tables);
}

// --- Segments

QByteArray IndexStore::segmentPath(const QByteArray &file) const
{
    return QByteArray::fromStdString(segmentFolder(m_path) / file.toStdString());
}

std::optional<XPError> IndexStore::saveSegment(qint64 number, const IndexSegment::Writer &segment)
{
    const QByteArray file = QByteArray::number(m_nextFile++);
    if (auto error = segment.write(segmentPath(file)))
        return error;
    IndexStatement row(m_db, "INSERT OR REPLACE INTO segments(number, file, sum, size) "
                             "VALUES(?1, ?2, ?3, ?4)");
    const bool good = row.bind(1, number)
                          .bindText(2, file)
                          .bind(3, static_cast<qint64>(segment.sum()))
                          .bind(4, segment.size())
                          .execute();
    return good ? std::nullopt : std::optional(failure());
}

void IndexStore::sweepSegments()
{
    const auto segments = readSegments();
    if (!segments)
        return;
    std::set<QByteArray> used;
    m_segmentBytes = 0;
    for (const auto &[number, segment] : *segments) {
        used.insert(segment.file);
        m_segmentBytes += segment.size;
    }
    // What was replaced just now may be in a follower's hands: it goes the next time.
    const std::set<QByteArray> gone = std::exchange(m_superseded, {});
    std::error_code ignored;
    for (const auto &entry : fs::directory_iterator(segmentFolder(m_path), ignored)) {
        const auto file = QByteArray::fromStdString(entry.path().filename());
        m_nextFile = std::max(m_nextFile, file.toLongLong() + 1);
        if (used.contains(file))
            continue;
        if (gone.contains(file))
            ::unlink(segmentPath(file).constData());
        else
            m_superseded.insert(file);
    }
}

void IndexStore::rest()
{
    // A follower that is still reading what goes now finds out and loads once more.
    if (!m_superseded.empty())
        sweepSegments();
    sqlite3_db_release_memory(m_db);
}

void IndexStore::ringBell() const
{
    // Followers watch the file; what stands in it does not matter.
    if (m_bell >= 0)
        (void)!::pwrite(m_bell, &m_lastSequence, sizeof m_lastSequence, 0);
}
