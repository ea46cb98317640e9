#include "IndexKeeper.h"

#include "XPPath.h"

#include <algorithm>

using namespace std::chrono_literals;

static constexpr auto saveAgainAfter = 30s; // while the disk takes nothing
static constexpr auto restAfter = 3s;       // without a change
static constexpr IndexSlot slotsAStep = 20'000;

// --- Start and end

IndexKeeper::IndexKeeper(IndexLive &live, const IndexSetup &setup,
                         std::unique_ptr<IndexStore> store)
    : m_live(live), m_setup(setup), m_takenOver(std::move(store)), m_writer(live, m_problems),
      m_rules(setup.rules),
      m_reconciler(m_writer, std::make_shared<const IndexRules>(m_rules),
                   {[this](const QByteArray &folder, bool deep) { read(folder, deep); },
                    [this](const QByteArray &folder) {
                        const auto crew = crewOf(folder);
                        return crew && crew->isCrawling;
                    },
                    [this](const QByteArray &folder) {
                        const auto crew = crewOf(folder);
                        return crew && crew->distant;
                    },
                    [&live](IndexLoss loss) { live.tellLoss(std::move(loss)); }})
{
    setRoots(setup.roots);
    m_live.setReimport([this](const QByteArray &path) { reimport(path); });
    m_thread = std::thread([this] { run(); });
}

IndexKeeper::~IndexKeeper()
{
    m_live.setReimport({});
    m_jobs.stop();
    m_thread.join();
}

void IndexKeeper::run()
{
    if (m_takenOver)
        m_writer.takeOver(std::move(m_takenOver));
    else
        m_writer.open(m_setup.path);
    openText();
    m_writer.setApplied([this](const IndexBatch &batch) { applied(batch); });
    m_live.setLoaded(); // queries need nothing of what follows
    m_live.writable().prepareForWriting();
    m_live.writable().orderNames();
    // Two changes within one tick of the disk's clock leave the same change time. Where the last
    // run ended, the second one may not have been seen.
    if (const qint64 written = m_writer.lastWritten())
        m_trustedBefore = written - 10'000'000'000;
    m_reconciler.begin();
    m_local = makeCrew(false);
    if (!m_local->watcher->isUsable())
        m_problems.set(IndexProblems::watching, {.kind = IndexProblem::Kind::NoWatches});
    queueWaitingContents(0);
    std::optional<IndexRecents> recents;
    if (!m_setup.recents.isEmpty()) {
        recents.emplace(m_setup.recents, [this](const IndexRecents::Times &times) {
            m_jobs.post(
                [this, times] {
                    setRecents(times);
                    return true;
                },
                Urgency::InTurn);
        });
    }
    m_jobs.run([this] { tellQuiet(); });
    recents.reset();
    for (Root &root : m_roots)
        root.crew.reset();
    m_local.reset();
    m_importer = nullptr;
    {
        std::shared_ptr<IndexContentQueue> contents;
        const XPLocker lock(m_mutex);
        contents.swap(m_contents);
    }
    m_writer.close();
}

void IndexKeeper::openText()
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
    auto contents = makeContentQueue();
    m_importer = contents.get();
    const XPLocker lock(m_mutex);
    m_contents = std::move(contents);
}

std::shared_ptr<IndexContentQueue> IndexKeeper::makeContentQueue()
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
            Urgency::InTurn);
    };
    callbacks.problem = [this](const std::optional<XPError> &error) {
        if (error)
            m_problems.set(IndexProblems::contents,
                           {.kind = IndexProblem::Kind::ContentsNotSaved, .error = error});
        else
            m_problems.clear(IndexProblems::contents);
        mayBeQuiet();
    };
    callbacks.idle = [this] { mayBeQuiet(); };
    callbacks.startedOver = [this] {
        m_jobs.post([this] { return queueWaitingContents(0); }, Urgency::InTurn);
    };
    return std::make_shared<IndexContentQueue>(*m_text, std::move(callbacks));
}

std::shared_ptr<IndexKeeper::Crew> IndexKeeper::makeCrew(bool distant)
{
    const auto crew = std::make_shared<Crew>();
    const std::weak_ptr<Crew> weak = crew; // a job may find it gone
    crew->distant = distant;
    const auto later = [this, weak](std::function<void(const std::shared_ptr<Crew> &)> job) {
        m_jobs.post(
            [weak, job = std::move(job)] {
                if (const auto there = weak.lock())
                    job(there);
                return true;
            },
            Urgency::InTurn);
    };
    crew->watcher = std::make_shared<IndexWatcher>(
        [this, weak](std::vector<IndexWatcher::Event> events) {
            const auto pending = std::make_shared<IndexReconciler::Events>();
            pending->events = std::move(events);
            m_jobs.post(
                [this, weak, pending] {
                    const auto there = weak.lock();
                    if (!there)
                        return true;
                    if (pending->next == 0)
                        applySpecialEvents(there, pending->events);
                    return m_reconciler.apply(*pending);
                },
                Urgency::Now);
        },
        [this] { mayBeQuiet(); }, IndexWatcher::Options{distant, !distant});
    IndexCrawler::Callbacks callbacks;
    callbacks.stamp = [this] {
        ++m_foldersRead;
        return m_reconciler.stamp();
    };
    callbacks.compare = [this](const IndexListing &listing,
                               std::span<IndexFolderReader::Seen> seen) {
        return compare(listing, seen);
    };
    callbacks.deliver = [this, weak](std::vector<IndexListing> listings) {
        m_jobs.waitForRoom();
        const auto there = weak.lock();
        if (!there)
            return;
        there->waiting += static_cast<int>(listings.size());
        for (IndexListing &listing : listings) {
            const auto pending = std::make_shared<IndexReconciler::Pending>();
            pending->listing = std::move(listing);
            m_jobs.post(
                [this, weak, pending] {
                    const auto applying = weak.lock();
                    const bool done = !applying || applyListing(*pending);
                    if (done && applying)
                        --applying->waiting;
                    return done;
                },
                Urgency::InTurn);
        }
    };
    callbacks.unwatched = [later](const QByteArray &folder) {
        later([folder](const std::shared_ptr<Crew> &there) { there->unwatched.insert(folder); });
    };
    callbacks.idle = [this, later] {
        later([this](const std::shared_ptr<Crew> &there) { crawlDone(there); });
    };
    crew->crawler = std::make_unique<IndexCrawler>(!distant, m_reconciler.rules(), crew->watcher,
                                                   std::move(callbacks));
    return crew;
}

IndexKeeper::Crew::~Crew()
{
    if (watcher)
        watcher->stop(); // the crawler may leave it to a thread that hangs
}

// --- What crawls find

IndexFolderReader::Hooks::Known IndexKeeper::compare(const IndexListing &listing,
                                                     std::span<IndexFolderReader::Seen> seen) const
{
    const IndexCatalog &catalog = m_live.catalog();
    const IndexCatalog::Reading reading(catalog);
    IndexFolderReader::Hooks::Known known;
    known.generation = catalog.generation();
    const IndexItem folder = catalog.itemAtPath(listing.folder);
    const IndexSlot slot = catalog.slotOf(folder);
    if (slot == IndexCatalog::noSlot)
        return known;
    known.rows = catalog.childCount(folder);
    known.folder = listing.info && catalog.hasFacts(slot, *listing.info);
    if (known.rows == 0)
        return known;
    // Entries read in the order in which they were found once stand one behind the other.
    IndexSlot hint = slot + 1;
    for (IndexFolderReader::Seen &entry : seen) {
        const IndexSlot row = catalog.slotOf(
            catalog.childNear(folder, QByteArrayView(entry.name, entry.nameSize), hint));
        entry.known = row != IndexCatalog::noSlot && entry.info.changed < m_trustedBefore &&
                      catalog.hasFacts(row, entry.info);
        hint = row + 1;
    }
    return known;
}

bool IndexKeeper::applyListing(IndexReconciler::Pending &pending)
{
    if (pending.next == 0) {
        Root *root = rootAt(pending.listing.folder);
        if (root && !prepareRoot(*root, pending.listing))
            return true;
    }
    return m_reconciler.apply(pending);
}

// --- Content

void IndexKeeper::applied(const IndexBatch &batch)
{
    if (m_writer.isUnsaved())
        saveLater();
    restLater();
    // Those of a crawl are told when it is done.
    if (!m_lastUsed.isEmpty() && !m_local->isCrawling) {
        for (const IndexChange &change : batch) {
            if (change.kind == IndexChange::Kind::Put &&
                m_lastUsedNames.contains(change.record.name))
                queueLastUse(change.record.item);
        }
    }
    if (!m_importer)
        return;
    std::vector<IndexContentQueue::Waiting> backlog;
    for (const IndexChange &change : batch) {
        const IndexItem item = change.record.item;
        if (change.kind == IndexChange::Kind::Remove) {
            m_importer->forget(item);
            continue;
        }
        if (change.kind != IndexChange::Kind::Put && change.kind != IndexChange::Kind::Move)
            continue;
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
}

bool IndexKeeper::wantsContent(IndexSlot slot) const
{
    const IndexCatalog &catalog = m_writer.catalog();
    if (!S_ISREG(catalog.chunkOf(slot).modes[IndexCatalog::rowOf(slot)]) ||
        !m_importer->accepts(catalog.type(slot)))
        return false;
    if (!m_hasDistant)
        return true;
    // Nobody asked for all those bytes.
    const auto crew = crewOf(catalog.path(slot));
    return !crew || !crew->distant;
}

bool IndexKeeper::isContentStored(IndexSlot slot) const
{
    const IndexRecord record = m_writer.catalog().record(slot);
    return m_writer.catalog().isImported(slot, record.info.modified, record.info.size) &&
           m_text->isStored(record.item, record.info.modified, record.info.size);
}

// What the importing thread needs to know of a file when its turn comes.
std::optional<IndexContentQueue::File> IndexKeeper::contentFile(IndexItem item) const
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
        catalog.path(slot), record.type, record.info.modified, record.info.size,
        catalog.isImported(slot, record.info.modified, record.info.size)};
}

// What was imported of a file that has become another meanwhile is worth nothing.
void IndexKeeper::applyImports(IndexBatch &batch)
{
    std::erase_if(batch, [&](const IndexChange &change) {
        const IndexSlot slot = m_writer.catalog().slotOf(change.record.item);
        return slot == IndexCatalog::noSlot || !wantsContent(slot);
    });
    m_writer.commit(batch);
}

// The file is of another type now, from which nothing is imported.
void IndexKeeper::forgetImport(IndexItem item)
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
        Urgency::Now);
}

// What an earlier run left to import.
bool IndexKeeper::queueWaitingContents(IndexSlot from)
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
        m_jobs.post([this, end] { return queueWaitingContents(end); }, Urgency::InTurn);
    return true;
}

void IndexKeeper::saveLater()
{
    if (std::exchange(m_savingLater, true))
        return;
    m_jobs.postLater(
        [this] {
            m_savingLater = false;
            m_writer.save();
            if (m_writer.isUnsaved())
                saveLater();
            return true;
        },
        saveAgainAfter);
}

void IndexKeeper::restLater()
{
    if (std::exchange(m_restingLater, true))
        return;
    m_jobs.postLater(
        [this, then = m_writer.catalog().generation()] {
            m_restingLater = false;
            if (m_writer.catalog().generation() == then)
                m_writer.rest();
            else
                restLater();
            return true;
        },
        restAfter);
}

// --- When files were used last

static const QString lastUsedDate = QStringLiteral("kMDItemLastUsedDate");

void IndexKeeper::setRecents(IndexRecents::Times times)
{
    m_lastUsed = std::move(times);
    m_hasRecents = true;
    m_lastUsedNames.clear();
    for (auto entry = m_lastUsed.cbegin(); entry != m_lastUsed.cend(); ++entry)
        m_lastUsedNames.insert(IndexReconciler::nameOf(entry.key()));
    applyRecents();
}

void IndexKeeper::applyRecents()
{
    if (!m_hasRecents)
        return;
    const IndexCatalog &catalog = m_writer.catalog();
    IndexBatch batch;
    for (auto entry = m_lastUsed.cbegin(); entry != m_lastUsed.cend(); ++entry) {
        if (const IndexItem item = m_reconciler.itemAt(entry.key()))
            tellLastUse(item, entry.key(), batch);
    }
    if (const auto *postings = catalog.attributeNamed(lastUsedDate)) {
        for (const IndexSlot slot : postings->present().rows()) {
            const QByteArray path = catalog.path(slot);
            if (!m_lastUsed.contains(path))
                tellLastUse(catalog.itemAt(slot), path, batch);
        }
    }
    m_writer.commit(batch);
}

void IndexKeeper::tellLastUse(IndexItem item, const QByteArray &path, IndexBatch &batch) const
{
    PropertyValue date;
    if (const auto time = m_lastUsed.constFind(path); time != m_lastUsed.cend())
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
void IndexKeeper::queueLastUse(IndexItem item)
{
    m_jobs.post(
        [this, item] {
            const IndexSlot slot = m_writer.catalog().slotOf(item);
            IndexBatch batch;
            if (slot != IndexCatalog::noSlot)
                tellLastUse(item, m_writer.catalog().path(slot), batch);
            m_writer.commit(batch);
            return true;
        },
        Urgency::Now);
}

// --- Others

void IndexKeeper::setRoots(const QStringList &roots)
{
    m_jobs.post(
        [this, roots] {
            applyRoots(roots);
            return true;
        },
        Urgency::Now);
}

void IndexKeeper::setRules(const QStringList &rules)
{
    m_jobs.post(
        [this, rules] {
            if (rules == m_rules.rules())
                return true;
            m_rules = IndexRules(rules);
            applyRules();
            for (Root &root : m_roots)
                readRoot(root);
            return true;
        },
        Urgency::Now);
}

void IndexKeeper::reimport(const QByteArray &path)
{
    m_jobs.post(
        [this, path] {
            m_reconciler.look(path);
            return true;
        },
        Urgency::Now);
}

void IndexKeeper::textIsDamaged(quint64 inode)
{
    std::shared_ptr<IndexContentQueue> contents;
    {
        const XPLocker lock(m_mutex);
        contents = m_contents;
    }
    if (contents)
        contents->storeIsDamaged(inode);
}

IndexStatus IndexKeeper::status() const
{
    std::shared_ptr<IndexContentQueue> contents;
    IndexStatus status;
    {
        const XPLocker lock(m_mutex);
        status = m_status;
        contents = m_contents;
    }
    status.contentsWaiting = contents ? contents->waiting() + contents->postponed() : 0;
    status.foldersRead = m_foldersRead;
    status.problems = m_problems.all();
    const IndexCatalog::Reading reading(m_live.catalog());
    status.items = m_live.catalog().count();
    return status;
}

// No job is left; asked on the writer's thread.
bool IndexKeeper::isQuiet(bool contents) const
{
    if (contents && m_importer && m_importer->waiting() > 0)
        return false;
    // In this order: what one of them hands on is then seen in the next.
    const auto isAtRest = [](const Crew &crew) {
        return crew.watcher->isDrained() && (crew.isSilent || crew.crawler->isIdle());
    };
    return isAtRest(*m_local) && std::all_of(m_roots.begin(), m_roots.end(), [&](const Root &root) {
               return !root.crew || isAtRest(*root.crew);
           });
}

void IndexKeeper::whenQuiet(bool contents, std::function<void()> done)
{
    ++m_asking; // before looking: whoever comes to rest meanwhile says so
    m_jobs.post(
        [this, contents, done = std::move(done)] {
            m_waiting.push_back({contents, done});
            return true;
        },
        Urgency::InTurn);
}

// From any thread: something came to rest, or may have.
void IndexKeeper::mayBeQuiet()
{
    if (m_asking > 0)
        m_jobs.post([] { return true; }, Urgency::InTurn);
}

void IndexKeeper::tellQuiet()
{
    for (const bool contents : {false, true}) {
        const auto isMeant = [&](const Waiting &waiting) { return waiting.contents == contents; };
        if (std::none_of(m_waiting.begin(), m_waiting.end(), isMeant) || !isQuiet(contents))
            continue;
        for (const Waiting &waiting : m_waiting) {
            if (isMeant(waiting))
                waiting.done();
        }
        m_asking -= static_cast<int>(std::erase_if(m_waiting, isMeant));
    }
}

bool IndexKeeper::sync(bool contents, const std::function<bool()> &stop)
{
    struct Answer
    {
        XPMutex mutex;
        std::condition_variable_any wake;
        bool done XP_GUARDED_BY(mutex) = false;
    };
    const auto answer = std::make_shared<Answer>();
    whenQuiet(contents, [answer] {
        const XPLocker lock(answer->mutex);
        answer->done = true;
        answer->wake.notify_all();
    });
    XPLocker lock(answer->mutex);
    while (!answer->done) {
        if (answer->wake.wait_for(lock, 50ms) == std::cv_status::timeout && stop && stop())
            return false;
    }
    return true;
}
