#pragma once

#include "IndexCatalog.h"
#include "XPMutex.h"

#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <set>

struct sqlite3;
struct sqlite3_stmt;

// The index on disk, a cache that can be deleted at any time: a SQLite file (write-ahead log) and
// beside it a folder of segments.
//
// Segments hold the catalog's columns as they were at the last checkpoint, so that opening is a
// few large reads, not a million rows. The database says which segments belong together and keeps
// the journal of the batches applied since. One process opens it for writing (it holds the
// writer's lock); any number read and follow the journal.
// Everything saved carries a checksum. Whatever does not check, parse or fit is Malformed: the
// owner then calls setAside() and starts with an empty store.
// Threads: one at a time per object.
class IndexStore
{
public:
    static constexpr int schemaVersion = 6;

    enum class Mode { Read, Write };
    // Write: makes folder and file where missing. Read: NotFound without a file.
    static XPResult<std::unique_ptr<IndexStore>> open(const QString &path, Mode mode);
    // Renames a store that cannot be used, so that a new one can be made in its place.
    static void setAside(const QString &path);
    // Deletes the store's files. Nobody may have it open for writing.
    static void remove(const QString &path);
    // Held by these two, and by who opens a connection until it has read once: only then does
    // SQLite open the log, by its name, and one that comes upon the log of the next file of that
    // name cuts it short below its writer. (In another process the writer's lock keeps it from
    // that.)
    static XPMutex &names();
    // Has a writer's connection keep a log, beside which others read. Where the disk maps no memory
    // that processes share, as some of networks do, it keeps a journal instead, for which they
    // wait; the connection is another one then. What fails fails again when something is asked.
    static void setJournal(sqlite3 *&db);
    ~IndexStore();
    IndexStore(const IndexStore &) = delete;
    IndexStore &operator=(const IndexStore &) = delete;

    // Fills an empty catalog: chunks, then the journal.
    std::optional<XPError> load(IndexCatalog &catalog);

    // Appends a batch to the journal: durable against the end of this process at once, against
    // power loss within a checkpoint.
    std::optional<XPError> append(const IndexBatch &batch);
    // Saves what changed of the columns and empties the journal but for what followers may need.
    // `withoutJournal`: batches were applied that append() was not told of (a first crawl).
    std::optional<XPError> checkpoint(IndexCatalog &catalog, bool withoutJournal = false);
    // Deletes the segments that were replaced before the last call, and notes those since, which a
    // follower may be reading still. A checkpoint calls it.
    void sweepSegments();
    // Nothing happened for a while: gives back room on disk and memory that only work needs.
    void rest();
    qint64 journalSize() const { return m_lastSequence - m_checkpointSequence; } // batches
    qint64 journalBytes() const { return m_journalBytes; }
    qint64 segmentBytes() const { return m_segmentBytes; } // of the last checkpoint or load

    // A store that was opened for reading and has read its journal to the end goes on as the
    // writer's, whose lock the caller now holds. The next checkpoint saves everything.
    std::optional<XPError> becomeWriter(IndexCatalog &catalog);

    // For followers: batches after the last one seen. NotFound: the journal no longer reaches
    // back so far; load into a new catalog.
    XPResult<std::vector<IndexBatch>> readNew();

    std::optional<XPError> setMeta(const QString &key, const QByteArray &value);
    XPResult<std::optional<QByteArray>> meta(const QString &key) const;

    // When something was last written before this object opened it, in nanoseconds since 1970; 0:
    // never.
    qint64 lastWritten() const { return m_lastWritten; }

    sqlite3 *handle() const { return m_db; }
    const QString &path() const { return m_path; }
    // The file whose change tells followers of a new journal entry.
    static QString bellPath(const QString &storePath)
    {
        return storePath + QStringLiteral(".bell");
    }

private:
    IndexStore(sqlite3 *db, const QString &path) : m_db(db), m_path(path) {}
    std::optional<XPError> setUp(Mode mode);
    std::optional<XPError> run(const char *sql) const;
    XPError failure() const;
    struct Segment
    {
        QByteArray file; // its name in the folder
        qint64 sum = 0;
        qint64 size = 0;
    };
    using Segments = std::map<qint64, Segment>; // by number of the chunk, or one of these:
    static constexpr qint64 tablesSegment = -1;
    static constexpr qint64 namesSegment = -2;

    XPResult<Segments> readSegments() const;
    std::optional<XPError>
    readSegment(const Segment &segment,
                const std::function<bool(IndexSegment::Reader &in)> &read) const;
    std::optional<XPError> loadSegments(IndexCatalog &catalog);
    std::optional<XPError> loadTables(const Segments &segments,
                                      IndexCatalog::Loading &loading) const;
    std::optional<XPError> saveSegment(qint64 number, const IndexSegment::Writer &segment);
    std::optional<XPError> saveChanged(const IndexCatalog &catalog);
    std::optional<XPError> saveTransaction(const IndexCatalog &catalog);
    QByteArray segmentPath(const QByteArray &file) const;
    void ringBell() const;

    sqlite3 *m_db = nullptr;
    QString m_path;
    qint64 m_lastSequence = 0;
    qint64 m_checkpointSequence = 0;
    qint64 m_journalBytes = 0;
    qint64 m_segmentBytes = 0;
    qint64 m_nextFile = 1;
    qint64 m_lastWritten = 0;
    quint64 m_savedOrder = ~0ULL;      // the catalog's nameOrderVersion() that is on disk
    std::set<QByteArray> m_superseded; // files that a follower may be reading still
    int m_bell = -1;
};

// A prepared statement for a scope. Any failure shows as step() == false and is reported by the
// store's handle.
class IndexStatement
{
public:
    IndexStatement(sqlite3 *db, const char *sql);
    ~IndexStatement();
    IndexStatement(const IndexStatement &) = delete;
    IndexStatement &operator=(const IndexStatement &) = delete;

    IndexStatement &bind(int at, qint64 value);
    IndexStatement &bind(int at, const QByteArray &blob); // bytes must outlive the step
    IndexStatement &bindText(int at, const QByteArray &utf8);
    bool step();    // a row is there
    bool execute(); // done without a row
    void reset();
    qint64 integer(int column) const;
    QByteArray blob(int column) const;
    bool failed() const { return m_failed; }

private:
    sqlite3_stmt *m_statement = nullptr;
    bool m_failed = false;
};
