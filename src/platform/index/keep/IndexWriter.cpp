#include "IndexWriter.h"

#include <malloc.h>

static constexpr size_t largestBatch = 2000; // changes applied under one lock
static constexpr qint64 shortestJournal = 4 << 20;
static constexpr qint64 journalWorthSaving = 300; // batches
static constexpr size_t changesWorthTrimming = 20'000;
static constexpr IndexItem itemsReservedAtOnce = 1 << 16;
static const QString itemsKey = QStringLiteral("items");
static const QString unfinishedKey = QStringLiteral("unfinished");

// --- Opening

void IndexWriter::open(const QString &path)
{
    if (!path.isEmpty()) {
        auto store = IndexStore::open(path, IndexStore::Mode::Write);
        std::optional<XPError> error = store ? (*store)->load(m_live.writable()) : store.error();
        if (error && error->kind == XPError::Kind::Malformed) {
            store = XPError(*error); // closes the damaged file before it is moved
            IndexStore::setAside(path);
            m_live.writable().clear();
            store = IndexStore::open(path, IndexStore::Mode::Write);
            error = store ? std::nullopt : std::optional(store.error());
        }
        if (error) {
            m_live.writable().clear();
            m_problems.set(IndexProblems::saving,
                           {.kind = IndexProblem::Kind::NothingSaved, .error = error});
        } else {
            m_store = *std::move(store);
        }
    }
    readLastItem();
}

void IndexWriter::takeOver(std::unique_ptr<IndexStore> store)
{
    m_store = std::move(store);
    if (auto error = m_store->becomeWriter(m_live.writable())) {
        savingFails(*error);
        m_unsaved = true;
    }
    readLastItem();
}

// A process that was killed may have given out numbers, for text also, of which nothing else was
// saved.
void IndexWriter::readLastItem()
{
    m_lastItem = std::max(catalog().lastItem(), note(itemsKey).toUInt());
    m_reserved = m_lastItem;
    m_unfinished = catalog().count() > 0 && !note(unfinishedKey).isEmpty();
}

IndexItem IndexWriter::newItem()
{
    if (++m_lastItem > m_reserved) {
        m_reserved = m_lastItem + itemsReservedAtOnce;
        setNote(itemsKey, QByteArray::number(m_reserved));
    }
    return m_lastItem;
}

void IndexWriter::setApplied(std::function<void(const IndexBatch &)> applied)
{
    m_applied = std::move(applied);
}

// --- Applying

void IndexWriter::commit(IndexBatch &batch)
{
    m_changesToTrim += batch.size();
    const auto applyOne = [this](const IndexBatch &part) {
        m_live.tell(m_live.writable().apply(part));
        if (m_store && !m_bulk && !m_unsaved) {
            if (auto error = m_store->append(part)) {
                savingFails(*error);
                m_unsaved = true;
            }
        }
        if (m_applied)
            m_applied(part);
    };
    if (batch.size() <= largestBatch) {
        if (!batch.empty())
            applyOne(batch);
    } else {
        for (size_t start = 0; start < batch.size(); start += largestBatch) {
            const auto first = batch.begin() + static_cast<std::ptrdiff_t>(start);
            const size_t size = std::min(batch.size() - start, largestBatch);
            applyOne(
                IndexBatch(std::make_move_iterator(first),
                           std::make_move_iterator(first + static_cast<std::ptrdiff_t>(size))));
        }
    }
    batch.clear();
    saveIfDue();
}

// --- Saving

void IndexWriter::savingFails(const XPError &error)
{
    m_problems.set(IndexProblems::saving,
                   {.kind = IndexProblem::Kind::SavingFails, .error = error});
}

void IndexWriter::saveIfDue()
{
    if (!m_store || m_unsaved)
        return;
    if (m_bulk) {
        // The last chunk is still being filled.
        const size_t chunks = catalog().chunkCount();
        if (chunks > m_savedChunks + 1) {
            save();
            m_savedChunks = chunks - 1;
        }
        return;
    }
    if (m_store->journalBytes() > std::max(shortestJournal, m_store->segmentBytes() / 16))
        save();
}

void IndexWriter::save()
{
    if (!m_store)
        return;
    if (!m_bulk) {
        m_live.writable().compact();
        m_live.writable().orderNames();
    }
    const auto error = m_store->checkpoint(m_live.writable(), m_bulk || m_unsaved);
    m_unsaved = error.has_value();
    if (error)
        savingFails(*error);
    else
        m_problems.clear(IndexProblems::saving);
}

void IndexWriter::beginBulk()
{
    if (m_bulk || !m_store)
        return;
    m_bulk = true;
    m_savedChunks = catalog().chunkCount();
    setNote(unfinishedKey, "1");
}

void IndexWriter::endBulk()
{
    if (!m_bulk)
        return;
    m_live.writable().orderNames();
    save();
    m_bulk = false;
    setNote(unfinishedKey, {});
}

void IndexWriter::rest()
{
    if (m_store)
        m_store->rest();
    if (m_changesToTrim < changesWorthTrimming)
        return;
    m_changesToTrim = 0;
#ifdef __GLIBC__
    ::malloc_trim(0); // what much work needed for a while goes back to the system
#endif
}

void IndexWriter::close()
{
    if (!m_store)
        return;
    // What was found of a first crawl is worth keeping: the next start goes on from there.
    if (m_bulk || m_unsaved || m_store->journalSize() > journalWorthSaving)
        save();
    setNote(itemsKey, QByteArray::number(m_lastItem));
    m_store->sweepSegments();
    m_store.reset();
}

QByteArray IndexWriter::note(const QString &key) const
{
    if (!m_store)
        return {};
    const auto value = m_store->meta(key);
    return value ? value->value_or(QByteArray()) : QByteArray();
}

void IndexWriter::setNote(const QString &key, const QByteArray &value)
{
    if (!m_store || note(key) == value)
        return;
    if (auto error = m_store->setMeta(key, value))
        savingFails(*error);
}
