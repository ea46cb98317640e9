#pragma once

#include "IndexContentQueue.h"
#include "IndexKeeping.h"

// The contents of the files that the index holds: has them imported and their texts stored.
// Threads: the writer's, unless said otherwise.
class IndexContents
{
public:
    struct Calls
    {
        std::function<bool()> hasDistant;                  // some root is
        std::function<bool(const QByteArray &)> isDistant; // the path's root
        std::function<void()> atRest; // isAtRest() may have become true; any thread
    };
    IndexContents(IndexKeeping &keeping, Calls calls)
        : m_live(keeping.live), m_setup(keeping.setup), m_problems(keeping.problems),
          m_jobs(keeping.jobs), m_writer(keeping.writer), m_calls(std::move(calls))
    {
    }

    void open();
    void close(); // waits for the file at hand
    // Queues what an earlier run left to import; a step, from this row on.
    bool queueWaiting(IndexSlot from);
    void applied(const IndexBatch &batch);
    void retry();          // what could not be stored: somebody waits for it
    bool isAtRest() const; // nothing can be imported now that was not

    qsizetype waiting() const; // files; any thread
    // Another process found the index of contents damaged: it is begun anew. Any thread.
    void isDamaged(quint64 inode);

private:
    std::shared_ptr<IndexContentQueue> makeQueue();
    bool wantsContent(IndexSlot slot) const;
    bool isContentStored(IndexSlot slot) const;
    void applyImports(IndexBatch &batch);
    void forgetImport(IndexItem item);
    std::optional<IndexContentQueue::File> contentFile(IndexItem item) const; // any thread

    IndexLive &m_live;
    const IndexSetup &m_setup;
    IndexProblems &m_problems;
    IndexJobs &m_jobs;
    IndexWriter &m_writer;
    const Calls m_calls;

    std::shared_ptr<IndexTextStore> m_text;
    IndexContentQueue *m_importer = nullptr; // m_contents
    mutable XPMutex m_mutex;
    std::shared_ptr<IndexContentQueue> m_contents XP_GUARDED_BY(m_mutex);
};
