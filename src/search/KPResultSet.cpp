#include "KPResultSet.h"

#include "XPPath.h"

void KPResultSet::setOrder(std::unique_ptr<KPResultsOrder> order)
{
    m_order = order ? std::move(order) : std::make_unique<KPOrderAsFound>();
    m_isOrderNew = true;
}

void KPResultSet::clear()
{
    m_entries.clear();
    m_touched.clear();
    m_counts = {};
    m_activeFolders.clear();
    m_isReset = true;
}

void KPResultSet::restart(const std::shared_ptr<const KPDocArray> &shown)
{
    m_last = shown;
    m_counts = {};
    m_activeFolders.clear();
    m_isReset = true;
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        entry->path = {};
        entry->folder = {};
        entry->told = {};
        touch(entry.key(), *entry);
    }
}

void KPResultSet::setPostConstraintFolders(const std::optional<KPOptimizedFolders> &folders)
{
    m_postConstraint = folders;
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry)
        touch(entry.key(), *entry);
}

void KPResultSet::touch(KPDoc *doc, Entry &entry)
{
    if (!std::exchange(entry.isTouched, true))
        m_touched.push_back(doc);
}

void KPResultSet::add(KPDoc *doc, const KPResultCounts::Values &values)
{
    Entry &entry = m_entries[doc];
    ++entry.holders;
    entry.values = values;
    entry.isChanged = true;
    touch(doc, entry);
}

bool KPResultSet::change(KPDoc *doc, const KPResultCounts::Values &values)
{
    const auto entry = m_entries.find(doc);
    if (entry == m_entries.end() ||
        (entry->values == values && !entry->isTouched && entry->path == doc->pooledPath()))
        return false;
    entry->values = values;
    entry->isChanged = true;
    touch(doc, *entry);
    return true;
}

void KPResultSet::remove(KPDoc *doc)
{
    const auto entry = m_entries.find(doc);
    if (entry == m_entries.end())
        return;
    if (entry->holders > 0)
        --entry->holders;
    touch(doc, *entry);
}

void KPResultSet::touchMoved(const QSet<KPPooledString> &deleted)
{
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        if (!entry->path.isEmpty() &&
            (entry.key()->pooledPath() != entry->path || deleted.contains(entry->path)))
            touch(entry.key(), *entry);
    }
}

// The folders of the documents that came and went, and those that they lie in.
void KPResultSet::countFolders()
{
    for (auto each = m_folderChanges.cbegin(); each != m_folderChanges.cend(); ++each) {
        KPPooledString folder = each.key();
        while (each.value() != 0 && !folder.isEmpty()) {
            const auto entry = m_activeFolders.find(folder);
            if (entry == m_activeFolders.end())
                m_activeFolders.insert(folder, each.value());
            else if ((*entry += each.value()) == 0)
                m_activeFolders.erase(entry);
            if (folder.size() == 1)
                break;
            const QStringView path = folder.view();
            const qsizetype slash = path.lastIndexOf(u'/');
            folder = KPPool::pooledString(slash > 0 ? path.left(slash) : QStringView(u"/"));
        }
    }
    m_folderChanges.clear();
}

// What is told of one document from here on.
void KPResultSet::settle(KPDoc *doc, Entry &entry, const QSet<KPPooledString> &deleted,
                         KPResultsDelivery &delivery)
{
    KPResultsDifference &difference = delivery.difference;
    entry.isTouched = false;
    const KPPooledString path = doc->pooledPath();
    const bool isThere = entry.holders > 0 && !doc->isGone() && !deleted.contains(path);
    const KPPooledString folder = isThere ? doc->pooledParentPath() : KPPooledString();
    if (folder != entry.folder) {
        if (!entry.folder.isEmpty())
            --m_folderChanges[entry.folder];
        if (!folder.isEmpty())
            ++m_folderChanges[folder];
        entry.folder = folder;
    }
    const bool isWanted = isThere && (!m_postConstraint || m_postConstraint->holds(path.view()));
    const bool isNews = std::exchange(entry.isChanged, false);
    if (isWanted == !entry.path.isEmpty() && (!isWanted || (!isNews && path == entry.path)))
        return;
    if (!entry.path.isEmpty())
        m_counts.remove(entry.told);
    if (isWanted)
        m_counts.add(entry.values);
    if (isWanted && entry.path.isEmpty()) {
        difference.added.push_back(doc);
        delivery.addedPaths.push_back(path);
    } else if (isWanted) {
        difference.changed.push_back({doc, entry.path});
        delivery.changedPaths.push_back(path);
    } else {
        difference.removed.push_back({doc, entry.path});
    }
    entry.path = isWanted ? path : KPPooledString();
    entry.told = isWanted ? entry.values : KPResultCounts::Values();
}

// What an order that knows nothing yet is told.
KPResultsDifference KPResultSet::everything(const KPResultsDifference &difference) const
{
    KPResultsDifference all;
    all.isReset = true;
    QSet<const KPDoc *> gone;
    for (const auto &told : difference.removed)
        gone.insert(told.doc);
    for (KPDoc *doc : *m_last) {
        if (!gone.contains(doc))
            all.added.push_back(doc);
    }
    all.added.insert(all.added.end(), difference.added.begin(), difference.added.end());
    return all;
}

void KPResultSet::fillDelivery(KPResultsDelivery &delivery, const QSet<KPPooledString> &deleted)
{
    KPResultsDifference &difference = delivery.difference;
    difference.isReset = std::exchange(m_isReset, false);
    for (KPDoc *doc : std::exchange(m_touched, {})) {
        const auto entry = m_entries.find(doc);
        settle(doc, *entry, deleted, delivery);
        if (entry->holders == 0)
            m_entries.erase(entry);
    }
    countFolders();
    const bool isOrderNew = std::exchange(m_isOrderNew, false);
    delivery.documents =
        m_order->apply(isOrderNew && !difference.isReset ? everything(difference) : difference);
    delivery.rows = KPRowChanges::between(m_last, *delivery.documents.docs, difference);
    // A delivery without news may never be shown.
    if (delivery.rows.isEmpty())
        delivery.documents.docs = m_last;
    else
        m_last = delivery.documents.docs;
    delivery.counts = m_counts;
    delivery.activeFolders = m_activeFolders;
}
