#include "IndexKeeper.h"

#include "KPFileType.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// The work of reading again is kept to a twentieth of the time.
static constexpr int restFactor = 20;
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

void IndexKeeper::applyRoots(const QStringList &roots)
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
        if (!rootAt(path)) {
            Root &root = m_roots.emplace_back();
            root.path = path;
        }
    }
    if (m_writer.isUnfinished())
        m_writer.beginBulk();
    applyRules();
    for (Root &root : m_roots)
        readRoot(root);
    updateStatus();
}

void IndexKeeper::applyRules()
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

void IndexKeeper::dropRoot(const QByteArray &path)
{
    m_local->watcher->forgetBelow(path);
    IndexBatch gone;
    m_reconciler.removeTree(m_reconciler.itemAt(path), gone);
    m_writer.commit(gone);
    m_writer.setNote(QStringLiteral("volume:") + XPPath::decode(path), {});
}

IndexKeeper::Root *IndexKeeper::rootAt(const QByteArray &path)
{
    const auto found = std::find_if(m_roots.begin(), m_roots.end(),
                                    [&](const Root &root) { return root.path == path; });
    return found == m_roots.end() ? nullptr : &*found;
}

std::shared_ptr<IndexKeeper::Crew> IndexKeeper::crewOf(const QByteArray &path) const
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

void IndexKeeper::readRoot(Root &root)
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
    root.state = RootState::Reading;
    root.isAsked = true;
    read(root.path, true);
    updateStatus();
}

bool IndexKeeper::isMountedAsBefore(const Root &root) const
{
    return root.volume.isEmpty() || m_mounts.volumeOf(root.volume).mountPoint == root.volume;
}

void IndexKeeper::setMissing(Root &root, IndexProblem problem)
{
    root.state = RootState::Missing;
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
void IndexKeeper::watchForMissing(const Root &root)
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
                    if (there && there->state == RootState::Missing)
                        readRoot(*there);
                    return true;
                },
                lookAgainAfter);
        return;
    }
}

// The first thing heard of a root. False: nothing of the listing is to be applied.
bool IndexKeeper::prepareRoot(Root &root, const IndexListing &listing)
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

void IndexKeeper::read(const QByteArray &folder, bool deep)
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

void IndexKeeper::crawlDone(const std::shared_ptr<Crew> &crew)
{
    if (!crew->crawler->isIdle() || crew->waiting > 0)
        return; // more was asked for meanwhile; its end tells again
    crew->isCrawling = false;
    crew->isSilent = false;
    crew->lastCrawl = std::chrono::duration_cast<milliseconds>(Clock::now() - crew->since);
    const bool again = std::exchange(crew->overflowed, false);
    for (Root &root : m_roots) {
        if (root.crew != crew ||
            (root.state != RootState::Reading && root.state != RootState::Silent))
            continue;
        root.state = RootState::Live;
        root.isAsked = false;
        if (again)
            readRoot(root);
    }
    if (again)
        return;
    if (crew == m_local) {
        m_trustedBefore = std::numeric_limits<qint64>::max();
        m_writer.endBulk();
        applyRecents();
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

// --- Reading again what gives no events

static qint64 secondsOf(milliseconds time)
{
    return std::chrono::duration_cast<std::chrono::seconds>(time).count();
}

void IndexKeeper::tellOf(const Root &root, IndexProblem::Kind kind)
{
    const QString path = XPPath::decode(root.path);
    m_problems.set(path,
                   {.kind = kind, .path = path, .seconds = secondsOf(m_setup.distantInterval)});
}

void IndexKeeper::tellOfUnwatched(const Crew &crew)
{
    for (const Root &root : m_roots) {
        if (root.crew.get() == &crew && crew.distant && root.state == RootState::Live)
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

void IndexKeeper::scheduleReading(const std::shared_ptr<Crew> &crew)
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

void IndexKeeper::readAgain(Crew &crew)
{
    for (const QByteArray &folder : std::exchange(crew.unwatched, {})) {
        if (m_reconciler.itemAt(folder))
            read(folder, false);
    }
    for (const Root &root : m_roots) {
        if (root.crew.get() == &crew && crew.distant && root.state == RootState::Live)
            read(root.path, true);
    }
}

void IndexKeeper::checkSilence(const std::shared_ptr<Crew> &crew)
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
                    root.state = RootState::Silent;
                    tellOf(root, IndexProblem::Kind::RootSilent);
                } else if (root.state == RootState::Silent) {
                    root.state = RootState::Reading;
                    m_problems.clear(XPPath::decode(root.path));
                }
            }
            updateStatus();
            checkSilence(there);
            return true;
        },
        m_setup.patience);
}

// --- What the watcher tells of roots

void IndexKeeper::applySpecialEvents(const std::shared_ptr<Crew> &crew,
                                     const std::vector<IndexWatcher::Event> &events)
{
    using Kind = IndexWatcher::Event::Kind;
    for (const IndexWatcher::Event &event : events) {
        if (event.kind == Kind::Mounts) {
            mountsChanged();
        } else if (event.kind == Kind::Overflow) {
            m_problems.set(IndexProblems::overflow, {.kind = IndexProblem::Kind::EventsLost});
            for (Root &root : m_roots) {
                if (root.crew == crew && root.state != RootState::Missing)
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
                if (root.state != RootState::Missing &&
                    (root.path == path || isInside(root.path, path)))
                    readRoot(root);
            }
        }
    }
    for (Root &root : m_roots) {
        if (root.state != RootState::Missing)
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

void IndexKeeper::mountsChanged()
{
    const XPMountTable before = std::exchange(m_mounts, readMounts());
    for (Root &root : m_roots) {
        const auto &was = before.volumeOf(XPPath::decode(root.path));
        const auto &is = m_mounts.volumeOf(XPPath::decode(root.path));
        if (was.mountPoint != is.mountPoint || was.source != is.source ||
            root.state == RootState::Missing)
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

void IndexKeeper::updateStatus()
{
    using Phase = IndexStatus::Phase;
    IndexStatus status; // a new list, not the one that others may be reading
    status.phase = Phase::Live;
    for (const Root &root : m_roots) {
        status.roots.append({XPPath::decode(root.path), root.state});
        if (root.state == RootState::Reading)
            status.phase = m_writer.isBulk() ? Phase::Crawling : Phase::Verifying;
    }
    const XPLocker lock(m_mutex);
    m_status = std::move(status);
}
