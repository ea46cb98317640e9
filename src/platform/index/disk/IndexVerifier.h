#pragma once

#include "IndexCatalog.h"
#include "IndexDifference.h"
#include "IndexFolderReader.h"
#include "IndexRules.h"

// Walks the disk and compares every row, attribute and type of a catalog with what is there.
//
// For people and tests, not for repair: it only tells. While somebody is at work on the files,
// what was just changed may show as a difference. Files below a root that is not there are
// expected to stay in the index and count as right.
// Threads: run() blocks; call it on any thread.
class IndexVerifier
{
public:
    IndexVerifier(const IndexCatalog &catalog, const IndexRules &rules)
        : m_catalog(catalog), m_rules(rules)
    {
    }

    using Difference = IndexDifference;
    // Compares everything below the roots; `progress` is told of each folder and says whether to
    // go on.
    std::vector<Difference> run(const std::function<bool(qint64 folders)> &progress = {});
    qint64 itemsCompared() const { return m_items; }

private:
    void compareTrees(const std::vector<QByteArray> &roots,
                      const std::function<bool(qint64)> &progress);
    void compareFolder(const IndexListing &listing, std::vector<QByteArray> &below);
    void compareEntry(IndexItem folder, const QByteArray &path, const IndexRecord &onDisk);
    void findUnseen();

    const IndexCatalog &m_catalog;
    const IndexRules m_rules;
    std::vector<Difference> m_differences;
    Roaring m_seen;     // items that were compared
    Roaring m_passedBy; // folders that could not be read: what lies below cannot be told
    qint64 m_items = 0;
    qint64 m_folders = 0;
};
