#include "MDQueryScope.h"

#include "IndexSource.h"
#include "MDQuery.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPVolumes.h"

#include <algorithm>

// Which folders the scope stands for: asks the system about volumes, so with no lock held.
void MDQueryScope::resolve(const IndexSource &source)
{
    if (m_entries.isEmpty())
        return;
    std::vector<QByteArray> roots;
    {
        const IndexCatalog &catalog = source.catalog();
        const IndexCatalog::Reading reading(catalog);
        if (!m_paths.empty() && catalog.roots() == m_roots)
            return;
        m_roots = catalog.roots();
        for (const IndexItem root : m_roots)
            roots.push_back(catalog.path(catalog.slotOf(root)));
    }
    m_paths.clear();
    for (const QString &entry : m_entries) {
        if (entry != MDQuery::scopeComputer && entry != MDQuery::scopeNetwork) {
            m_paths.push_back(XPPath::encode(
                entry == MDQuery::scopeHome ? XPFolders::home() : XPPath::absolute(entry)));
            continue;
        }
        for (const QByteArray &root : roots) {
            if (XPVolumes::volumeOf(XPPath::decode(root)).network ==
                (entry == MDQuery::scopeNetwork))
                m_paths.push_back(root);
        }
    }
}

std::vector<IndexItem> MDQueryScope::folders(const IndexCatalog &catalog) const
{
    std::vector<IndexItem> found;
    for (const QByteArray &path : m_paths) {
        if (const IndexItem item = catalog.itemAtPath(path))
            found.push_back(item);
        // Roots within the folder (volumes, or all of them above the highest) are no rows below it.
        for (const IndexItem root : catalog.roots()) {
            if (path == "/" || catalog.path(catalog.slotOf(root)).startsWith(path + '/'))
                found.push_back(root);
        }
    }
    return found;
}

RowSet MDQueryScope::rows(const IndexCatalog &catalog) const
{
    if (m_entries.isEmpty())
        return {};
    const std::vector<IndexItem> under = folders(catalog);
    // Of the home folder mostly: then nobody need look at every row for where it lies.
    const auto &roots = catalog.roots();
    if (!roots.empty() && std::all_of(roots.begin(), roots.end(), [&](IndexItem root) {
            return std::find(under.begin(), under.end(), root) != under.end();
        }))
        return {};
    if (under.size() == 1)
        return catalog.below(catalog.slotOf(under.front()));
    Roaring all;
    for (const IndexItem folder : under)
        all |= *catalog.below(catalog.slotOf(folder));
    return std::make_shared<const Roaring>(std::move(all));
}

bool MDQueryScope::contains(const IndexCatalog &catalog, IndexSlot slot,
                            const std::vector<IndexItem> &folders) const
{
    if (m_entries.isEmpty())
        return true;
    while (slot != IndexCatalog::noSlot) {
        if (std::find(folders.begin(), folders.end(), catalog.itemAt(slot)) != folders.end())
            return true;
        slot = catalog.slotOf(catalog.chunkOf(slot).parents[IndexCatalog::rowOf(slot)]);
    }
    return false;
}
