#include "MetadataIndex.h"

#include "IndexFollower.h"
#include "IndexKeeper.h"
#include "IndexLockWaiter.h"
#include "IndexRequests.h"
#include "IndexSettings.h"
#include "IndexVerifier.h"
#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <fcntl.h>
#include <sys/file.h>

using namespace std::chrono_literals;

static constexpr auto patience = 5s; // with a process that holds the lock and does not answer

struct MetadataIndex::Private
{
    explicit Private(const IndexSetup &what) : setup(what) {}

    void start();
    void keep(XPFileDescriptor held, std::unique_ptr<IndexStore> store);
    void follow(XPFileDescriptor held);
    void takeOver(XPFileDescriptor held);
    void answer(IndexRequests::Kind kind, const QByteArray &request,
                const IndexRequests::Answer &answer);
    void followSettings();
    void applySettings();
    std::shared_ptr<IndexFollower> follower() const;

    IndexSetup setup;
    bool followsSettings = false;
    IndexLive live;
    mutable XPMutex mutex;
    std::shared_ptr<IndexFollower> following XP_GUARDED_BY(mutex);
    XPFileDescriptor lock; // held as long as there is a keeper
    std::unique_ptr<IndexKeeper> ownKeeper;
    std::unique_ptr<IndexRequests> requests;
    std::atomic<IndexKeeper *> keeper = nullptr;
    std::vector<XPObservation> observations;
    std::unique_ptr<IndexLockWaiter> waiter; // for the other process's end
};

MetadataIndex::MetadataIndex(const IndexSetup &setup) : d(std::make_unique<Private>(setup))
{
}

MetadataIndex::~MetadataIndex()
{
    d->observations.clear();
    d->waiter.reset();
    d->live.setReimport({});
    d->requests.reset(); // its handler uses the keeper
    d->ownKeeper.reset();
}

std::unique_ptr<MetadataIndex> MetadataIndex::open(bool waitedFor)
{
    IndexSetup setup;
    setup.waitedFor = waitedFor;
    setup.path = IndexSettings::storePath();
    setup.roots = IndexSettings::allRoots();
    setup.rules = IndexSettings::rules();
    setup.recents = XPFolders::applicationSupport() + QStringLiteral("/recently-used.xbel");
    std::unique_ptr<MetadataIndex> index(new MetadataIndex(setup));
    index->d->followSettings();
    index->d->start();
    return index;
}

std::unique_ptr<MetadataIndex> MetadataIndex::open(const IndexSetup &setup)
{
    std::unique_ptr<MetadataIndex> index(new MetadataIndex(setup));
    index->d->start();
    return index;
}

// --- Settings

void MetadataIndex::Private::followSettings()
{
    followsSettings = true;
    for (const QString &key : {IndexSettings::rootsKey, IndexSettings::rulesKey})
        observations.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + key, [this](const PropertyValue &) { applySettings(); }));
}

void MetadataIndex::Private::applySettings()
{
    IndexKeeper *const kept = keeper;
    if (kept && followsSettings)
        kept->setFolders(IndexSettings::allRoots(), IndexSettings::rules());
}

void MetadataIndex::settingsChanged()
{
    (void)UserDefaults::standard().synchronise();
    if (isKeptHere())
        d->applySettings();
    else
        (void)IndexRequests::tell(d->setup.path, IndexRequests::Kind::Settings, {});
}

void MetadataIndex::setFolders(const QStringList &roots, const QStringList &rules)
{
    if (IndexKeeper *const kept = d->keeper)
        kept->setFolders(roots, rules);
}

// --- Keeping or following

static XPFileDescriptor openLock(const QString &storePath)
{
    const QByteArray path = XPPath::encode(storePath + QStringLiteral(".lock"));
    return XPFileDescriptor(::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
}

void MetadataIndex::Private::start()
{
    auto error = XPFolders::create(XPPath::folder(setup.path));
    XPFileDescriptor held;
    if (!error) {
        held = openLock(setup.path);
        if (!held.isOpen())
            error = XPError::fromErrno(errno, setup.path);
    }
    if (error) {
        setup.path.clear();
        keep({}, {});
        ownKeeper->problems().set(IndexProblems::saving,
                                  {.kind = IndexProblem::Kind::NothingSaved, .error = error});
        return;
    }
    if (::flock(held.get(), LOCK_EX | LOCK_NB) == 0)
        keep(std::move(held), {});
    else
        follow(std::move(held));
}

void MetadataIndex::Private::keep(XPFileDescriptor held, std::unique_ptr<IndexStore> store)
{
    lock = std::move(held);
    ownKeeper = std::make_unique<IndexKeeper>(live, setup, std::move(store));
    keeper = ownKeeper.get();
    if (setup.path.isEmpty())
        return;
    requests = std::make_unique<IndexRequests>(
        setup.path, [this](IndexRequests::Kind kind, const QByteArray &request,
                           const IndexRequests::Answer &to) { answer(kind, request, to); });
    if (const auto &error = requests->error())
        ownKeeper->problems().set(IndexProblems::requests,
                                  {.kind = IndexProblem::Kind::NoRequests, .error = error});
}

void MetadataIndex::Private::follow(XPFileDescriptor held)
{
    live.setReimport([path = setup.path](const QByteArray &file) {
        (void)IndexRequests::tell(path, IndexRequests::Kind::Import, file);
    });
    {
        const XPLocker locker(mutex);
        following = std::make_shared<IndexFollower>(live, setup.path);
    }
    waiter = std::make_unique<IndexLockWaiter>(
        std::move(held), [this](XPFileDescriptor taken) { takeOver(std::move(taken)); });
}

void MetadataIndex::Private::takeOver(XPFileDescriptor held)
{
    std::shared_ptr<IndexFollower> before;
    {
        const XPLocker locker(mutex);
        before.swap(following);
    }
    std::unique_ptr<IndexStore> store = before->finish();
    before.reset();
    if (followsSettings) {
        setup.roots = IndexSettings::allRoots();
        setup.rules = IndexSettings::rules();
    }
    keep(std::move(held), std::move(store));
}

std::shared_ptr<IndexFollower> MetadataIndex::Private::follower() const
{
    const XPLocker locker(mutex);
    return following;
}

// --- Asking whoever keeps it

IndexSource &MetadataIndex::source()
{
    return d->live;
}

bool MetadataIndex::isKeptHere() const
{
    return d->keeper != nullptr;
}

void MetadataIndex::setAttributesListener(IndexAttributesChange::Report listener)
{
    d->live.setAttributesListener(std::move(listener));
}

void MetadataIndex::setLossListener(IndexLoss::Report listener)
{
    d->live.setLossListener(std::move(listener));
}

bool MetadataIndex::waitUntilLoaded(const Stop &stop) const
{
    return d->live.waitUntilLoaded(stop);
}

void MetadataIndex::Private::answer(IndexRequests::Kind kind, const QByteArray &request,
                                    const IndexRequests::Answer &answer)
{
    IndexKeeper *const kept = keeper;
    switch (kind) {
    case IndexRequests::Kind::Import:
        kept->reimport(request);
        break;
    case IndexRequests::Kind::Sync:
        kept->whenQuiet(request == "1", [answer] { answer({}); });
        break;
    case IndexRequests::Kind::Status:
        answer(kept->status().toBytes());
        break;
    case IndexRequests::Kind::Settings:
        (void)UserDefaults::standard().synchronise();
        applySettings();
        break;
    case IndexRequests::Kind::Damage:
        kept->textIsDamaged(request.toULongLong());
        break;
    }
}

XPResult<IndexStatus> MetadataIndex::status(const Stop &stop) const
{
    if (const IndexKeeper *kept = d->keeper)
        return kept->status();
    const auto bytes = IndexRequests::ask(d->setup.path, IndexRequests::Kind::Status, {}, stop);
    if (!bytes)
        return bytes.error();
    return IndexStatus::fromBytes(*bytes);
}

std::optional<XPError> MetadataIndex::sync(bool contents, const Stop &stop)
{
    const auto stopped = XPError::make(XPError::Kind::Cancelled, QStringLiteral("stopped"));
    // The process that keeps the index may end meanwhile; then it is this one, or a third.
    IndexRequests::Arrival arrival(d->setup.path);
    auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        if (stop && stop())
            return stopped;
        if (IndexKeeper *kept = d->keeper)
            return kept->sync(contents, stop) ? std::nullopt : std::optional(stopped);
        const auto answer = IndexRequests::ask(d->setup.path, IndexRequests::Kind::Sync,
                                               contents ? "1" : "0", stop);
        if (answer) {
            const auto following = d->follower();
            if (following && following->refresh(stop))
                return {};
            deadline = std::chrono::steady_clock::now() + patience;
            continue;
        }
        if (answer.error().kind == XPError::Kind::Cancelled)
            return answer.error();
        if (!arrival.wait(deadline, stop) && !isKeptHere())
            return answer.error();
    }
}

std::vector<IndexDifference>
MetadataIndex::verify(const std::function<bool(qint64 folders)> &progress,
                      qint64 *itemsCompared) const
{
    IndexVerifier verifier(
        d->live.catalog(),
        IndexRules(IndexSettings::rules()).withoutStore(IndexSettings::storePath()));
    auto differences = verifier.run(progress);
    *itemsCompared = verifier.itemsCompared();
    return differences;
}

std::optional<XPError> MetadataIndex::remove()
{
    const QString path = IndexSettings::storePath();
    const XPFileDescriptor lock = openLock(path);
    if (!lock.isOpen())
        return errno == ENOENT ? std::nullopt : std::optional(XPError::fromErrno(errno, path));
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return XPError::make(XPError::Kind::NotPermitted,
                             QStringLiteral("another process keeps the index; quit it first"));
    IndexStore::remove(path);
    IndexStore::remove(path + QStringLiteral(".text"));
    return {};
}
