#include "KPQuickLook.h"

#include "ImportPause.h"
#include "KPContentTypes.h"
#include "KPDoc.h"
#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPPrograms.h"

#include <QCoreApplication>
#include <QPainter>
#include <algorithm>
#include <ctime>

static constexpr qsizetype entryOverhead = 512;
static constexpr qint64 secondsOfDay = 86400;
static constexpr qint64 secondsBetweenTries = 10; // of what could not be read
static constexpr double largeSide = 384;          // points; half of the largest thumbnail
static constexpr auto cutOffLater = std::chrono::milliseconds(250);

// The one instance. The lock keeps it alive while another thread tells it something.
static XPMutex globalMutex;
static std::unique_ptr<KPQuickLook> global XP_GUARDED_BY(globalMutex);

KPQuickLook::KPQuickLook(const Setup &setup)
    : m_pause(setup.pause),
      m_maker(setup.maker, [this] { Q_EMIT resultsWaiting(QPrivateSignal()); })
{
    connect(this, &KPQuickLook::resultsWaiting, this, &KPQuickLook::receive, Qt::QueuedConnection);
    connect(this, &KPQuickLook::pathsCleared, this, &KPQuickLook::letGoOfPaths,
            Qt::QueuedConnection);
    m_cuttingOff.setSingleShot(true);
    m_cuttingOff.setInterval(cutOffLater);
    connect(&m_cuttingOff, &QTimer::timeout, this, [this] { m_maker.cutOffUnwanted(); });
    readPrefs();
}

KPQuickLook::~KPQuickLook()
{
    if (m_pause)
        m_pause->set(ImportPause::Pictures, false);
}

// --- The program's one cache

void KPQuickLook::initializeGlobals(const Setup &setup)
{
    auto made = std::make_unique<KPQuickLook>(setup);
    const XPLocker locker(globalMutex);
    global = std::move(made);
}

KPQuickLook &KPQuickLook::instance()
{
    const XPLocker locker(globalMutex);
    Q_ASSERT(global);
    return *global;
}

void KPQuickLook::shutDown()
{
    std::unique_ptr<KPQuickLook> old;
    const XPLocker locker(globalMutex);
    old.swap(global);
}

KPQuickLook::Setup KPQuickLook::usualSetup(ImportPause *pause)
{
    return {{.importer = XPPrograms::helper("murn-importer"),
             .sharedCache = XPFolders::caches() + QStringLiteral("/thumbnails"),
             .failuresFolder = QStringLiteral("murn-") + QCoreApplication::applicationVersion()},
            pause};
}

void KPQuickLook::updateCachedPrefs()
{
    const XPLocker locker(globalMutex);
    if (global)
        global->readPrefs();
}

void KPQuickLook::clearCacheForPath(const QString &path)
{
    const XPLocker locker(globalMutex);
    if (!global)
        return;
    bool isFirst = false;
    {
        const XPLocker inner(global->m_mutex);
        isFirst = global->m_cleared.isEmpty();
        global->m_cleared.insert(path);
    }
    if (isFirst)
        Q_EMIT global->pathsCleared(QPrivateSignal());
}

void KPQuickLook::readPrefs()
{
    const UserDefaults &defaults = UserDefaults::standard();
    const auto isOn = [&](const char *key) { return defaults.boolValue(QLatin1String(key)); };
    const auto number = [&](const char *key) {
        return std::clamp(defaults.doubleValue(QLatin1String(key)), 0.0, 1e5);
    };
    m_cache.setMaxCost(static_cast<qsizetype>(number("KPCacheSizeMB") * (1 << 20)));
    m_prefs.lifetime = static_cast<qint64>(number("KPCacheDaysOld") * secondsOfDay);
    m_prefs.bordersImages = isOn("KPQuicklookBordersImages");
    m_prefs.bordersMovies = isOn("KPQuicklookBordersMovies");
    m_prefs.bordersOther = isOn("KPQuicklookBordersOther");
    m_prefs.bordersLarge = isOn("KPQuicklookBordersOnLargeThumbs");
    m_maker.setPrefs(std::chrono::seconds(m_prefs.lifetime), isOn("KPQuicklookCacheSlowImages"));
}

// --- Asking

void KPQuickLook::rebuild(const QList<KPDoc *> &docs)
{
    QSet<QString> stems;
    for (const KPDoc *doc : docs) {
        stems.insert(doc->cacheID());
        m_rebuilt.insert(doc->filePath(), std::time(nullptr));
    }
    outdate([&](const QString &key) { return stems.contains(key.left(key.indexOf(QChar(0)))); });
}

void KPQuickLook::rebuildAll()
{
    m_rebuilt.clear();
    m_rebuiltAll = std::time(nullptr);
    outdate([](const QString &) { return true; });
}

void KPQuickLook::outdate(const std::function<bool(const QString &key)> &isOne)
{
    const QStringList keys = m_cache.keys();
    for (const QString &key : keys) {
        if (isOne(key))
            m_cache.object(key)->isOutdated = true;
    }
    for (auto [key, entry] : m_held.asKeyValueRange()) {
        if (!isOne(key))
            continue;
        auto outdated = std::make_shared<Entry>(*entry);
        outdated->isOutdated = true;
        entry = std::move(outdated);
    }
    m_unreadable.clear();
    ask();
}

static constexpr QChar heldMark(u'+');

// A path's text holds no NUL.
QString KPQuickLook::keyWithoutPath(const KPDoc &doc, int page)
{
    return doc.cacheID() + QChar(0) + QString::number(page) + QChar(0);
}

QString KPQuickLook::keyOf(const KPDoc &doc, int page, bool isHeld)
{
    QString key = keyWithoutPath(doc, page);
    if (isHeld)
        key.insert(key.size() - 1, heldMark);
    return key + doc.filePath();
}

bool KPQuickLook::isHeld(const QString &key)
{
    const qsizetype end = key.lastIndexOf(QChar(0));
    return end > 0 && key.at(end - 1) == heldMark;
}

const KPQuickLook::Entry *KPQuickLook::entryAt(const QString &key) const
{
    return isHeld(key) ? m_held.value(key).get() : m_cache.object(key);
}

// A picture a little too large is drawn smaller; one that is the whole original serves any size.
bool KPQuickLook::satisfies(const Entry &entry, int side) const
{
    const Look &look = entry.look;
    if (entry.isOutdated || std::time(nullptr) - entry.made > m_prefs.lifetime)
        return false;
    if (look.failure)
        return true;
    const bool isWhole = std::max(look.picture.width(), look.picture.height()) < look.side;
    return look.side == side || (look.side < side && isWhole) ||
           (look.side > side && look.side * 4 <= side * 5);
}

// Views ask again whenever they are told something.
bool KPQuickLook::wasJustUnreadable(const QString &key)
{
    const auto found = m_unreadable.find(key);
    if (found == m_unreadable.end())
        return false;
    if (std::time(nullptr) - *found < secondsBetweenTries)
        return true;
    m_unreadable.erase(found);
    return false;
}

// What all views want, put together for the maker.
class KPQuickLook::Asking
{
public:
    explicit Asking(KPQuickLook &owner) : m_owner(owner)
    {
        for (const View &view : std::as_const(m_owner.m_views)) {
            for (const auto *list : {&view.visible, &view.next}) {
                for (const Wanted &wanted : *list)
                    note(wanted);
            }
        }
    }

    void add(const std::vector<Wanted> &list, bool isVisible, bool onlyHeld = false)
    {
        for (const Wanted &wanted : list) {
            if (!wanted.doc->isGone() && (wanted.isHeld || !onlyHeld))
                add(wanted, isVisible);
        }
    }
    std::vector<KPPictureMaker::Request> requests;

private:
    // Two views that want different sizes share the larger one.
    void note(const Wanted &wanted)
    {
        int &side = m_sides[keyOf(*wanted.doc, wanted.page, wanted.isHeld)];
        side = std::max(side, wanted.side);
    }

    void add(const Wanted &wanted, bool isVisible)
    {
        const QString key = keyOf(*wanted.doc, wanted.page, wanted.isHeld);
        const Entry *entry = m_owner.entryAt(key);
        // What is held is not made again only to be smaller.
        const int least = wanted.isHeld && entry ? entry->look.side : 0;
        const int side = std::max(least, m_sides.value(key));
        if (!m_owner.m_waiting.contains(key, wanted.doc))
            m_owner.m_waiting.insert(key, wanted.doc);
        if (m_seen.contains(key))
            return;
        m_seen.insert(key);
        if ((entry && m_owner.satisfies(*entry, side)) || m_owner.wasJustUnreadable(key))
            return;
        KPPictureMaker::Request request = {
            key, wanted.doc->filePath(), wanted.page, side, isVisible, {}};
        const Entry *adrift = m_owner.m_cache.object(keyWithoutPath(*wanted.doc, wanted.page));
        if (!wanted.isHeld && adrift && m_owner.satisfies(*adrift, side))
            request.known = adrift->origin;
        request.notBefore = m_owner.m_rebuilt.value(request.path, m_owner.m_rebuiltAll);
        if (isVisible)
            m_owner.m_missing.insert(key, side);
        requests.push_back(std::move(request));
    }

    KPQuickLook &m_owner;
    QHash<QString, int> m_sides;
    QSet<QString> m_seen;
};

void KPQuickLook::want(const QObject *view, std::vector<Wanted> visible, std::vector<Wanted> next)
{
    if (!m_views.contains(view))
        connect(view, &QObject::destroyed, this, [this, view] {
            m_views.remove(view);
            ask();
        });
    m_views[view] = {std::move(visible), std::move(next)};
    ask();
}

void KPQuickLook::ask()
{
    m_waiting.clear();
    m_missing.clear();
    letGoOfHeld();
    Asking asking(*this);
    for (const View &view : std::as_const(m_views))
        asking.add(view.visible, true);
    qsizetype room = m_cache.maxCost();
    for (const View &view : std::as_const(m_views)) {
        for (const auto *list : {&view.visible, &view.next}) {
            // What comes next must not push out what is in sight.
            for (const Wanted &wanted : *list)
                room -=
                    wanted.isHeld ? 0 : entryOverhead + qsizetype{wanted.side} * wanted.side * 4;
        }
        asking.add(view.next, false, room <= 0);
    }
    if (m_pause)
        m_pause->set(ImportPause::Pictures, !m_missing.isEmpty());
    m_maker.want(std::move(asking.requests));
    m_cuttingOff.start();
    if (m_missing.isEmpty())
        Q_EMIT settled();
}

void KPQuickLook::letGoOfHeld()
{
    QSet<QString> wanted;
    for (const View &view : std::as_const(m_views)) {
        for (const auto *list : {&view.visible, &view.next}) {
            for (const Wanted &each : *list) {
                if (each.isHeld)
                    wanted.insert(keyOf(*each.doc, each.page, true));
            }
        }
    }
    m_held.removeIf([&](const auto &each) { return !wanted.contains(each.key()); });
}

// --- Receiving

void KPQuickLook::receive()
{
    lookAtCage();
    QList<KPDoc *> docs;
    const bool wasBusy = isBusy();
    bool asksAgain = false;
    for (const KPPictureMaker::Result &result : m_maker.take()) {
        // Begun before the pictures were to be made anew.
        if (result.request.notBefore < m_rebuilt.value(result.request.path, m_rebuiltAll)) {
            asksAgain = true;
            continue;
        }
        remember(result);
        const QString &key = result.request.key;
        if (m_missing.value(key) <= result.request.side)
            m_missing.remove(key);
        docs += m_waiting.values(key);
    }
    if (asksAgain)
        ask();
    if (!docs.isEmpty())
        Q_EMIT looksReady(docs);
    if (!wasBusy || isBusy())
        return;
    if (m_pause)
        m_pause->set(ImportPause::Pictures, false);
    Q_EMIT settled();
}

void KPQuickLook::lookAtCage()
{
    if (m_knowsCage)
        return;
    const auto hello = m_maker.hello();
    m_knowsCage = hello.has_value();
    if (!hello || (*hello && (*hello)->isWhole()))
        return;
    m_problem = !*hello                   ? qtTrId("KPNoImporter")
                : (*hello)->landlock == 0 ? qtTrId("KPWeakCage").arg(QStringLiteral("Landlock"))
                                          : qtTrId("KPWeakCage").arg(QStringLiteral("seccomp"));
    Q_EMIT problemChanged();
}

static bool conforms(const QStringList &tree, const char *type)
{
    return tree.contains(QLatin1String(type));
}

void KPQuickLook::remember(const KPPictureMaker::Result &result)
{
    const KPPictureMaker::Request &request = result.request;
    const QString adrift = request.key.left(request.key.lastIndexOf(QChar(0)) + 1);
    std::unique_ptr<Entry> entry;
    if (result.isKnown) {
        entry.reset(m_cache.take(adrift));
        if (!entry)
            return;
    } else {
        // Says nothing of the document: what was known of it stays.
        if (result.failure == DocumentFailure::Unreadable) {
            m_unreadable.insert(request.key, std::time(nullptr));
            return;
        }
        const QStringList tree = KPContentTypes::typeTree(result.uti);
        entry = std::make_unique<Entry>();
        entry->look = {result.image, result.uti, request.side, result.failure};
        entry->origin = result.origin;
        entry->made = std::time(nullptr);
        entry->kind = conforms(tree, "public.image")   ? Kind::Image
                      : conforms(tree, "public.movie") ? Kind::Movie
                                                       : Kind::Other;
        if (!isHeld(request.key))
            m_cache.remove(adrift);
    }
    entry->path = request.path;
    if (isHeld(request.key)) {
        m_held.insert(request.key, std::move(entry));
        return;
    }
    const qsizetype cost = entryOverhead + entry->look.picture.sizeInBytes();
    m_cache.insert(request.key, entry.release(), cost);
}

void KPQuickLook::letGoOfPaths()
{
    QSet<QString> cleared;
    {
        const XPLocker locker(m_mutex);
        cleared.swap(m_cleared);
    }
    m_held.removeIf([&](const auto &each) { return cleared.contains(each.value()->path); });
    const QStringList keys = m_cache.keys();
    for (const QString &key : keys) {
        const qsizetype end = key.lastIndexOf(QChar(0)) + 1;
        if (end == key.size() || !cleared.contains(key.mid(end)))
            continue;
        std::unique_ptr<Entry> entry(m_cache.take(key));
        if (entry->look.failure)
            continue;
        entry->path.clear();
        const qsizetype cost = entryOverhead + entry->look.picture.sizeInBytes();
        m_cache.insert(key.left(end), entry.release(), cost);
    }
    m_unreadable.clear();
    ask();
}

// --- Showing

const KPQuickLook::Entry *KPQuickLook::entryOf(const KPDoc &doc, int page) const
{
    const Entry *entry = m_cache.object(keyOf(doc, page));
    return entry ? entry : m_cache.object(keyWithoutPath(doc, page));
}

KPQuickLook::Look KPQuickLook::look(const KPDoc &doc, int page) const
{
    const Entry *entry = entryOf(doc, page);
    return entry ? entry->look : Look();
}

KPQuickLook::Look KPQuickLook::heldLook(const KPDoc &doc, int page) const
{
    const auto held = m_held.value(keyOf(doc, page, true));
    return held && !held->look.picture.isNull() ? held->look : look(doc, page);
}

bool KPQuickLook::hasBorder(const Entry &entry, double side) const
{
    if (side >= largeSide && !m_prefs.bordersLarge)
        return false;
    return entry.kind == Kind::Image   ? m_prefs.bordersImages
           : entry.kind == Kind::Movie ? m_prefs.bordersMovies
                                       : m_prefs.bordersOther;
}

QRectF KPQuickLook::draw(QPainter &painter, const QRectF &square, const KPDoc &doc,
                         const QColor &border, int page) const
{
    const Entry *entry = entryOf(doc, page);
    if (!entry || entry->look.picture.isNull())
        return {};
    const QImage &picture = entry->look.picture;
    const double ratio = painter.device()->devicePixelRatioF();
    QSizeF size = QSizeF(picture.size()) / ratio;
    const bool isWhole = std::max(picture.width(), picture.height()) < entry->look.side;
    const bool isTooSmall =
        !isWhole && size.width() < square.width() && size.height() < square.height();
    // One for another size stands in at the right one until that is there.
    if (isTooSmall || size.width() > square.width() || size.height() > square.height())
        size.scale(square.size(), Qt::KeepAspectRatio);
    QRectF rect(QPointF(), size);
    rect.moveCenter(square.center());
    rect.moveTopLeft((rect.topLeft() * ratio).toPoint() / ratio); // whole pixels are sharper
    painter.drawImage(rect, picture, QRectF(picture.rect()));
    if (hasBorder(*entry, std::max(square.width(), square.height()))) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(border, 1));
        painter.drawRect(rect.adjusted(-0.5, -0.5, 0.5, 0.5));
    }
    return rect;
}
