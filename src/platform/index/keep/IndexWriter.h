#pragma once

#include "IndexLive.h"
#include "IndexProblems.h"
#include "IndexStore.h"

// Applies batches of changes: to the catalog, to those who listen, to the journal on disk; and
// saves the catalog when the journal has grown long.
//
// Without a store, or while the disk takes nothing (full, read-only), the index lives in memory
// and saving is tried again from time to time; after a batch that could not be written the
// journal is not continued before everything was saved whole, so it never has a gap.
// Threads: the index's writer thread.
class IndexWriter
{
public:
    IndexWriter(IndexLive &live, IndexProblems &problems) : m_live(live), m_problems(problems) {}

    // Opens the store and loads the catalog; a store that is damaged or of another version is set
    // aside. An empty path: no store.
    void open(const QString &path);
    // Goes on with the store of a follower, whose catalog is as the journal left it.
    void takeOver(std::unique_ptr<IndexStore> store);

    const IndexCatalog &catalog() const { return m_live.catalog(); }
    IndexItem newItem();
    // Empties the batch.
    void commit(IndexBatch &batch);
    void commit(IndexBatch &&batch) { commit(batch); }
    // What commit() is to tell of each batch, after it was applied and told.
    void setApplied(std::function<void(const IndexBatch &)> applied);

    // A first crawl: full chunks are saved as they are, the journal is not written.
    void beginBulk();
    void endBulk();
    bool isBulk() const { return m_bulk; }
    // When the last run wrote last, in nanoseconds since 1970; 0: there was none.
    qint64 lastWritten() const { return m_store ? m_store->lastWritten() : 0; }
    // Whether the last run ended before its first crawl did.
    bool isUnfinished() const { return m_unfinished; }

    // Values kept beside the catalog; an empty one when there is none.
    QByteArray note(const QString &key) const;
    void setNote(const QString &key, const QByteArray &value);

    // To be called when nothing was committed for a while.
    void rest();
    void save();
    void close();                                // saves what is worth it
    bool isUnsaved() const { return m_unsaved; } // the disk took nothing: call save() again later

private:
    void saveIfDue();
    void savingFails(const XPError &error);
    void readLastItem();

    IndexLive &m_live;
    IndexProblems &m_problems;
    std::unique_ptr<IndexStore> m_store;
    std::function<void(const IndexBatch &)> m_applied;
    IndexItem m_lastItem = 0;
    IndexItem m_reserved = 0; // numbers up to this may have been given out
    bool m_bulk = false;
    bool m_unfinished = false;
    bool m_unsaved = false;
    size_t m_savedChunks = 0;   // whole ones, in a first crawl
    size_t m_changesToTrim = 0; // applied since memory was given back last
};
