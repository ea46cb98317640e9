#pragma once

#include "IndexText.h"
#include "XPMutex.h"

struct sqlite3;

// The words of the files' text: a full-text index (SQLite FTS5) in a file of its own beside the
// store, so that a long import never holds up the store's own writes. The text itself is not
// kept, only its words, folded with foldText(); between signs of scripts without blanks a
// boundary is set, so that parts of them are found.
//
// What cannot be used is set aside and imported again. Text that was replaced or whose file is
// gone stays in the word index until compact() but is never found.
// Threads: any; one writer at a time, readers beside it.
class IndexTextStore : public IndexText
{
public:
    static XPResult<std::unique_ptr<IndexTextStore>> open(const QString &path, bool writable);
    ~IndexTextStore() override;

    // Words match whole, the last one by its beginning when the pattern ends with *; case and
    // marks never count. Several words must stand one after the other.
    std::vector<IndexItem> itemsMatching(const MDPredicate::Value &value, qsizetype limit,
                                         const std::vector<IndexItem> *among) const override;

    struct Text
    {
        IndexItem item = 0;
        QString text; // empty: only forget what was there
    };
    // All or nothing, in one transaction.
    std::optional<XPError> put(const std::vector<Text> &texts);
    // Whether more than half of what is stored can no longer be found; then clear() and import
    // everything again.
    bool isMostlyStale() const;
    std::optional<XPError> clear();

    // The expression handed to FTS5; empty when the pattern holds no word. For tests.
    static QByteArray expressionFor(const MDPredicate::Value &value);
    static QString prepared(const QString &text);

private:
    IndexTextStore() = default;
    std::optional<XPError> setUp(const QString &path, bool writable);
    XPError failure(sqlite3 *db) const;

    QString m_path;
    sqlite3 *m_writer = nullptr; // the writing thread's
    mutable XPMutex m_readMutex;
    sqlite3 *m_reader XP_GUARDED_BY(m_readMutex) = nullptr;
};
