#pragma once

#include "IndexCatalog.h"

class IndexSource;

// Which rows a query looks at: those in folders, and in all that stands for folders (home, this
// computer, the network). Threads: one at a time. rows(), folders() and contains() are asked under
// a Reading that the caller holds.
class MDQueryScope
{
public:
    explicit MDQueryScope(QStringList entries) : m_entries(std::move(entries)) {}

    bool isEverything() const { return m_entries.isEmpty(); }
    void resolve(const IndexSource &source);
    std::vector<IndexItem> folders(const IndexCatalog &catalog) const;
    // Null: all.
    RowSet rows(const IndexCatalog &catalog) const;
    bool contains(const IndexCatalog &catalog, IndexSlot slot,
                  const std::vector<IndexItem> &folders) const;

private:
    QStringList m_entries;
    std::vector<QByteArray> m_paths; // what the entries are just now, as folders
    std::vector<IndexItem> m_roots;  // the roots when that was found out
};
