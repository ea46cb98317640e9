// IndexRoots: those who read and watch, and what they find.
#include "IndexRoots.h"

#include "XPPath.h"

using std::chrono::milliseconds;

// The work of reading again is kept to a twentieth of the time.
static constexpr int restFactor = 20;

std::shared_ptr<IndexRoots::Crew> IndexRoots::makeCrew(bool distant)
{
    auto crew = std::make_shared<Crew>();
    const std::weak_ptr<Crew> weak = crew; // a job may find it gone
    crew->distant = distant;
    const auto later = [this, weak](std::function<void(const std::shared_ptr<Crew> &)> job) {
        m_jobs.post(
            [weak, job = std::move(job)] {
                if (const auto there = weak.lock())
                    job(there);
                return true;
            },
            IndexJobs::Urgency::InTurn);
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
                IndexJobs::Urgency::Now);
        },
        m_calls.atRest, IndexWatcher::Options{distant, !distant});
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
                IndexJobs::Urgency::InTurn);
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

IndexRoots::Crew::~Crew()
{
    if (watcher)
        watcher->stop(); // the crawler may leave it to a thread that hangs
}

// --- What crawls find

IndexFolderReader::Hooks::Known IndexRoots::compare(const IndexListing &listing,
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

bool IndexRoots::applyListing(IndexReconciler::Pending &pending)
{
    if (pending.next == 0) {
        Root *root = rootAt(pending.listing.folder);
        if (root && !prepareRoot(*root, pending.listing))
            return true;
    }
    return m_reconciler.apply(pending);
}

// --- Reading again what gives no events

static qint64 secondsOf(milliseconds time)
{
    return std::chrono::duration_cast<std::chrono::seconds>(time).count();
}

void IndexRoots::tellOf(const Root &root, IndexProblem::Kind kind)
{
    const QString path = XPPath::decode(root.path);
    m_problems.set(path,
                   {.kind = kind, .path = path, .seconds = secondsOf(m_setup.distantInterval)});
}

void IndexRoots::tellOfUnwatched(const Crew &crew)
{
    for (const Root &root : m_roots) {
        if (root.crew.get() == &crew && crew.distant && root.state == State::Live)
            tellOf(root, IndexProblem::Kind::RootDistant);
    }
    if (crew.distant)
        return;
    if (crew.unwatched.isEmpty())
        m_problems.clear(IndexProblems::unwatched);
    else
        m_problems.set(IndexProblems::unwatched, {.kind = IndexProblem::Kind::FoldersUnwatched,
                                                  .count = crew.unwatched.size(),
                                                  .seconds = secondsOf(m_setup.unwatchedInterval)});
}

void IndexRoots::scheduleReading(const std::shared_ptr<Crew> &crew)
{
    if ((crew->unwatched.isEmpty() && !crew->distant) || std::exchange(crew->isDue, true))
        return;
    const auto interval = crew->distant ? m_setup.distantInterval : m_setup.unwatchedInterval;
    const std::weak_ptr<Crew> weak = crew;
    m_jobs.postLater(
        [this, weak] {
            const auto there = weak.lock();
            if (there && std::exchange(there->isDue, false)) {
                if (there->isCrawling)
                    scheduleReading(there);
                else
                    readAgain(*there);
            }
            return true;
        },
        std::max(interval, crew->lastCrawl * restFactor));
}

void IndexRoots::readAgain(Crew &crew)
{
    for (const QByteArray &folder : std::exchange(crew.unwatched, {})) {
        if (m_reconciler.itemAt(folder))
            read(folder, false);
    }
    for (const Root &root : m_roots) {
        if (root.crew.get() == &crew && crew.distant && root.state == State::Live)
            read(root.path, true);
    }
}

void IndexRoots::checkSilence(const std::shared_ptr<Crew> &crew)
{
    const std::weak_ptr<Crew> weak = crew;
    m_jobs.postLater(
        [this, weak] {
            const auto there = weak.lock();
            if (!there || !there->isCrawling)
                return true;
            there->isSilent = there->crawler->isStuckFor(m_setup.patience);
            for (Root &root : m_roots) {
                if (root.crew != there)
                    continue;
                if (there->isSilent) {
                    root.state = State::Silent;
                    tellOf(root, IndexProblem::Kind::RootSilent);
                } else if (root.state == State::Silent) {
                    root.state = State::Reading;
                    m_problems.clear(XPPath::decode(root.path));
                }
            }
            updateStatus();
            checkSilence(there);
            return true;
        },
        m_setup.patience);
}
