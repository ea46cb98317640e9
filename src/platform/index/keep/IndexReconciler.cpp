#include "IndexReconciler.h"

#include "XPPath.h"

#include <algorithm>

static constexpr size_t changesAStep = 1000;
static constexpr qsizetype mostNoted = 100'000;
static constexpr int questionsWorthATable = 4;

IndexReconciler::IndexReconciler(IndexWriter &writer, std::shared_ptr<const IndexRules> rules,
                                 Calls calls)
    : m_writer(writer), m_catalog(writer.catalog()), m_rules(std::move(rules)),
      m_calls(std::move(calls)), m_losses(m_calls.lost)
{
}

void IndexReconciler::begin()
{
    m_reader = std::make_unique<IndexFolderReader>(m_rules, IndexFolderReader::Options());
}

void IndexReconciler::setRules(std::shared_ptr<const IndexRules> rules)
{
    m_rules = rules;
    m_reader->setRules(std::move(rules));
}

QByteArray IndexReconciler::joined(const QByteArray &folder, const QByteArray &name)
{
    return folder == "/" ? folder + name : folder + '/' + name;
}

QByteArray IndexReconciler::parentOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash > 0 ? path.left(slash) : QByteArray("/");
}

QByteArray IndexReconciler::nameOf(const QByteArray &path)
{
    return path.mid(path.lastIndexOf('/') + 1);
}

// --- Listings

bool IndexReconciler::apply(Pending &pending)
{
    const IndexListing &listing = pending.listing;
    const IndexItem folder = itemAt(listing.folder);
    const IndexSlot slot = m_catalog.slotOf(folder);
    if (slot == IndexCatalog::noSlot)
        return true; // gone meanwhile
    if (pending.next == 0) {
        if (listing.stamp < m_notedBefore) {
            m_calls.read(listing.folder, listing.deep);
            return true;
        }
        const IndexRecord known = m_catalog.record(slot);
        if (listing.info && known.parent && known.info.inode != listing.info->inode &&
            !m_calls.isDistant(listing.folder)) {
            // Another folder took the place of the one that the index knows.
            m_calls.read(parentOf(listing.folder), false);
            return true;
        }
    }
    applyChanges(pending, folder);
    if (pending.next < listing.changes.size())
        return false;
    if (!listing.last)
        return true;
    IndexBatch batch;
    if (listing.info && (m_noted.isEmpty() ||
                         !isOvertaken(listing, parentOf(listing.folder), nameOf(listing.folder))))
        putFolderFacts(listing.folder, *listing.info, batch);
    if (listing.present)
        removeMissing(folder, listing, batch);
    if (listing.error && listing.error->kind != XPError::Kind::NotFound)
        m_unreadable.insert(listing.folder);
    else if (!m_unreadable.isEmpty())
        m_unreadable.remove(listing.folder);
    m_writer.commit(batch);
    if (!m_early.isEmpty() && m_early.value(listing.folder) > listing.stamp)
        m_calls.read(listing.folder, false);
    return true;
}

void IndexReconciler::applyChanges(Pending &pending, IndexItem folder)
{
    IndexListing &listing = pending.listing;
    const size_t end = std::min(listing.changes.size(), pending.next + changesAStep);
    const bool isNew = m_catalog.childCount(folder) == 0;
    std::vector<QByteArray> below;
    std::vector<QByteArray> early;
    IndexBatch batch;
    batch.reserve(end - pending.next);
    for (; pending.next < end; ++pending.next) {
        IndexRecord &record = listing.changes[pending.next].record;
        if (!m_noted.isEmpty() && isOvertaken(listing, listing.folder, record.name))
            continue;
        const IndexItem known = isNew ? 0 : m_catalog.child(folder, record.name);
        // The folders of a tree are handed on by whoever reads it.
        if (!listing.deep && listing.descend[pending.next]) {
            const IndexSlot slot = m_catalog.slotOf(known);
            if (slot == IndexCatalog::noSlot ||
                m_catalog.record(slot).info.inode != record.info.inode)
                below.push_back(joined(listing.folder, record.name));
        }
        // Its own reading may be over and have found nothing that the index does not know.
        if (!m_early.isEmpty() && listing.descend[pending.next]) {
            const QByteArray path = joined(listing.folder, record.name);
            if (m_early.contains(path))
                early.push_back(path);
        }
        putEntry(folder, record, known, batch);
    }
    m_writer.commit(batch);
    for (const QByteArray &path : early)
        m_calls.read(path, false);
    for (const QByteArray &path : below)
        m_calls.read(path, true);
}

void IndexReconciler::putEntry(IndexItem folder, IndexRecord &record, IndexItem known,
                               IndexBatch &batch, bool made)
{
    const IndexSlot slot = m_catalog.slotOf(known);
    if (slot != IndexCatalog::noSlot) {
        const IndexRecord before = m_catalog.record(slot);
        if ((before.info.mode & S_IFMT) != (record.info.mode & S_IFMT)) {
            removeTree(known, batch);
            known = 0;
        } else if (m_catalog.hasFacts(slot, record.info) && before.type == record.type &&
                   before.attributes == record.attributes) {
            return;
        }
        if (known && !before.attributes.isEmpty())
            m_losses.replaced(pathIn(folder, record.name), before, record,
                              m_eventTime && (made || before.info.inode != record.info.inode));
        tellAttributes(folder, before, record);
    } else {
        if (m_eventTime)
            m_losses.made(pathIn(folder, record.name), record, m_eventTime);
        tellAttributes(folder, {}, record);
    }
    IndexChange &change = batch.emplace_back();
    change.record = std::move(record);
    change.record.item = known ? known : m_writer.newItem();
    change.record.parent = folder;
}

void IndexReconciler::tellAttributes(IndexItem folder, const IndexRecord &before,
                                     const IndexRecord &now) const
{
    if (before.attributes == now.attributes || !m_calls.attributesChanged)
        return;
    m_calls.attributesChanged({pathIn(folder, now.name), before.attributes, now.attributes,
                               IndexLosses::isSameFile(before.info, now.info)});
}

QByteArray IndexReconciler::pathIn(IndexItem folder, const QByteArray &name) const
{
    return joined(m_catalog.path(m_catalog.slotOf(folder)), name);
}

void IndexReconciler::removeMissing(IndexItem folder, const IndexListing &listing,
                                    IndexBatch &batch)
{
    QSet<QByteArrayView> present;
    for (qsizetype at = 0; at < listing.present->size();) {
        const QByteArrayView name(listing.present->constData() + at);
        present.insert(name);
        at += name.size() + 1;
    }
    for (const IndexItem member : membersOf(folder)) {
        const IndexSlot slot = m_catalog.slotOf(member);
        if (slot == IndexCatalog::noSlot)
            continue;
        const IndexRecord record = m_catalog.record(slot);
        if (record.parent == folder && !present.contains(record.name) &&
            !isOvertaken(listing, listing.folder, record.name))
            removeTree(member, batch);
    }
}

// One pass over all rows answers for one folder; when more ask, a table answers for all. Rows
// that it does not know were added by events, which no listing takes back.
std::vector<IndexItem> IndexReconciler::membersOf(IndexItem folder)
{
    if (m_members.empty() && ++m_memberQuestions < questionsWorthATable)
        return m_catalog.children(folder);
    if (m_members.empty())
        m_members = m_catalog.folderMembers();
    std::vector<IndexItem> members;
    auto pair = std::lower_bound(m_members.begin(), m_members.end(), quint64{folder} << 32);
    for (; pair != m_members.end() && (*pair >> 32) == folder; ++pair)
        members.push_back(static_cast<IndexItem>(*pair));
    return members;
}

void IndexReconciler::removeTree(IndexItem item, IndexBatch &batch)
{
    IndexChange change;
    change.kind = IndexChange::Kind::Remove;
    change.record.item = item;
    if (m_catalog.childCount(item) == 0) {
        batch.push_back(std::move(change));
        return;
    }
    const RowSet rows = m_catalog.below(m_catalog.slotOf(item));
    for (const quint32 slot : *rows) {
        change.record.item = m_catalog.itemAt(slot);
        batch.push_back(change);
    }
}

void IndexReconciler::putFolderFacts(const QByteArray &folder, const XPFileInfo &info,
                                     IndexBatch &batch)
{
    const IndexSlot slot = m_catalog.slotOf(itemAt(folder));
    if (slot == IndexCatalog::noSlot || !info.isDirectory() || m_catalog.hasFacts(slot, info))
        return;
    IndexChange &change = batch.emplace_back();
    change.record = m_catalog.record(slot);
    change.record.info = info;
}

void IndexReconciler::crawlDone()
{
    m_noted.clear();
    m_early.clear();
    m_notedBefore = 0;
    m_members.clear();
    m_members.shrink_to_fit();
    m_memberQuestions = 0;
}

// --- What events told meanwhile

void IndexReconciler::note(const QByteArray &folder, const QByteArray &name)
{
    if (!m_calls.isCrawling(folder))
        return;
    // A reading that began before this has a lower stamp.
    const quint64 stamp = ++m_stamp;
    if (m_noted.size() + m_early.size() >= mostNoted) {
        m_noted.clear();
        m_early.clear();
        m_notedBefore = stamp;
    }
    // In a folder that the index does not know yet nothing can be applied now.
    if (itemAt(folder) == 0)
        m_early.insert(folder, stamp);
    else
        m_noted.insert({folder, name}, stamp);
}

// The entry was read again because of an event later than the listing's reading began.
bool IndexReconciler::isOvertaken(const IndexListing &listing, const QByteArray &folder,
                                  const QByteArray &name) const
{
    const auto noted = m_noted.constFind({folder, name});
    return noted != m_noted.cend() && *noted > listing.stamp;
}
