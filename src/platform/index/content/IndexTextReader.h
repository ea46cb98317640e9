#pragma once

#include "IndexTextDocuments.h"
#include "IndexTextExpression.h"
#include "XPError.h"

#include <functional>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

// One connection that asks the text index, with its statements prepared once.
//
// Threads: one at a time. Reads beside a writer in this or another process, never waiting for it.
class IndexTextReader
{
public:
    // NotFound: there is no file yet.
    static XPResult<std::unique_ptr<IndexTextReader>> open(const QString &path);
    ~IndexTextReader();
    IndexTextReader(const IndexTextReader &) = delete;
    IndexTextReader &operator=(const IndexTextReader &) = delete;

    // Whether the path still names the file that was opened.
    bool isCurrent() const;
    // Fixes what is read until end(): the state of the file now. False: it cannot be read.
    bool begin();
    void end();
    // Between them: appends the documents that `documents` does not know yet. Cheap when nothing
    // was written since the last call.
    bool readDocuments(IndexTextDocuments &documents);

    // Between them: tells of documents from `low` to `high` that hold the phrase, ascending within
    // a word table, until `take` answers false. False: the index cannot be read.
    using Take = std::function<bool(quint32 document)>;
    bool find(const IndexTextExpression::Phrase &phrase, quint32 low, quint32 high,
              const Take &take);
    XPError failure() const; // why the last of these answered false
    // That was because the file's bytes are not what was written; it is to be begun anew.
    bool isDamaged() const { return m_damaged; }
    quint64 inode() const { return m_inode; }

private:
    struct Finalize
    {
        void operator()(sqlite3_stmt *statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;
    struct Generation
    {
        qint64 number = 0;
        Statement words;
        Statement heads;
    };

    explicit IndexTextReader(const QString &path) : m_path(path) {}
    Statement prepare(const QByteArray &sql) const;
    bool fail(); // notes why; false
    bool step(sqlite3_stmt *statement);
    bool readGenerations();
    bool run(sqlite3_stmt *statement, const QByteArray &match, quint32 low, quint32 high,
             const Take &take, bool &stopped);
    bool findPattern(const Generation &generation, const IndexTextExpression::Phrase &phrase,
                     quint32 low, quint32 high, const Take &take, bool &stopped);

    const QString m_path;
    sqlite3 *m_db = nullptr;
    quint64 m_device = 0;
    quint64 m_inode = 0;
    QString m_failure;
    bool m_damaged = false;
    Statement m_begin;
    Statement m_commit;
    Statement m_version;
    // A number that changes when another connection writes: as of now, and when these were read.
    qint64 m_now = 0;
    qint64 m_generationsRead = -1;
    qint64 m_documentsRead = -1;
    quint32 m_documentsNext = 0; // after that
    std::vector<Generation> m_generations;
};
