#include "MetadataIndex.h"

#include "XPFolders.h"
#include "XPPath.h"

#include <fcntl.h>
#include <sys/file.h>
#include <thread>

using namespace std::chrono_literals;

static const QString rootsKey = QStringLiteral("KPIndexRoots");
static const QString rulesKey = QStringLiteral("KPIndexExclusions");
static constexpr auto patience = 5s; // with a process that holds the lock and does not answer

// --- Settings

QString MetadataIndex::storePath()
{
    return XPFolders::ourCaches() + QStringLiteral("/index/index.sqlite");
}

QStringList MetadataIndex::roots()
{
    const PropertyValue saved = UserDefaults::standard().value(rootsKey);
    if (!saved.isArray())
        return {XPFolders::home()};
    QStringList roots;
    for (const PropertyValue &root : saved.array()) {
        // A path that is no well-formed text is stored as its bytes.
        roots.append(root.isString() ? XPFolders::expandTilde(root.string())
                                     : XPPath::decode(root.data()));
    }
    return roots;
}

void MetadataIndex::setRoots(const QStringList &roots)
{
    PropertyValue::Array values;
    for (const QString &root : roots) {
        if (root.isValidUtf16())
            values.append(root);
        else
            values.append(XPPath::encode(root));
    }
    UserDefaults::standard().setValue(rootsKey, values);
}

QStringList MetadataIndex::allRoots()
{
    return roots() << XPFolders::ourApplicationSupport() + QStringLiteral("/Pending Documents");
}

void MetadataIndex::followSettings()
{
    m_followsSettings = true;
    for (const QString &key : {rootsKey, rulesKey})
        m_observations.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + key, [this](const PropertyValue &) { applySettings(); }));
}

void MetadataIndex::applySettings()
{
    IndexKeeper *const kept = keeper();
    if (!kept || !m_followsSettings)
        return;
    kept->setRules(IndexRules::fromSettings());
    kept->setRoots(allRoots());
}

void MetadataIndex::settingsChanged()
{
    (void)UserDefaults::standard().synchronise();
    if (keeper())
        applySettings();
    else
        (void)IndexRequests::tell(m_setup.path, IndexRequests::Kind::Settings, {});
}

// --- Keeping or following

// Waits for the lock on a thread that nothing can wake up but the lock, so the thread may be left
// behind; it then lets the lock go at once.
struct MetadataIndex::Waiter
{
    XPMutex mutex;
    MetadataIndex *owner XP_GUARDED_BY(mutex) = nullptr;
};

std::unique_ptr<MetadataIndex> MetadataIndex::open()
{
    IndexKeeper::Setup setup;
    setup.path = storePath();
    setup.roots = allRoots();
    setup.rules = IndexRules::fromSettings();
    setup.recents = XPFolders::applicationSupport() + QStringLiteral("/recently-used.xbel");
    std::unique_ptr<MetadataIndex> index(new MetadataIndex(setup));
    index->followSettings();
    index->start();
    return index;
}

std::unique_ptr<MetadataIndex> MetadataIndex::open(const IndexKeeper::Setup &setup)
{
    std::unique_ptr<MetadataIndex> index(new MetadataIndex(setup));
    index->start();
    return index;
}

static XPFileDescriptor openLock(const QString &storePath)
{
    const QByteArray path = XPPath::encode(storePath + QStringLiteral(".lock"));
    return XPFileDescriptor(::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
}

void MetadataIndex::start()
{
    auto error = XPFolders::create(XPPath::folder(m_setup.path));
    XPFileDescriptor lock;
    if (!error) {
        lock = openLock(m_setup.path);
        if (!lock.isOpen())
            error = XPError::fromErrno(errno, m_setup.path);
    }
    if (error) {
        m_setup.path.clear();
        keep({}, {});
        keeper()->problems().set(QStringLiteral("save"),
                                 QStringLiteral("nothing is saved, the next start begins anew: ") +
                                     error->message);
        return;
    }
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) == 0)
        keep(std::move(lock), {});
    else
        follow(std::move(lock));
}

void MetadataIndex::keep(XPFileDescriptor lock, std::unique_ptr<IndexStore> store)
{
    m_lock = std::move(lock);
    m_ownKeeper = std::make_unique<IndexKeeper>(m_live, m_setup, std::move(store));
    m_keeper = m_ownKeeper.get();
    if (m_setup.path.isEmpty())
        return;
    m_requests = std::make_unique<IndexRequests>(
        m_setup.path, [this](IndexRequests::Kind kind, const QByteArray &request,
                             const IndexRequests::Answer &to) { answer(kind, request, to); });
    if (const auto &error = m_requests->error())
        m_ownKeeper->problems().set(QStringLiteral("requests"),
                                    QStringLiteral("other programs cannot ask for anything: ") +
                                        error->message);
}

void MetadataIndex::follow(XPFileDescriptor lock)
{
    m_live.setReimport([path = m_setup.path](const QByteArray &file) {
        (void)IndexRequests::tell(path, IndexRequests::Kind::Import, file);
    });
    m_waiter = std::make_shared<Waiter>();
    {
        const XPLocker locker(m_mutex);
        m_follower = std::make_shared<IndexFollower>(m_live, m_setup.path);
    }
    {
        const XPLocker locker(m_waiter->mutex);
        m_waiter->owner = this;
    }
    std::thread([waiter = m_waiter, lock = std::move(lock)]() mutable {
        while (::flock(lock.get(), LOCK_EX) != 0) {
            if (errno != EINTR)
                return;
        }
        const XPLocker locker(waiter->mutex);
        if (waiter->owner)
            waiter->owner->takeOver(std::move(lock));
    }).detach();
}

void MetadataIndex::takeOver(XPFileDescriptor lock)
{
    std::shared_ptr<IndexFollower> following;
    {
        const XPLocker locker(m_mutex);
        following.swap(m_follower);
    }
    std::unique_ptr<IndexStore> store = following->finish();
    following.reset();
    if (m_followsSettings) {
        m_setup.roots = allRoots();
        m_setup.rules = IndexRules::fromSettings();
    }
    keep(std::move(lock), std::move(store));
}

MetadataIndex::~MetadataIndex()
{
    m_observations.clear();
    if (m_waiter) {
        const XPLocker locker(m_waiter->mutex);
        m_waiter->owner = nullptr;
    }
    m_live.setReimport({});
    m_requests.reset(); // its handler uses the keeper
    m_ownKeeper.reset();
}

std::shared_ptr<IndexFollower> MetadataIndex::follower() const
{
    const XPLocker locker(m_mutex);
    return m_follower;
}

// --- Asking whoever keeps it

bool MetadataIndex::waitUntilLoaded(const std::function<bool()> &stop) const
{
    return m_live.waitUntilLoaded(stop);
}

void MetadataIndex::answer(IndexRequests::Kind kind, const QByteArray &request,
                           const IndexRequests::Answer &answer)
{
    IndexKeeper *const kept = keeper();
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

XPResult<IndexStatus> MetadataIndex::status(const std::function<bool()> &stop) const
{
    if (const IndexKeeper *kept = keeper())
        return kept->status();
    const auto bytes = IndexRequests::ask(m_setup.path, IndexRequests::Kind::Status, {}, stop);
    if (!bytes)
        return bytes.error();
    return IndexStatus::fromBytes(*bytes);
}

std::optional<XPError> MetadataIndex::sync(bool contents, const std::function<bool()> &stop)
{
    const auto stopped = XPError::make(XPError::Kind::Cancelled, QStringLiteral("stopped"));
    // The process that keeps the index may end meanwhile; then it is this one, or a third.
    auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        if (stop && stop())
            return stopped;
        if (IndexKeeper *kept = keeper())
            return kept->sync(contents, stop) ? std::nullopt : std::optional(stopped);
        const auto answer =
            IndexRequests::ask(m_setup.path, IndexRequests::Kind::Sync, contents ? "1" : "0", stop);
        if (answer) {
            const auto following = follower();
            if (following && following->refresh(stop))
                return {};
            deadline = std::chrono::steady_clock::now() + patience;
            continue;
        }
        if (answer.error().kind == XPError::Kind::Cancelled ||
            std::chrono::steady_clock::now() > deadline)
            return answer.error();
        std::this_thread::sleep_for(20ms);
    }
}

std::optional<XPError> MetadataIndex::remove()
{
    const QString path = storePath();
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
