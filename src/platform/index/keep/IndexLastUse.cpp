#include "IndexLastUse.h"

#include "IndexReconciler.h"

static const QString lastUsedDate = QStringLiteral("kMDItemLastUsedDate");

void IndexLastUse::set(IndexRecents::Times times)
{
    m_times = std::move(times);
    m_isKnown = true;
    m_names.clear();
    for (auto entry = m_times.cbegin(); entry != m_times.cend(); ++entry)
        m_names.insert(IndexReconciler::nameOf(entry.key()));
    apply();
}

void IndexLastUse::apply()
{
    if (!m_isKnown)
        return;
    const IndexCatalog &catalog = m_writer.catalog();
    IndexBatch batch;
    for (auto entry = m_times.cbegin(); entry != m_times.cend(); ++entry) {
        if (const IndexItem item = catalog.itemAtPath(entry.key()))
            tell(item, entry.key(), batch);
    }
    if (const auto *postings = catalog.attributeNamed(lastUsedDate)) {
        for (const IndexSlot slot : postings->present().rows()) {
            const QByteArray path = catalog.path(slot);
            if (!m_times.contains(path))
                tell(catalog.itemAt(slot), path, batch);
        }
    }
    m_writer.commit(batch);
}

void IndexLastUse::tell(IndexItem item, const QByteArray &path, IndexBatch &batch) const
{
    PropertyValue date;
    if (const auto time = m_times.constFind(path); time != m_times.cend())
        date = PropertyValue::Date::fromSecondsSince1970(*time);
    const IndexCatalog &catalog = m_writer.catalog();
    if (catalog.attribute(catalog.slotOf(item), lastUsedDate) == date)
        return;
    IndexChange &change = batch.emplace_back();
    change.kind = IndexChange::Kind::Attribute;
    change.record.item = item;
    change.record.attributes.insert(lastUsedDate, date);
}

// Not at once, as this is asked while a batch is being applied.
void IndexLastUse::queue(IndexItem item)
{
    m_jobs.post(
        [this, item] {
            const IndexSlot slot = m_writer.catalog().slotOf(item);
            IndexBatch batch;
            if (slot != IndexCatalog::noSlot)
                tell(item, m_writer.catalog().path(slot), batch);
            m_writer.commit(batch);
            return true;
        },
        IndexJobs::Urgency::Now);
}

void IndexLastUse::applied(const IndexBatch &batch)
{
    if (m_times.isEmpty())
        return;
    for (const IndexChange &change : batch) {
        if (change.kind == IndexChange::Kind::Put && m_names.contains(change.record.name))
            queue(change.record.item);
    }
}
