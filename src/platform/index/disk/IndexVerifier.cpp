#include "IndexVerifier.h"

#include <thread>

using Kind = IndexVerifier::Difference::Kind;

std::vector<IndexVerifier::Difference>
IndexVerifier::run(const std::function<bool(qint64)> &progress)
{
    m_differences.clear();
    m_seen = Roaring();
    m_passedBy = Roaring();
    std::vector<QByteArray> roots;
    {
        const IndexCatalog::Reading reading(m_catalog);
        for (const IndexItem root : m_catalog.roots()) {
            roots.push_back(m_catalog.path(m_catalog.slotOf(root)));
            m_seen.add(root);
        }
    }
    // The reader changes its thread's working directory.
    std::thread walk([&] { compareTrees(roots, progress); });
    walk.join();
    return m_differences;
}

void IndexVerifier::compareTrees(const std::vector<QByteArray> &roots,
                                 const std::function<bool(qint64)> &progress)
{
    QByteArrayList all;
    for (const QByteArray &root : roots)
        all.append(root);
    IndexFolderReader reader(std::make_shared<const IndexRules>(m_rules.withRoots(all)), {});
    std::vector<QByteArray> folders = roots;
    IndexFolderReader::Hooks hooks;
    hooks.opened = [](const QByteArray &, int) {};
    hooks.compare = [](const IndexListing &, std::span<IndexFolderReader::Seen>) {
        return IndexFolderReader::Hooks::Known();
    };
    hooks.deliver = [&](const IndexListing &listing) { compareFolder(listing, folders); };
    while (!folders.empty()) {
        const QByteArray folder = std::move(folders.back());
        folders.pop_back();
        reader.readFolder(folder, hooks);
        if (progress && !progress(++m_folders))
            return;
    }
    findUnseen();
}

void IndexVerifier::compareFolder(const IndexListing &listing, std::vector<QByteArray> &below)
{
    const QByteArray prefix = listing.folder == "/" ? "/" : listing.folder + '/';
    for (const QByteArray &name : listing.below)
        below.push_back(prefix + name);
    const IndexCatalog::Reading reading(m_catalog);
    const IndexItem folder = m_catalog.itemAtPath(listing.folder);
    if (listing.error) {
        m_passedBy.add(folder);
        const bool gone = listing.error->kind == XPError::Kind::NotFound;
        if (!gone) // a root that is not there keeps its rows
            m_differences.push_back({Kind::Unreadable, listing.folder});
    }
    for (const IndexChange &change : listing.changes)
        compareEntry(folder, prefix + change.record.name, change.record);
}

void IndexVerifier::compareEntry(IndexItem folder, const QByteArray &path,
                                 const IndexRecord &onDisk)
{
    ++m_items;
    const IndexItem item = m_catalog.child(folder, onDisk.name);
    const IndexSlot slot = m_catalog.slotOf(item);
    if (slot == IndexCatalog::noSlot) {
        m_differences.push_back({Kind::NotIndexed, path});
        return;
    }
    m_seen.add(item);
    const IndexRecord record = m_catalog.record(slot);
    if (!m_catalog.hasFacts(slot, onDisk.info))
        m_differences.push_back({Kind::OtherFacts, path});
    else if (record.attributes != onDisk.attributes)
        m_differences.push_back({Kind::OtherAttributes, path});
    else if (record.type != onDisk.type)
        m_differences.push_back({Kind::OtherType, path});
    else if (record.importedSize >= 0 &&
             !m_catalog.isImported(slot, onDisk.info.modified, onDisk.info.size))
        m_differences.push_back({Kind::OldContent, path});
}

// Rows that the walk did not come to.
void IndexVerifier::findUnseen()
{
    const IndexCatalog::Reading reading(m_catalog);
    for (const IndexSlot slot : m_catalog.alive().rows()) {
        const IndexRecord record = m_catalog.record(slot);
        if (m_seen.contains(record.item))
            continue;
        bool passedBy = false;
        IndexItem above = record.parent;
        IndexSlot row = m_catalog.slotOf(above);
        for (int depth = 0; row != IndexCatalog::noSlot && !passedBy && depth < 4096; ++depth) {
            passedBy = m_passedBy.contains(above);
            above = m_catalog.record(row).parent;
            if (above == 0)
                break;
            row = m_catalog.slotOf(above);
        }
        if (row == IndexCatalog::noSlot)
            m_differences.push_back({Kind::NoFolder, m_catalog.path(slot)});
        else if (!passedBy)
            m_differences.push_back({Kind::NotOnDisk, m_catalog.path(slot)});
    }
}
