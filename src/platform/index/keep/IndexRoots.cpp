#include "IndexRoots.h"

#include "KPFileType.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

static constexpr milliseconds lookAgainAfter(100); // for a root that seems to come

static bool isInside(const QByteArray &path, const QByteArray &folder)
{
    return path.size() > folder.size() && path.startsWith(folder) &&
           (folder == "/" || path[folder.size()] == '/');
}

// Of this thread, which may have been given mounts of its own.
static XPMountTable readMounts()
{
    const XPFileDescriptor file(::open("/proc/thread-self/mountinfo", O_RDONLY | O_CLOEXEC));
    QByteArray text;
    char buffer[16384];
    ssize_t got = 0;
    while ((got = ::read(file.get(), buffer, sizeof buffer)) > 0)
        text.append(buffer, got);
    return XPMountTable::parse(text);
}

// --- Which roots there are

// Whether reading `other` reads `path` too.
static bool isReadWith(const QByteArray &path, const QByteArray &other, const IndexRules &rules,
                       const XPMountTable &mounts)
{
    if (!isInside(path, other) || mounts.volumeOf(XPPath::decode(path)).mountPoint !=
                                      mounts.volumeOf(XPPath::decode(other)).mountPoint)
        return false;
    for (QByteArray below = path; below != other; below = IndexReconciler::parentOf(below)) {
        if (rules.excludes(IndexReconciler::parentOf(below), IndexReconciler::nameOf(below)))
            return false;
    }
    return true;
}

IndexRoots::IndexRoots(IndexKeeping &keeping, Calls calls)
    : m_live(keeping.live), m_setup(keeping.setup), m_problems(keeping.problems),
      m_jobs(keeping.jobs), m_writer(keeping.writer), m_calls(std::move(calls)),
      m_rules(m_setup.rules),
      m_reconciler(m_writer, std::make_shared<const IndexRules>(m_rules),
                   {[this](const QByteArray &folder, bool deep) { read(folder, deep); },
                    [this](const QByteArray &folder) {
                        const auto crew = crewOf(folder);
                        return crew && crew->isCrawling;
                    },
                    [this](const QByteArray &folder) { return isDistant(folder); },
                    [this](IndexLoss loss) { m_live.tellLoss(std::move(loss)); },
                    [this](IndexAttributesChange change) {
                        m_live.tellAttributesChange(std::move(change));
                    }})
{
}

void IndexRoots::begin()
{
    // Two changes within one tick of the disk's clock leave the same change time. Where the last
    // run ended, the second one may not have been seen.
    if (const qint64 written = m_writer.lastWritten())
        m_trustedBefore = written - 10'000'000'000;
    m_reconciler.begin();
    m_local = makeCrew(false);
    if (!m_local->watcher->isUsable())
        m_problems.set(IndexProblems::watching, {.kind = IndexProblem::Kind::NoWatches});
}

void IndexRoots::end()
{
    for (Root &root : m_roots)
        root.crew.reset();
    m_local.reset();
}

void IndexRoots::setFolders(const QStringList &roots, const QStringList &rules)
{
    // One job: with new rules and the old roots, what only became a root by them would go and
    // come back.
    m_jobs.post(
        [this, roots, rules] {
            m_rules = IndexRules(rules);
            applyRoots(roots);
            return true;
        },
        IndexJobs::Urgency::Now);
}

void IndexRoots::look(const QByteArray &path)
{
    m_jobs.post(
        [this, path] {
            m_reconciler.look(path);
            return true;
        },
        IndexJobs::Urgency::Now);
}

bool IndexRoots::isDistant(const QByteArray &path) const
{
    const auto crew = crewOf(path);
    return crew && crew->distant;
}

bool IndexRoots::isAtRest() const
{
    // In this order: what one of them hands on is then seen in the next.
    const auto rests = [](const Crew &crew) {
        return crew.watcher->isDrained() && (crew.isSilent || crew.crawler->isIdle());
    };
    return rests(*m_local) && std::all_of(m_roots.begin(), m_roots.end(), [&](const Root &root) {
               return !root.crew || rests(*root.crew);
           });
}

void IndexRoots::applyRoots(const QStringList &roots)
{
    m_mounts = readMounts();
    QByteArrayList wanted;
    for (const QString &root : roots) {
        const QByteArray path = XPPath::encode(XPPath::absolute(root));
        if (!path.isEmpty() && !wanted.contains(path))
            wanted.append(path);
    }
    const QByteArrayList all = wanted;
    wanted.removeIf([&](const QByteArray &path) {
        // One on a volume inside another root stays a root while that is not mounted.
        const QByteArray volume = m_writer.note(QStringLiteral("volume:") + XPPath::decode(path));
        return std::any_of(all.begin(), all.end(), [&](const QByteArray &other) {
            return isReadWith(path, other, m_rules, m_mounts) && !isInside(volume, other);
        });
    });
    const IndexCatalog &catalog = m_writer.catalog();
    for (const IndexItem item : std::vector<IndexItem>(catalog.roots())) {
        const QByteArray path = catalog.path(catalog.slotOf(item));
        if (!wanted.contains(path))
            dropRoot(path);
    }
    std::erase_if(m_roots, [&](const Root &root) {
        if (!wanted.contains(root.path))
            m_problems.clear(XPPath::decode(root.path));
        return !wanted.contains(root.path);
    });
    for (const QByteArray &path : wanted) {
        if (rootAt(path))
            continue;
        // Read with another root so far: the rules that hold now stop before it.
        const IndexSlot slot = catalog.slotOf(m_reconciler.itemAt(path));
        if (slot != IndexCatalog::noSlot && catalog.record(slot).parent != 0)
            dropTree(path);
        m_roots.emplace_back().path = path;
    }
    if (m_writer.isUnfinished())
        m_writer.beginBulk();
    applyRules();
    for (Root &root : m_roots)
        readRoot(root);
    updateStatus();
}

void IndexRoots::applyRules()
{
    QByteArrayList paths;
    for (const Root &root : m_roots)
        paths.append(root.path);
    const auto rules =
        std::make_shared<const IndexRules>(m_rules.withRoots(paths).withoutStore(m_setup.path));
    m_reconciler.setRules(rules);
    m_local->crawler->setRules(rules);
    for (const Root &root : m_roots) {
        if (root.crew)
            root.crew->crawler->setRules(rules);
    }
}

void IndexRoots::dropRoot(const QByteArray &path)
{
    dropTree(path);
    m_writer.setNote(QStringLiteral("volume:") + XPPath::decode(path), {});
}

void IndexRoots::dropTree(const QByteArray &path)
{
    m_local->watcher->forgetBelow(path);
    IndexBatch gone;
    m_reconciler.removeTree(m_reconciler.itemAt(path), gone);
    m_writer.commit(gone);
}

IndexRoots::Root *IndexRoots::rootAt(const QByteArray &path)
{
    const auto found = std::find_if(m_roots.begin(), m_roots.end(),
                                    [&](const Root &root) { return root.path == path; });
    return found == m_roots.end() ? nullptr : &*found;
}

std::shared_ptr<IndexRoots::Crew> IndexRoots::crewOf(const QByteArray &path) const
{
    const Root *nearest = nullptr;
    for (const Root &root : m_roots) {
        if ((path == root.path || isInside(path, root.path)) &&
            (!nearest || root.path.size() > nearest->path.size()))
            nearest = &root;
    }
    return nearest ? nearest->crew : nullptr;
}

// --- Reading them

void IndexRoots::readRoot(Root &root)
{
    const QString path = XPPath::decode(root.path);
    if (root.volume.isEmpty())
        root.volume = QString::fromUtf8(m_writer.note(QStringLiteral("volume:") + path));
    if (!isMountedAsBefore(root)) {
        setMissing(root, {.kind = IndexProblem::Kind::RootUnmounted, .volume = root.volume});
        return;
    }
    const QString store = XPPath::folder(XPPath::absolute(m_setup.path));
    if (!m_setup.path.isEmpty() && (path == store || path.startsWith(store + u'/'))) {
        setMissing(root, {.kind = IndexProblem::Kind::RootHoldsStore});
        return;
    }
    const bool distant = m_mounts.volumeOf(path).slow;
    m_hasDistant = m_hasDistant || distant;
    if (!root.crew || root.crew->distant != distant) {
        root.crew = distant ? makeCrew(true) : m_local;
        root.isAsked = false;
    }
    if (root.isAsked) {
        root.crew->overflowed = true; // once more, after this time
        return;
    }
    if (root.state == State::Missing)
        m_problems.clear(path); // a root that is as it was is not heard of again
    root.state = State::Reading;
    root.isAsked = true;
    read(root.path, true);
    updateStatus();
}

bool IndexRoots::isMountedAsBefore(const Root &root) const
{
    return root.volume.isEmpty() || m_mounts.volumeOf(root.volume).mountPoint == root.volume;
}

void IndexRoots::setMissing(Root &root, IndexProblem problem)
{
    root.state = State::Missing;
    root.isAsked = false;
    const QString path = XPPath::decode(root.path);
    problem.path = path;
    problem.keepsItems = m_reconciler.itemAt(root.path) != 0;
    // Our own folders are made when they are needed.
    if (!problem.keepsItems && path.startsWith(XPFolders::ourApplicationSupport() + u'/'))
        m_problems.clear(path);
    else
        m_problems.set(path, problem);
    if (root.crew)
        root.crew->watcher->forgetBelow(root.path);
    watchForMissing(root);
    updateStatus();
}

// The nearest folder that is there tells when the next one on the way comes.
void IndexRoots::watchForMissing(const Root &root)
{
    QByteArray missing = root.path;
    for (QByteArray folder = missing; folder != "/"; missing = folder) {
        folder = IndexReconciler::parentOf(folder);
        if (m_mounts.volumeOf(XPPath::decode(folder)).slow)
            return;
        const XPFileDescriptor open(
            ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
        if (!open.isOpen())
            continue;
        m_local->watcher->watch(folder, open.get());
        // It may have come just before the watch did.
        struct stat info = {};
        if (::fstatat(open.get(), IndexReconciler::nameOf(missing).constData(), &info,
                      AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISDIR(info.st_mode) && isMountedAsBefore(root))
            m_jobs.postLater(
                [this, path = root.path] {
                    Root *there = rootAt(path);
                    if (there && there->state == State::Missing)
                        readRoot(*there);
                    return true;
                },
                lookAgainAfter);
        return;
    }
}

// The first thing heard of a root. False: nothing of the listing is to be applied.
bool IndexRoots::prepareRoot(Root &root, const IndexListing &listing)
{
    const QString path = XPPath::decode(root.path);
    if (listing.error) {
        const qint64 code = listing.error->code;
        if (code == ENOENT || code == ENOTDIR || code == ELOOP) {
            setMissing(root, {.kind = IndexProblem::Kind::RootMissing});
            return false;
        }
        m_problems.set(
            path,
            {.kind = IndexProblem::Kind::RootUnreadable, .path = path, .error = listing.error});
        return listing.info.has_value();
    }
    // An empty folder may be what an unmounted volume left.
    m_mounts = readMounts();
    if (!isMountedAsBefore(root)) {
        root.isAsked = false;
        readRoot(root);
        return false;
    }
    m_problems.clear(path);
    root.volume = m_mounts.volumeOf(path).mountPoint;
    m_writer.setNote(QStringLiteral("volume:") + path, root.volume.toUtf8());
    const IndexCatalog &catalog = m_writer.catalog();
    const IndexSlot slot = catalog.slotOf(m_reconciler.itemAt(root.path));
    if (slot != IndexCatalog::noSlot && catalog.record(slot).parent == 0)
        return true;
    m_writer.beginBulk();
    IndexChange change;
    change.record.item = m_writer.newItem();
    change.record.name = root.path;
    change.record.info = *listing.info;
    change.record.type = KPFileType::folderUTI;
    m_writer.commit({change});
    return true;
}

void IndexRoots::read(const QByteArray &folder, bool deep)
{
    const auto crew = crewOf(folder);
    if (!crew)
        return;
    if (!std::exchange(crew->isCrawling, true)) {
        crew->since = Clock::now();
        if (crew->distant)
            checkSilence(crew);
    }
    crew->crawler->submit(folder, deep);
}

void IndexRoots::crawlDone(const std::shared_ptr<Crew> &crew)
{
    if (!crew->crawler->isIdle() || crew->waiting > 0)
        return; // more was asked for meanwhile; its end tells again
    crew->isCrawling = false;
    crew->isSilent = false;
    crew->lastCrawl = std::chrono::duration_cast<milliseconds>(Clock::now() - crew->since);
    const bool again = std::exchange(crew->overflowed, false);
    for (Root &root : m_roots) {
        if (root.crew != crew || (root.state != State::Reading && root.state != State::Silent))
            continue;
        root.state = State::Live;
        root.isAsked = false;
        if (again)
            readRoot(root);
    }
    if (again)
        return;
    if (crew == m_local) {
        m_trustedBefore = std::numeric_limits<qint64>::max();
        m_writer.endBulk();
        m_calls.crawled();
        m_problems.clear(IndexProblems::overflow);
    }
    const bool anyCrawling = std::any_of(m_roots.begin(), m_roots.end(), [](const Root &root) {
        return root.crew && root.crew->isCrawling;
    });
    if (!anyCrawling)
        m_reconciler.crawlDone();
    if (const qsizetype unreadable = m_reconciler.unreadable())
        m_problems.set(IndexProblems::reading,
                       {.kind = IndexProblem::Kind::FoldersUnreadable, .count = unreadable});
    else
        m_problems.clear(IndexProblems::reading);
    tellOfUnwatched(*crew);
    scheduleReading(crew);
    updateStatus();
}

// --- What the watcher tells of roots

void IndexRoots::applySpecialEvents(const std::shared_ptr<Crew> &crew,
                                    const std::vector<IndexWatcher::Event> &events)
{
    using Kind = IndexWatcher::Event::Kind;
    for (const IndexWatcher::Event &event : events) {
        if (event.kind == Kind::Mounts) {
            mountsChanged();
        } else if (event.kind == Kind::Overflow) {
            m_problems.set(IndexProblems::overflow, {.kind = IndexProblem::Kind::EventsLost});
            for (Root &root : m_roots) {
                if (root.crew == crew && root.state != State::Missing)
                    readRoot(root);
            }
        } else if (event.kind == Kind::FolderGone) {
            if (Root *root = rootAt(event.folder))
                readRoot(*root);
        } else if (event.isFolder && (event.kind == Kind::Gone || event.kind == Kind::Moved)) {
            // The folder above may be watched too, and tell first: then the root's own watch is
            // taken away before it can.
            const QByteArray path = IndexReconciler::joined(event.folder, event.name);
            for (Root &root : m_roots) {
                if (root.state != State::Missing &&
                    (root.path == path || isInside(root.path, path)))
                    readRoot(root);
            }
        }
    }
    for (Root &root : m_roots) {
        if (root.state != State::Missing)
            continue;
        const bool maybeBack = std::any_of(events.begin(), events.end(), [&](const auto &event) {
            const bool moved = event.kind == Kind::Moved;
            const QByteArray path = IndexReconciler::joined(moved ? event.toFolder : event.folder,
                                                            moved ? event.toName : event.name);
            return path == root.path || isInside(root.path, path);
        });
        if (maybeBack)
            readRoot(root);
    }
}

void IndexRoots::mountsChanged()
{
    const XPMountTable before = std::exchange(m_mounts, readMounts());
    for (Root &root : m_roots) {
        const auto &was = before.volumeOf(XPPath::decode(root.path));
        const auto &is = m_mounts.volumeOf(XPPath::decode(root.path));
        if (was.mountPoint != is.mountPoint || was.source != is.source ||
            root.state == State::Missing)
            readRoot(root);
    }
    const QStringList pointsBefore = before.mountPoints();
    const QStringList points = m_mounts.mountPoints();
    const QSet<QString> had(pointsBefore.begin(), pointsBefore.end());
    const QSet<QString> have(points.begin(), points.end());
    for (const QString &point : (had - have) + (have - had)) {
        const QByteArray path = XPPath::encode(point);
        if (!rootAt(path))
            m_reconciler.lookAtMount(path);
    }
}

void IndexRoots::updateStatus()
{
    using Phase = IndexStatus::Phase;
    IndexStatus status; // a new list, not the one that others may be reading
    status.phase = Phase::Live;
    for (const Root &root : m_roots) {
        status.roots.append({XPPath::decode(root.path), root.state});
        if (root.state == State::Reading)
            status.phase = m_writer.isBulk() ? Phase::Crawling : Phase::Verifying;
    }
    const XPLocker lock(m_mutex);
    m_status = std::move(status);
}

IndexStatus IndexRoots::status() const
{
    IndexStatus status;
    {
        const XPLocker lock(m_mutex);
        status = m_status;
    }
    status.foldersRead = m_foldersRead;
    return status;
}
