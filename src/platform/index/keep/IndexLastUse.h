#pragma once

#include "IndexJobs.h"
#include "IndexRecents.h"
#include "IndexWriter.h"

#include <QSet>

// Gives files the date of their last use, which stands not on them but in the desktop's list of
// recently used files.
// Threads: the writer's.
class IndexLastUse
{
public:
    IndexLastUse(IndexWriter &writer, IndexJobs &jobs) : m_writer(writer), m_jobs(jobs) {}

    void set(IndexRecents::Times times); // the list was read
    void apply();                        // to all files; after a crawl
    void applied(const IndexBatch &batch);

private:
    void tell(IndexItem item, const QByteArray &path, IndexBatch &batch) const;
    void queue(IndexItem item);

    IndexWriter &m_writer;
    IndexJobs &m_jobs;
    IndexRecents::Times m_times;
    QSet<QByteArray> m_names; // of the files in it
    bool m_isKnown = false;   // the list was read
};
