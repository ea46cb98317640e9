#include "IndexVerifier.h"

#include "IndexFolderReader.h"

#include <QSet>
#include <thread>

static QByteArray joined(const QByteArray &folder, const QByteArray &name)
{
    return folder == "/" ? folder + name : folder + '/' + name;
}

std::vector<IndexVerifier::Difference>
IndexVerifier::run(const std::function<bool(qint64)> &progress)
{
    m_differences.clear();
    std::vector<QByteArray> roots;
    {
        const IndexCatalog::Reading reading(m_catalog);
        for (const IndexItem root : m_catalog.roots())
            roots.push_back(m_catalog.path(m_catalog.slotOf(root)));
    }
    // The reader changes its thread's working directory.
    std::thread walk([&] {
        for (const QByteArray &root : roots)
            compareTree(root, progress);
    });
    walk.join();
    return m_differences;
}

void IndexVerifier::compareTree(const QByteArray &root, const std::function<bool(qint64)> &progress)
{
    IndexFolderReader reader(m_rules);
    std::vector<QByteArray> folders{root};
    while (!folders.empty()) {
        const QByteArray folder = std::move(folders.back());
        folders.pop_back();
        compareFolder(folder, reader, folders);
        if (progress && !progress(++m_folders))
            return;
    }
}

void IndexVerifier::compareFolder(const QByteArray &folder, IndexFolderReader &reader,
                                  std::vector<QByteArray> &below)
{
    using Kind = Difference::Kind;
    const IndexListing listing = reader.readFolder(folder);
    if (listing.error) {
        m_differences.push_back({Kind::Unreadable, folder});
        return;
    }
    const IndexCatalog::Reading reading(m_catalog);
    const IndexItem parent = m_catalog.itemAtPath(folder);
    for (const IndexEntry &entry : listing.entries) {
        ++m_items;
        const QByteArray path = joined(folder, entry.name);
        if (entry.descend)
            below.push_back(path);
        const IndexSlot slot = m_catalog.slotOf(m_catalog.child(parent, entry.name));
        if (slot == IndexCatalog::noSlot) {
            m_differences.push_back({Kind::NotIndexed, path});
            continue;
        }
        if (!m_catalog.hasFacts(slot, entry.info))
            m_differences.push_back({Kind::OtherFacts, path});
        else if (m_catalog.record(slot).attributes != entry.attributes ||
                 m_catalog.type(slot) != entry.type)
            m_differences.push_back({Kind::OtherAttributes, path});
    }
    if (m_catalog.childCount(parent) == listing.entries.size())
        return;
    QSet<QByteArray> present;
    for (const IndexEntry &entry : listing.entries)
        present.insert(entry.name);
    for (const IndexItem item : m_catalog.children(parent)) {
        const IndexSlot slot = m_catalog.slotOf(item);
        const QByteArray name = m_catalog.chunkOf(slot).name(IndexCatalog::rowOf(slot));
        if (!present.contains(name))
            m_differences.push_back({Kind::NotOnDisk, joined(folder, name)});
    }
}
