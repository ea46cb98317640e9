#pragma once

#include "IndexPostings.h"

#include <mutex>

// Remembers the last few sets of rows that took work to find, as long as nothing changed.
// Threads: any; a lock of its own.
class IndexRecentRows
{
public:
    // Null: not remembered for that state (`version`) of what they were found in.
    RowSet find(quint64 version, const QString &key) const;
    // Of the keys that stand within `key`, the longest one's rows: names that contain a word hold
    // all names that contain a longer one, so the next letter looks only at the last hits.
    RowSet findShorter(quint64 version, const QString &key) const;
    void remember(quint64 version, const QString &key, RowSet rows);

private:
    static constexpr size_t kept = 8;
    struct Entry
    {
        QString key;
        RowSet rows;
    };
    mutable std::mutex m_mutex;
    quint64 m_version = 0;
    std::vector<Entry> m_entries; // newest last
};
