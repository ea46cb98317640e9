#include "IndexKeeper.h"

#include "IndexRecents.h"

#include <algorithm>

using namespace std::chrono_literals;
using Urgency = IndexJobs::Urgency;

static constexpr auto saveAgainAfter = 30s; // while the disk takes nothing
static constexpr auto restAfter = 3s;       // without a change

// --- Start and end

IndexKeeper::IndexKeeper(IndexLive &live, const IndexSetup &setup,
                         std::unique_ptr<IndexStore> store)
    : m_keeping(live, setup), m_takenOver(std::move(store)),
      m_lastUse(m_keeping.writer, m_keeping.jobs),
      m_roots(m_keeping, {[this] { m_lastUse.apply(); }, [this] { mayBeQuiet(); }}),
      m_contents(m_keeping, {[this] { return m_roots.hasDistant(); },
                             [this](const QByteArray &path) { return m_roots.isDistant(path); },
                             [this] { mayBeQuiet(); }})
{
    setFolders(setup.roots, setup.rules);
    live.setReimport([this](const QByteArray &path) { reimport(path); });
    m_thread = std::thread([this] { run(); });
}

IndexKeeper::~IndexKeeper()
{
    m_keeping.live.setReimport({});
    m_keeping.jobs.stop();
    m_thread.join();
}

void IndexKeeper::run()
{
    IndexWriter &writer = m_keeping.writer;
    if (m_takenOver)
        writer.takeOver(std::move(m_takenOver));
    else
        writer.open(m_keeping.setup.path);
    m_contents.open();
    writer.setApplied([this](const IndexBatch &batch) { applied(batch); });
    m_keeping.live.setLoaded(); // queries need nothing of what follows
    m_keeping.live.writable().prepareForWriting();
    m_keeping.live.writable().orderNames();
    m_roots.begin();
    m_contents.queueWaiting(0);
    std::optional<IndexRecents> recents;
    if (!m_keeping.setup.recents.isEmpty()) {
        recents.emplace(m_keeping.setup.recents, [this](const IndexRecents::Times &times) {
            m_keeping.jobs.post(
                [this, times] {
                    m_lastUse.set(times);
                    return true;
                },
                Urgency::InTurn);
        });
    }
    m_keeping.jobs.run([this] { tellQuiet(); });
    recents.reset();
    m_roots.end();
    m_contents.close();
    writer.close();
}

// --- After each batch

void IndexKeeper::applied(const IndexBatch &batch)
{
    if (m_keeping.writer.isUnsaved())
        saveLater();
    restLater();
    if (!m_roots.isCrawling()) // those of a crawl are told when it is done
        m_lastUse.applied(batch);
    m_contents.applied(batch);
}

void IndexKeeper::saveLater()
{
    if (std::exchange(m_savingLater, true))
        return;
    m_keeping.jobs.postLater(
        [this] {
            m_savingLater = false;
            m_keeping.writer.save();
            if (m_keeping.writer.isUnsaved())
                saveLater();
            return true;
        },
        saveAgainAfter);
}

void IndexKeeper::restLater()
{
    if (std::exchange(m_restingLater, true))
        return;
    m_keeping.jobs.postLater(
        [this, then = m_keeping.writer.catalog().generation()] {
            m_restingLater = false;
            if (m_keeping.writer.catalog().generation() == then)
                m_keeping.writer.rest();
            else
                restLater();
            return true;
        },
        restAfter);
}

// --- For others

IndexStatus IndexKeeper::status() const
{
    IndexStatus status = m_roots.status();
    status.contentsWaiting = m_contents.waiting();
    status.problems = m_keeping.problems.all();
    const IndexCatalog &catalog = m_keeping.live.catalog();
    const IndexCatalog::Reading reading(catalog);
    status.items = catalog.count();
    return status;
}

void IndexKeeper::whenQuiet(bool contents, std::function<void()> done)
{
    ++m_asking; // before looking: whoever comes to rest meanwhile says so
    m_keeping.jobs.post(
        [this, contents, done = std::move(done)] {
            if (contents)
                m_contents.retry();
            m_waiting.push_back({contents, done});
            return true;
        },
        Urgency::InTurn);
}

// From any thread: something came to rest, or may have.
void IndexKeeper::mayBeQuiet()
{
    if (m_asking > 0)
        m_keeping.jobs.post([] { return true; }, Urgency::InTurn);
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

// No job was left; asked on the writer's thread. Jobs are asked for last: whoever came to rest
// since then handed on what it had.
bool IndexKeeper::isQuiet(bool contents) const
{
    return (!contents || m_contents.isAtRest()) && m_roots.isAtRest() &&
           !m_keeping.jobs.areWaiting();
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
