#include "KPDocMetaData.h"

#include "KPDoc.h"
#include "Karvex.h"
#include "KarvexErrors.h"
#include "UserDefaults.h"
#include "XPAttributeCache.h"
#include "XPMainThread.h"
#include "XPNotificationCenter.h"

#include <QTimer>
#include <array>
#include <chrono>
#include <cmath>
#include <thread>

using namespace std::chrono_literals;
using KPDocMetaData::Attribute;

static constexpr qsizetype maximumQuerySize = 50000;

namespace {

// What one cache holds, whom it tells and when it starts.
struct Kind
{
    QString key;
    QStringList notifications;
    XPAttributeCache::Transformer transformer;
    std::optional<std::chrono::milliseconds> delay; // none: when first asked for
};

// An object that is used by any thread and taken away by the main thread: readers count
// themselves in for the time of one look.
template <typename T>
class Shared
{
public:
    template <typename Use>
    void with(Use use)
    {
        m_readers.fetch_add(1);
        if (T *object = m_object.load())
            use(*object);
        m_readers.fetch_sub(1);
    }
    bool isSet() const { return m_object.load() != nullptr; }
    void set(T *object) { m_object.store(object); }
    // After it nobody uses the object any more.
    T *take()
    {
        T *object = m_object.exchange(nullptr);
        while (m_readers.load() != 0)
            std::this_thread::yield();
        return object;
    }

private:
    std::atomic<T *> m_object = nullptr;
    std::atomic<int> m_readers = 0;
};

struct State
{
    Shared<IndexSource> source;
    std::array<Shared<XPAttributeCache>, KPDocMetaData::attributeCount> caches;
    std::array<std::atomic<bool>, KPDocMetaData::attributeCount> asked = {};
    std::unique_ptr<QObject> timers; // main thread; dies with the searching
    // Instead of a cache that is not started yet, or of all once holdFilledValues() was called.
    std::array<XPAttributeTable, KPDocMetaData::attributeCount> held;
    std::atomic<bool> holds = false;
    std::atomic<bool> showsXmp = false; // as the setting says: one look for each document
    XPObservation settings;             // main thread
};

} // namespace

static State &state()
{
    static auto *const state = new State; // asked to the very end
    return *state;
}

static const Kind &kindOf(Attribute attribute)
{
    static const QString tagsChanged = QStringLiteral("KPNotificationDocumentTagsChanged");
    static const std::array<Kind, KPDocMetaData::attributeCount> kinds = {
        Kind{Karvex::tagsToSearchFor(), {tagsChanged}, KPDocMetaData::makeTagNames, 0ms},
        Kind{Karvex::starRatingKey,
             {QStringLiteral("KPNotificationDocumentRatingChanged")},
             KPDocMetaData::makeRating,
             2000ms},
        Kind{QStringLiteral("kMDItemKeywords"),
             {tagsChanged, QStringLiteral("KPNotificationDocumentKeywordsChanged")},
             KPDocMetaData::makeKeywordTagNames,
             5000ms},
        Kind{Karvex::bookmarksKey,
             {QStringLiteral("KPNotificationDocumentBookmarksChanged")},
             KPDocMetaData::makeUrls,
             std::nullopt},
        Kind{Karvex::commentKey,
             {QStringLiteral("KPNotificationSpotlightCommentChanged")},
             KPDocMetaData::makeComment,
             std::nullopt},
        Kind{QStringLiteral("kMDItemKXXMPKeywords"),
             {tagsChanged, QStringLiteral("KPNotificationDocumentKeywordsChanged")},
             KPDocMetaData::makeKeywordTagNames,
             std::nullopt},
    };
    return kinds[attribute];
}

static void start(Attribute attribute) XP_REQUIRES(xpGuiThread)
{
    auto &cache = state().caches[attribute];
    if (cache.isSet())
        return;
    state().source.with([&](IndexSource &source) {
        const Kind &kind = kindOf(attribute);
        auto *started = new XPAttributeCache(source, kind.key, maximumQuerySize, kind.notifications,
                                             kind.transformer);
        XPAttributeTable &held = state().held[attribute];
        for (const auto &[path, value] : held.values()) {
            started->fill(value, path, true);
            held.remove(path);
        }
        cache.set(started);
    });
}

static bool isHeld(Attribute attribute)
{
    return !state().caches[attribute].isSet() && (state().holds || state().source.isSet());
}

static void hold(Attribute attribute, KPPooledString path, const XPAttributeValuePtr &value)
{
    if (value)
        state().held[attribute].store(path, value);
    else
        state().held[attribute].remove(path);
}

void KPDoc::startMetaDataSearching(IndexSource &source)
{
    State &all = state();
    if (all.source.isSet())
        return;
    all.source.set(&source);
    all.timers = std::make_unique<QObject>();
    const QString shows = QStringLiteral("KPShowXMPKeywords");
    all.showsXmp = UserDefaults::standard().boolValue(shows);
    all.settings = UserDefaults::standard().addObserver(
        QStringLiteral("values.") + shows,
        [&all](const PropertyValue &value) { all.showsXmp = value.boolValue(); });
    for (const Attribute attribute :
         {KPDocMetaData::UserTags, KPDocMetaData::Rating, KPDocMetaData::Keywords}) {
        const auto delay = *kindOf(attribute).delay;
        if (delay == 0ms) {
            start(attribute);
            continue;
        }
        QTimer::singleShot(delay, all.timers.get(), [attribute] {
            xpGuiThread.assertHere();
            start(attribute);
        });
    }
}

void KPDoc::stopMetaDataSearching()
{
    State &all = state();
    all.timers.reset();
    all.settings = {};
    all.source.take();
    for (auto &each : all.caches)
        const std::unique_ptr<XPAttributeCache> cache(each.take());
    for (auto &asked : all.asked)
        asked = false;
}

void KPDoc::updateUserTagCacheForFilePaths(const QStringList &paths)
{
    KPDocMetaData::updateCacheForFilePaths(KPDocMetaData::UserTags, paths);
}

// Caches are made on the main thread only; whoever asks first gets the answer later.
static void startWhenFirstAsked(Attribute attribute)
{
    if (kindOf(attribute).delay || state().holds || !state().source.isSet() ||
        state().asked[attribute].exchange(true))
        return;
    xpOnMainThread([attribute] {
        xpGuiThread.assertHere();
        start(attribute);
    });
}

XPAttributeValuePtr KPDocMetaData::value(Attribute attribute, KPPooledString path)
{
    startWhenFirstAsked(attribute);
    if (isHeld(attribute))
        return state().held[attribute].find(path).value;
    XPAttributeValuePtr value;
    state().caches[attribute].with(
        [&](XPAttributeCache &cache) { value = cache.attributeAtPath(path); });
    return value;
}

std::optional<XPError> KPDocMetaData::errorAt(Attribute attribute, KPPooledString path)
{
    const XPAttributeValuePtr held = value(attribute, path);
    const XPError *found = XPAttributeCache::errorIn(held);
    if (!found)
        return {};
    XPError error = *found;
    error.path = path.toString();
    return error;
}

const QString &KPDocMetaData::key(Attribute attribute)
{
    return kindOf(attribute).key;
}

void KPDocMetaData::useIndex(IndexSource &source)
{
    state().source.set(&source);
}

void KPDocMetaData::holdFilledValues()
{
    state().holds = true;
    state().showsXmp = UserDefaults::standard().boolValue(QStringLiteral("KPShowXMPKeywords"));
}

XPAttributeValuePtr KPDocMetaData::fill(Attribute attribute, KPPooledString path,
                                        const XPResult<PropertyValue> &raw, Known known)
{
    const auto &transformer = kindOf(attribute).transformer;
    XPAttributeValuePtr value;
    if (!raw)
        value = XPAttributeCache::unreadable(raw.error());
    else if (!raw->isNull())
        value = transformer ? transformer(*raw) : XPAttributeOf<PropertyValue>::make(*raw);
    if (isHeld(attribute)) {
        hold(attribute, path, value);
        return value;
    }
    state().caches[attribute].with(
        [&](XPAttributeCache &cache) { value = cache.fill(value, path, known == Known::Kept); });
    return value;
}

KPTagName::Tags KPDocMetaData::tags(Attribute attribute, KPPooledString path)
{
    const XPAttributeValuePtr held = value(attribute, path);
    const auto *tags = XPAttributeOf<KPTagName::Tags>::in(held);
    return tags ? *tags : KPTagName::Tags();
}

bool KPDocMetaData::showsXmpKeywords()
{
    return state().showsXmp.load(std::memory_order_relaxed);
}

KPTagName::Tags KPDocMetaData::readOnlyTags(KPPooledString path)
{
    KPTagName::Tags found = tags(Keywords, path);
    if (showsXmpKeywords())
        found = KPTagName::removeDuplicates(found + tags(XmpKeywords, path));
    return found;
}

void KPDocMetaData::setValue(Attribute attribute, KPPooledString path,
                             const XPAttributeValuePtr &value)
{
    if (isHeld(attribute)) {
        hold(attribute, path, value);
        XPNotificationCenter::instance().post(KPDoc::changingNotification, path.toString());
        return;
    }
    state().caches[attribute].with(
        [&](XPAttributeCache &cache) { cache.setAttribute(value, path); });
}

void KPDocMetaData::unCacheDataAtPath(KPPooledString path)
{
    for (int i = 0; i < attributeCount; ++i) {
        const auto attribute = static_cast<Attribute>(i);
        if (isHeld(attribute))
            state().held[attribute].remove(path);
        state().caches[attribute].with(
            [&](XPAttributeCache &cache) { cache.unCacheDataAtPath(path); });
    }
}

void KPDocMetaData::updateCacheForFilePaths(Attribute attribute, const QStringList &paths)
{
    QList<KPPooledString> pooled;
    for (const QString &path : paths)
        pooled.append(KPPool::pooledString(path));
    state().caches[attribute].with([&](XPAttributeCache &cache) { cache.addPathsToFix(pooled); });
}

QList<std::pair<KPPooledString, XPAttributeValuePtr>> KPDocMetaData::values(Attribute attribute)
{
    QList<std::pair<KPPooledString, XPAttributeValuePtr>> values;
    state().caches[attribute].with([&](XPAttributeCache &cache) { values = cache.values(); });
    return values;
}

PropertyValue KPDocMetaData::indexed(const QString &path, const QString &key)
{
    PropertyValue value;
    state().source.with([&](IndexSource &source) {
        if (const auto item = MDItem::create(source, path))
            value = item->copyAttribute(key);
    });
    return value;
}

bool KPDocMetaData::isIndexed(const QString &path)
{
    bool found = false;
    state().source.with(
        [&](IndexSource &source) { found = MDItem::create(source, path) != nullptr; });
    return found;
}

QStringList KPDocMetaData::indexedPaths(const QString &query, const QString &attribute,
                                        const Accept &accept)
{
    QStringList paths;
    state().source.with([&](IndexSource &source) {
        const auto created = MDQuery::create(source, query, {attribute});
        if (!created)
            return;
        MDQuery &run = **created;
        run.execute(MDQuery::Synchronous);
        for (qsizetype i = 0; i < run.resultCount(); ++i) {
            const QString path = run.resultAt(i)->path();
            if (!path.isEmpty() && accept(run.valueAt(i, attribute)))
                paths.append(path);
        }
    });
    return paths;
}

static XPAttributeValuePtr heldTags(const KPTagName::Tags &tags)
{
    return tags.isEmpty() ? XPAttributeValuePtr() : XPAttributeOf<KPTagName::Tags>::make(tags);
}

// A raw value as it is, when it is of the right kind.
static XPAttributeValuePtr heldRaw(const PropertyValue &raw, bool isRight)
{
    if (raw.isNull())
        return {};
    return isRight ? XPAttributeOf<PropertyValue>::make(raw)
                   : XPAttributeCache::unreadable(KarvexErrors::wrongKind({}));
}

XPAttributeValuePtr KPDocMetaData::makeRating(const PropertyValue &raw)
{
    return heldRaw(raw, std::isfinite(raw.doubleValue(std::nan(""))));
}

XPAttributeValuePtr KPDocMetaData::makeUrls(const PropertyValue &raw)
{
    return heldRaw(raw, raw.isArray());
}

XPAttributeValuePtr KPDocMetaData::makeComment(const PropertyValue &raw)
{
    return heldRaw(raw, raw.isString());
}

XPAttributeValuePtr KPDocMetaData::makeTagNames(const PropertyValue &raw)
{
    if (!raw.isNull() && !raw.isArrayOfStrings())
        return XPAttributeCache::unreadable(KarvexErrors::wrongKind({}));
    return heldTags(KPTagName::tagNamesForUserEnteredTags(raw.strings(), true));
}

XPAttributeValuePtr KPDocMetaData::makeKeywordTagNames(const PropertyValue &raw)
{
    return heldTags(KPTagName::tagNamesForReadOnlyTags(raw.strings(), true));
}
