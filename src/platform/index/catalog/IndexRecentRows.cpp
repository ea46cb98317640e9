#include "IndexRecentRows.h"

RowSet IndexRecentRows::find(quint64 version, const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    for (const Entry &entry : m_entries) {
        if (version == m_version && entry.key == key)
            return entry.rows;
    }
    return {};
}

RowSet IndexRecentRows::findShorter(quint64 version, const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    RowSet best;
    if (version != m_version)
        return best;
    qsizetype length = 0;
    for (const Entry &entry : m_entries) {
        if (entry.key.size() > length && key.contains(entry.key)) {
            best = entry.rows;
            length = entry.key.size();
        }
    }
    return best;
}

void IndexRecentRows::remember(quint64 version, const QString &key, RowSet rows)
{
    const std::lock_guard lock(m_mutex);
    if (version != m_version)
        m_entries.clear();
    m_version = version;
    std::erase_if(m_entries, [&](const Entry &entry) { return entry.key == key; });
    if (m_entries.size() == kept)
        m_entries.erase(m_entries.begin());
    m_entries.push_back({key, std::move(rows)});
}
