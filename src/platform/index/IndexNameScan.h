#pragma once

#include "IndexPostings.h"

#include <mutex>
#include <optional>

// Remembers the rows of the last name searches, so that the next letter of a word looks only at
// what the letters before it found.
// Threads: any; a lock of its own.
class IndexNameScan
{
public:
    // The rows of an earlier search whose hits hold all hits of `literal`: names that contain the
    // folded text were kept as of that generation. The closest one.
    RowSet candidates(quint64 generation, const QString &literal) const;
    void remember(quint64 generation, const QString &literal, RowSet rows);

private:
    static constexpr size_t kept = 8;
    struct Search
    {
        QString literal;
        RowSet rows;
    };
    mutable std::mutex m_mutex;
    quint64 m_generation = 0;
    std::vector<Search> m_searches; // newest last
};
