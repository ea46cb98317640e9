#include "IndexContents.h"

#include <algorithm>
#include <sys/stat.h>

static constexpr IndexSlot slotsAStep = 20'000;

void IndexContents::open()
{
    if (m_setup.path.isEmpty())
        return;
    const QString path = m_setup.path + QStringLiteral(".text");
    if (m_writer.catalog().lastItem() == 0)
        IndexStore::remove(path); // of items that nobody knows any more
    auto text = IndexTextStore::open(path, true);
    if (!text && text.error().kind == XPError::Kind::Malformed) {
        IndexStore::setAside(path);
        text = IndexTextStore::open(path, true);
    }
    if (!text) {
        m_problems.set(IndexProblems::contents,
                       {.kind = IndexProblem::Kind::ContentsUnsearchable, .error = text.error()});
        return;
    }
    m_text = *std::move(text);
    m_live.setText(m_text);
    auto contents = makeQueue();
    m_importer = contents.get();
    const XPLocker lock(m_mutex);
    m_contents = std::move(contents);
}

std::shared_ptr<IndexContentQueue> IndexContents::makeQueue()
{
    IndexContentQueue::Callbacks callbacks;
    callbacks.lookUp = [this](IndexItem item) { return contentFile(item); };
    callbacks.done = [this](IndexBatch found) {
        const auto batch = std::make_shared<IndexBatch>(std::move(found));
        m_jobs.post(
            [this, batch] {
                applyImports(*batch);
                return true;
            },
            IndexJobs::Urgency::InTurn);
    };
    callbacks.problem = [this](const std::optional<XPError> &error) {
        if (error)
            m_problems.set(IndexProblems::contents,
                           {.kind = IndexProblem::Kind::ContentsNotSaved, .error = error});
        else
            m_problems.clear(IndexProblems::contents);
        m_calls.atRest();
    };
    callbacks.idle = m_calls.atRest;
    callbacks.startedOver = [this] {
        m_jobs.post([this] { return queueWaiting(0); }, IndexJobs::Urgency::InTurn);
    };
    const bool idle = !m_setup.waitedFor;
    return std::make_shared<IndexContentQueue>(*m_text, std::move(callbacks),
                                               IndexImporters::make(idle), idle);
}

void IndexContents::applied(const IndexBatch &batch)
{
    if (!m_importer)
        return;
    std::vector<IndexContentQueue::Waiting> backlog;
    bool hasFolders = false;
    for (const IndexChange &change : batch) {
        const IndexItem item = change.record.item;
        if (change.kind == IndexChange::Kind::Remove) {
            m_importer->forget(item);
            continue;
        }
        if (change.kind != IndexChange::Kind::Put && change.kind != IndexChange::Kind::Move)
            continue;
        hasFolders = hasFolders || change.record.info.isDirectory();
        const IndexSlot slot = m_writer.catalog().slotOf(item);
        if (wantsContent(slot)) {
            if (m_writer.isBulk())
                backlog.push_back({change.record.info.modified, item});
            else
                m_importer->add(item);
        } else if (m_writer.catalog().importedRows().contains(slot) ||
                   (m_text && m_text->hasText(item))) {
            forgetImport(item);
        }
    }
    if (!backlog.empty())
        m_importer->addBacklog(std::move(backlog));
    if (hasFolders)
        m_importer->folderMoved();
}

bool IndexContents::wantsContent(IndexSlot slot) const
{
    const IndexCatalog &catalog = m_writer.catalog();
    if (!S_ISREG(catalog.chunkOf(slot).modes[IndexCatalog::rowOf(slot)]) ||
        !m_importer->accepts(catalog.type(slot)))
        return false;
    // Nobody asked for all those bytes.
    return !m_calls.hasDistant() || !m_calls.isDistant(catalog.path(slot));
}

bool IndexContents::isContentStored(IndexSlot slot) const
{
    const IndexRecord record = m_writer.catalog().record(slot);
    return m_writer.catalog().isImported(slot, record.info.modified, record.info.size) &&
           m_text->isStored(record.item, record.info.modified, record.info.size);
}

// What the importing thread needs to know of a file when its turn comes.
std::optional<IndexContentQueue::File> IndexContents::contentFile(IndexItem item) const
{
    const IndexCatalog &catalog = m_live.catalog();
    const IndexCatalog::Reading reading(catalog);
    const IndexSlot slot = catalog.slotOf(item);
    if (slot == IndexCatalog::noSlot)
        return {};
    const IndexRecord record = catalog.record(slot);
    if (!record.info.isRegular())
        return {};
    return IndexContentQueue::File{
        catalog.path(slot),   record.type,
        record.info.modified, record.info.size,
        record.info.inode,    catalog.isImported(slot, record.info.modified, record.info.size)};
}

// What was imported of a file that has become another meanwhile is worth nothing.
void IndexContents::applyImports(IndexBatch &batch)
{
    std::erase_if(batch, [&](const IndexChange &change) {
        const IndexSlot slot = m_writer.catalog().slotOf(change.record.item);
        return slot == IndexCatalog::noSlot || !wantsContent(slot);
    });
    m_writer.commit(batch);
}

// The file is of another type now, from which nothing is imported.
void IndexContents::forgetImport(IndexItem item)
{
    m_importer->forget(item);
    m_jobs.post(
        [this, item] {
            IndexChange change;
            change.kind = IndexChange::Kind::Import;
            change.record.item = item;
            m_writer.commit({change});
            return true;
        },
        IndexJobs::Urgency::Now);
}

// What an earlier run left to import.
bool IndexContents::queueWaiting(IndexSlot from)
{
    if (!m_importer)
        return true;
    const IndexCatalog &catalog = m_writer.catalog();
    const IndexSlot end = std::min(catalog.slotCount(), from + slotsAStep);
    std::vector<IndexContentQueue::Waiting> backlog;
    for (IndexSlot slot = from; slot < end; ++slot) {
        const IndexChunk &chunk = catalog.chunkOf(slot);
        const quint32 row = IndexCatalog::rowOf(slot);
        if (catalog.alive().contains(slot) && wantsContent(slot) && !isContentStored(slot))
            backlog.push_back({chunk.modified[row], chunk.items[row]});
    }
    m_importer->addBacklog(std::move(backlog));
    if (end < catalog.slotCount())
        m_jobs.post([this, end] { return queueWaiting(end); }, IndexJobs::Urgency::InTurn);
    return true;
}

void IndexContents::isDamaged(quint64 inode)
{
    std::shared_ptr<IndexContentQueue> contents;
    {
        const XPLocker lock(m_mutex);
        contents = m_contents;
    }
    if (contents)
        contents->storeIsDamaged(inode);
}

void IndexContents::close()
{
    m_importer = nullptr;
    std::shared_ptr<IndexContentQueue> contents;
    const XPLocker lock(m_mutex);
    contents.swap(m_contents);
}

qsizetype IndexContents::waiting() const
{
    std::shared_ptr<IndexContentQueue> contents;
    {
        const XPLocker lock(m_mutex);
        contents = m_contents;
    }
    return contents ? contents->waiting() + contents->postponed() : 0;
}

void IndexContents::retry()
{
    if (m_importer)
        m_importer->retry();
}

bool IndexContents::isAtRest() const
{
    return !m_importer || m_importer->waiting() == 0;
}
