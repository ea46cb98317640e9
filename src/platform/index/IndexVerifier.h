#pragma once

#include "IndexCatalog.h"
#include "IndexRules.h"

// Walks the disk and compares every row and attribute of a catalog with what is there.
//
// For people and tests, not for repair: it only tells. While somebody is at work on the files,
// what was just changed may show as a difference.
// Threads: run() blocks; call it on any thread.
class IndexVerifier
{
public:
    IndexVerifier(const IndexCatalog &catalog, const IndexRules &rules)
        : m_catalog(catalog), m_rules(rules)
    {
    }

    struct Difference
    {
        enum class Kind { NotIndexed, NotOnDisk, OtherFacts, OtherAttributes, Unreadable } kind;
        QByteArray path;
    };
    // Compares everything below the roots; `progress` is told of each folder and says whether to
    // go on.
    std::vector<Difference> run(const std::function<bool(qint64 folders)> &progress = {});
    qint64 itemsCompared() const { return m_items; }

private:
    void compareTree(const QByteArray &root, const std::function<bool(qint64)> &progress);
    void compareFolder(const QByteArray &folder, class IndexFolderReader &reader,
                       std::vector<QByteArray> &below);

    const IndexCatalog &m_catalog;
    const IndexRules m_rules;
    std::vector<Difference> m_differences;
    qint64 m_items = 0;
    qint64 m_folders = 0;
};
