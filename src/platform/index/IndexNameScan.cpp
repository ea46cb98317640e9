#include "IndexNameScan.h"

RowSet IndexNameScan::candidates(quint64 generation, const QString &literal) const
{
    const std::lock_guard lock(m_mutex);
    RowSet best;
    if (generation != m_generation)
        return best;
    qsizetype length = 0;
    for (const Search &search : m_searches) {
        if (search.literal.size() > length && literal.contains(search.literal)) {
            best = search.rows;
            length = search.literal.size();
        }
    }
    return best;
}

void IndexNameScan::remember(quint64 generation, const QString &literal, RowSet rows)
{
    const std::lock_guard lock(m_mutex);
    if (generation != m_generation) {
        m_searches.clear();
        m_generation = generation;
    }
    std::erase_if(m_searches, [&](const Search &search) { return search.literal == literal; });
    if (m_searches.size() == kept)
        m_searches.erase(m_searches.begin());
    m_searches.push_back({literal, std::move(rows)});
}
