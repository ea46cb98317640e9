#include "IndexTextStore.h"

#include "IndexStore.h"
#include "IndexTextTokenizer.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <QScopeGuard>
#include <sqlite3.h>
#include <sys/stat.h>

static constexpr int textSchema = 2;
// Less waste than this is not worth reading files again.
static constexpr qint64 smallestWaste = 16 << 20;
// Rows of documents that were stored a few at a time are joined at the next start.
static constexpr qint64 mostRows = 4096;
static constexpr quint32 documentsARow = 8192;

// SQLite counts its memory under one lock of the whole process, which a thread at idle priority
// may hold for long. Nobody asks for the count; it must be turned off before first use.
[[maybe_unused]] static const int memoryIsNotCounted = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);

static QByteArray createTables(qint64 generation)
{
    // Two tables: positions are needed for phrases, not for beginnings, and cost most of the room.
    const QByteArray number = QByteArray::number(generation);
    return "CREATE VIRTUAL TABLE words" + number +
           " USING fts5(body, content='', columnsize=0, tokenize='murn_words');"
           "CREATE VIRTUAL TABLE heads" +
           number +
           " USING fts5(body, content='', columnsize=0, detail=none, tokenize='murn_heads');";
}

XPError IndexTextStore::failure() const
{
    const int code = m_writer ? sqlite3_errcode(m_writer) : SQLITE_NOMEM;
    XPError::Kind kind = XPError::Kind::Io;
    if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_ERROR)
        kind = XPError::Kind::Malformed;
    else if (code == SQLITE_FULL)
        kind = XPError::Kind::NoSpace;
    return XPError::make(
        kind,
        QStringLiteral("the index of contents: ") +
            QString::fromUtf8(m_writer ? sqlite3_errmsg(m_writer) : "out of memory"),
        m_path);
}

std::optional<XPError> IndexTextStore::run(const QByteArray &sql) const
{
    if (sqlite3_exec(m_writer, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        return failure();
    return {};
}

// --- Opening

XPResult<std::unique_ptr<IndexTextStore>> IndexTextStore::open(const QString &path, bool writable)
{
    std::unique_ptr<IndexTextStore> store(new IndexTextStore(path, writable));
    if (writable) {
        if (auto error = store->openWriter())
            return *error;
    }
    return store;
}

IndexTextStore::~IndexTextStore()
{
    {
        const XPLocker lock(m_mutex);
        m_readers.clear();
    }
    sqlite3_close_v2(m_writer);
}

std::optional<XPError> IndexTextStore::openWriter()
{
    const QByteArray bytes = XPPath::encode(m_path);
    if (sqlite3_open_v2(bytes.constData(), &m_writer,
                        SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                        nullptr) != SQLITE_OK)
        return failure();
    // Words of the user's documents stand in here.
    ::chmod(bytes.constData(), 0600);
    IndexStore::setJournal(m_writer);
    if (!registerIndexTokenizers(m_writer))
        return failure();
    // Freed pages are not overwritten: nothing in a cache of the user's own files is secret from
    // whoever may read those.
    if (auto error = run("PRAGMA synchronous=NORMAL;"
                         "PRAGMA secure_delete=OFF; PRAGMA journal_size_limit=16777216;"))
        return error;
    qint64 found = -1;
    {
        IndexStatement version(m_writer, "PRAGMA user_version");
        if (version.step())
            found = version.integer(0);
        else if (version.failed())
            return failure();
    }
    if (found != 0 && found != textSchema)
        return XPError::malformed(QStringLiteral("another version made the index of contents"));
    if (found == 0) {
        if (auto error = createFile())
            return error;
    }
    return loadDocuments();
}

std::optional<XPError> IndexTextStore::createFile()
{
    const QByteArray sql =
        "BEGIN IMMEDIATE; CREATE TABLE generations(number INTEGER PRIMARY KEY, first INTEGER "
        "NOT NULL); CREATE TABLE docs(first INTEGER PRIMARY KEY, entries BLOB NOT NULL);"
        "INSERT INTO generations VALUES(1, " +
        QByteArray::number(m_next) + ");" + createTables(1) +
        "PRAGMA user_version=" + QByteArray::number(textSchema) + "; COMMIT;";
    auto error = run(sql);
    if (error)
        (void)run("ROLLBACK");
    return error;
}

std::optional<XPError> IndexTextStore::loadDocuments()
{
    const auto reader = IndexTextReader::open(m_path);
    if (!reader)
        return reader.error();
    IndexStatement generations(m_writer, "SELECT number, first FROM generations ORDER BY number");
    qint64 count = 0;
    XPLocker lock(m_mutex);
    for (; generations.step(); ++count) {
        m_table = generations.integer(0);
        m_tableFirst = static_cast<quint32>(generations.integer(1));
        if (count == 0)
            m_documents.clear(m_tableFirst);
    }
    if (generations.failed())
        return failure();
    const bool read = (*reader)->begin() && (*reader)->readDocuments(m_documents);
    (*reader)->end();
    if (count == 0 || !read)
        return XPError::malformed(QStringLiteral("the index of contents is damaged"));
    m_renewing = count > 1;
    m_next = m_documents.next();
    const quint32 first = m_tableFirst;
    lock.unlock();
    IndexStatement rows(m_writer, "SELECT count(*) FROM docs WHERE first >= ?1");
    const bool many = rows.bind(1, qint64{first}).step() && rows.integer(0) > mostRows;
    rows.reset();
    return many ? joinRows(first, m_next) : std::nullopt;
}

// Many small rows of documents become few large ones.
std::optional<XPError> IndexTextStore::joinRows(quint32 first, quint32 next)
{
    std::vector<QByteArray> joined;
    {
        IndexStatement rows(m_writer, "SELECT entries FROM docs WHERE first >= ?1 ORDER BY first");
        rows.bind(1, qint64{first});
        QByteArray entries;
        while (rows.step()) {
            entries += rows.blob(0);
            if (entries.size() >= qsizetype{documentsARow} * qsizetype{12})
                joined.push_back(std::exchange(entries, {}));
        }
        joined.push_back(entries);
        if (rows.failed())
            return failure();
    }
    if (auto error = run("BEGIN IMMEDIATE"))
        return error;
    auto rollback = qScopeGuard([this] { (void)run("ROLLBACK"); });
    if (auto error = run("DELETE FROM docs WHERE first >= " + QByteArray::number(first)))
        return error;
    IndexStatement insert(m_writer, "INSERT INTO docs(first, entries) VALUES(?1, ?2)");
    for (const QByteArray &entries : joined) {
        if (entries.isEmpty())
            continue;
        if (!insert.bind(1, qint64{first}).bind(2, entries).execute())
            return failure();
        insert.reset();
        first += static_cast<quint32>(entries.size() / 12);
    }
    if (first != next)
        return XPError::malformed(QStringLiteral("the index of contents is damaged"));
    rollback.dismiss();
    return run("COMMIT");
}

// --- Writing

XPResult<IndexTextStore::Documents> IndexTextStore::write(const std::vector<Text> &texts)
{
    if (auto error = run("BEGIN IMMEDIATE"))
        return *error;
    auto documents = writeRows(texts);
    if (!documents) {
        (void)run("ROLLBACK");
        return documents;
    }
    if (auto error = run("COMMIT")) {
        (void)run("ROLLBACK");
        return *error;
    }
    m_next += static_cast<quint32>(documents->size());
    return documents;
}

XPResult<IndexTextStore::Documents> IndexTextStore::writeRows(const std::vector<Text> &texts)
{
    const QByteArray number = QByteArray::number(m_table);
    const QByteArray intoWords = "INSERT INTO words" + number + "(rowid, body) VALUES(?1, ?2)";
    const QByteArray intoHeads = "INSERT INTO heads" + number + "(rowid, body) VALUES(?1, ?2)";
    IndexStatement words(m_writer, intoWords.constData());
    IndexStatement heads(m_writer, intoHeads.constData());
    Documents documents;
    documents.reserve(texts.size());
    qint64 document = m_next;
    for (const Text &text : texts) {
        documents.push_back({text.item, static_cast<quint32>(text.text.size()),
                             IndexTextDocuments::stampOf(text.modified, text.size)});
        if (!text.text.isEmpty() && (!words.bind(1, document).bindText(2, text.text).execute() ||
                                     !heads.bind(1, document).bindText(2, text.text).execute()))
            return failure();
        words.reset();
        heads.reset();
        ++document;
    }
    IndexStatement docs(m_writer, "INSERT INTO docs(first, entries) VALUES(?1, ?2)");
    const QByteArray entries = IndexTextDocuments::encode(documents);
    if (!documents.empty() && !docs.bind(1, qint64{m_next}).bind(2, entries).execute())
        return failure();
    return documents;
}

void IndexTextStore::publish(const Documents &documents)
{
    const XPLocker lock(m_mutex);
    for (const IndexTextDocuments::Entry &entry : documents)
        m_documents.append(entry);
}

std::optional<XPError> IndexTextStore::put(const std::vector<Text> &texts)
{
    const auto documents = write(texts);
    if (!documents)
        return documents.error();
    publish(*documents);
    return {};
}

void IndexTextStore::rest()
{
    sqlite3_db_release_memory(m_writer);
    const XPLocker lock(m_mutex);
    m_documents.squeeze();
}

// --- Renewal

bool IndexTextStore::isStored(IndexItem item, qint64 modified, qint64 size) const
{
    const XPLocker lock(m_mutex);
    const IndexTextDocuments::Entry *entry = m_documents.entryOf(item);
    return entry && m_documents.documentOf(item) >= m_tableFirst &&
           entry->stamp == IndexTextDocuments::stampOf(modified, size);
}

bool IndexTextStore::hasText(IndexItem item) const
{
    const XPLocker lock(m_mutex);
    const IndexTextDocuments::Entry *entry = m_documents.entryOf(item);
    return entry && entry->bytes > 0;
}

bool IndexTextStore::isMostlyStale() const
{
    const XPLocker lock(m_mutex);
    const qint64 current = m_documents.currentBytes();
    return !m_renewing && m_documents.allBytes() > 2 * current + smallestWaste;
}

bool IndexTextStore::isRenewing() const
{
    const XPLocker lock(m_mutex);
    return m_renewing;
}

XPResult<std::vector<IndexItem>> IndexTextStore::beginRenewal()
{
    const qint64 generation = m_table + 1;
    const QByteArray sql = "BEGIN IMMEDIATE; INSERT INTO generations VALUES(" +
                           QByteArray::number(generation) + ", " + QByteArray::number(m_next) +
                           ");" + createTables(generation) + "COMMIT;";
    if (auto error = run(sql)) {
        (void)run("ROLLBACK");
        return *error;
    }
    m_table = generation;
    const XPLocker lock(m_mutex);
    m_tableFirst = m_next;
    m_renewing = true;
    return m_documents.items(m_next);
}

std::optional<XPError> IndexTextStore::endRenewal()
{
    quint32 first = 0;
    {
        // Before the tables go, so that a question that misses them notices.
        const XPLocker lock(m_mutex);
        first = m_tableFirst;
        m_documents.dropBefore(first);
    }
    QByteArray sql = "BEGIN IMMEDIATE;";
    {
        IndexStatement old(m_writer, "SELECT number FROM generations WHERE number < ?1");
        old.bind(1, m_table);
        while (old.step()) {
            const QByteArray number = QByteArray::number(old.integer(0));
            sql += "DROP TABLE words" + number + "; DROP TABLE heads" + number + ';';
        }
    }
    sql += "DELETE FROM generations WHERE number < " + QByteArray::number(m_table) +
           "; DELETE FROM docs WHERE first < " + QByteArray::number(first) + "; COMMIT;";
    if (auto error = run(sql)) {
        (void)run("ROLLBACK");
        return error;
    }
    const XPLocker lock(m_mutex);
    m_renewing = false;
    return {};
}

std::optional<XPError> IndexTextStore::startOver()
{
    sqlite3_close_v2(std::exchange(m_writer, nullptr));
    IndexStore::setAside(m_path);
    {
        const XPLocker lock(m_mutex);
        m_documents.clear(m_next);
        m_tableFirst = m_next;
        m_renewing = false;
    }
    m_table = 1;
    return openWriter();
}

// --- Damage

void IndexTextStore::setDamaged(Damaged damaged)
{
    const XPLocker lock(m_damagedMutex);
    m_damaged = std::move(damaged);
}

bool IndexTextStore::isFile(quint64 inode) const
{
    const auto info = XPFileInfo::read(m_path);
    return info && info->inode == inode;
}
