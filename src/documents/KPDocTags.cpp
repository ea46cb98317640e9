// KPDoc: tags, rating and what else stands on the file.
#include "KPDoc.h"
#include "KPDocEdits.h"
#include "KPDocMetaData.h"
#include "KPDocServices.h"
#include "Karvex.h"
#include "XPExtendedAttributes.h"
#include "XPNotificationCenter.h"
#include "XPText.h"

#include <algorithm>
#include <cmath>
#include <sys/xattr.h>

using Tags = KPTagName::Tags;

static std::atomic<qsizetype> removedFromLibrary = 0;

// --- Tags

Tags KPDoc::tagNamesOfTypeUserEntered() const
{
    return KPDocMetaData::tags(KPDocMetaData::UserTags, pooledPath());
}

XPResult<Tags> KPDoc::tagNamesOfTypeUserEnteredForEditing() const
{
    const auto stored = Karvex::getUserTags(filePath());
    if (!stored)
        return stored.error();
    return KPTagName::tagNamesForUserEnteredTags(*stored, true);
}

std::optional<XPError> KPDoc::unreadableMetaData() const
{
    const KPPooledString path = pooledPath();
    auto error = KPDocMetaData::errorAt(KPDocMetaData::UserTags, path);
    return error ? error : KPDocMetaData::errorAt(KPDocMetaData::Rating, path);
}

Tags KPDoc::tagNamesOfTypeReadOnly() const
{
    return KPDocMetaData::readOnlyTags(pooledPath());
}

Tags KPDoc::allTagNames() const
{
    return KPTagName::removeDuplicates(tagNamesOfTypeUserEntered() + tagNamesOfTypeUTType() +
                                       tagNamesOfTypeReadOnly());
}

bool KPDoc::hasTag(KPTagName *tag) const
{
    return hasUserEnteredTag(tag) || hasFileTypeTag(tag) || hasReadOnlyTag(tag);
}

bool KPDoc::hasUserEnteredTag(KPTagName *tag) const
{
    return tagNamesOfTypeUserEntered().contains(tag);
}

bool KPDoc::hasFileTypeTag(KPTagName *tag) const
{
    return tagNamesOfTypeUTType().contains(tag);
}

bool KPDoc::hasReadOnlyTag(KPTagName *tag) const
{
    return tagNamesOfTypeReadOnly().contains(tag);
}

static KPTagName::PooledTags pooledLC(const Tags &tags)
{
    KPTagName::PooledTags pooled;
    pooled.reserve(tags.size());
    for (const KPTagName *tag : tags)
        pooled.append(tag->pooledDisplayNameLC());
    return pooled;
}

bool KPDoc::hasAllTagsLC_Pooled(const KPTagName::PooledTags &tags) const
{
    return KPTagName::areAllLC_PooledTags(tags, pooledLC(tagNamesOfTypeUserEntered()),
                                          pooledLC(tagNamesOfTypeUTType()),
                                          pooledLC(tagNamesOfTypeReadOnly()), {});
}

bool KPDoc::hasANYTagsLC_Pooled(const KPTagName::PooledTags &tags) const
{
    return KPTagName::areAnyLC_PooledTags(tags, pooledLC(tagNamesOfTypeUserEntered()),
                                          pooledLC(tagNamesOfTypeUTType()),
                                          pooledLC(tagNamesOfTypeReadOnly()), {});
}

Tags KPDoc::relatedTags() const
{
    const Tags own = tagNamesOfTypeUserEntered();
    QHash<KPTagName *, qsizetype> met;
    for (const auto &[path, value] : KPDocMetaData::values(KPDocMetaData::UserTags)) {
        const auto *tags = XPAttributeOf<Tags>::in(value);
        const auto isOwn = [&](KPTagName *tag) { return own.contains(tag); };
        if (!tags || std::none_of(tags->begin(), tags->end(), isOwn))
            continue;
        for (KPTagName *tag : *tags) {
            if (!isOwn(tag))
                ++met[tag];
        }
    }
    Tags related = met.keys();
    std::sort(related.begin(), related.end(), [&](const KPTagName *a, const KPTagName *b) {
        const qsizetype metA = met.value(const_cast<KPTagName *>(a));
        const qsizetype metB = met.value(const_cast<KPTagName *>(b));
        return metA != metB ? metA > metB : a->compareNumerically(b) < 0;
    });
    return related;
}

bool KPDoc::isFlagged() const
{
    static KPTagName *const flagged =
        KPTagName::tagNameForUserEnteredTag(QStringLiteral("flagged"));
    return hasUserEnteredTag(flagged);
}

bool KPDoc::searchForText(const QString &text, bool searchMeta, const QString &textLC) const
{
    if (fsDisplayNameLC().contains(textLC))
        return true;
    if (!searchMeta)
        return false;
    const Tags tags = allTagNames();
    const auto isInTag = [&](const KPTagName *tag) {
        return tag->displayNameLC().contains(textLC);
    };
    const auto isIn = [&](const QString &value) {
        return lowerCase(decomposed(value)).contains(textLC);
    };
    const QStringList urls = getURLsForEditing();
    return std::any_of(tags.begin(), tags.end(), isInTag) || isIn(spotlightComment()) ||
           std::any_of(urls.begin(), urls.end(), isIn) || documentTitle().contains(text) ||
           isIn(documentTitle());
}

// --- Rating

double KPDoc::rating() const
{
    const XPAttributeValuePtr held = KPDocMetaData::value(KPDocMetaData::Rating, pooledPath());
    const auto *number = XPAttributeOf<PropertyValue>::in(held);
    return number ? number->doubleValue() : 0;
}

int KPDoc::ratingsToStars(double rating)
{
    constexpr double most = 5;
    return static_cast<int>(std::clamp(std::floor(rating + 0.5), 0.0, most));
}

std::optional<XPError> KPDoc::setRating(double rating)
{
    const KPPooledString path = pooledPath();
    const PropertyValue::Dictionary key = {{QStringLiteral("key"), QStringLiteral("rating")}};
    XPNotificationCenter &center = XPNotificationCenter::instance();
    center.post(willChangeNotification, path.toString(), key);
    auto error = KPDocEdits::setRating(rating, path.toString());
    center.post(didChangeNotification, path.toString(), key);
    return error;
}

// --- Web addresses and the comment

QStringList KPDoc::getURLsForEditing() const
{
    const XPAttributeValuePtr held = KPDocMetaData::value(KPDocMetaData::Urls, pooledPath());
    const auto *urls = XPAttributeOf<PropertyValue>::in(held);
    return urls ? urls->strings() : QStringList();
}

QString KPDoc::url() const
{
    return getURLsForEditing().value(0);
}

std::optional<XPError> KPDoc::setURLs(const QStringList &urls)
{
    return KPDocEdits::setURLs(urls, filePath());
}

QString KPDoc::spotlightComment() const
{
    const XPAttributeValuePtr held = KPDocMetaData::value(KPDocMetaData::Comment, pooledPath());
    const auto *comment = XPAttributeOf<PropertyValue>::in(held);
    return comment ? comment->string() : QString();
}

// --- The managed flag

bool KPDoc::isManaged() const
{
    static const QByteArray names[] = {
        XPExtendedAttributes::nameOnDisk(Karvex::karvexKey(Karvex::managedKey)),
        XPExtendedAttributes::nameOnDisk(Karvex::spotlightKey(Karvex::managedKey)),
    };
    // A binary property list of one boolean: its size, and where and how it says "true".
    constexpr ssize_t booleanSize = 42;
    constexpr size_t markerAt = 8;
    constexpr char trueMarker = 9;

    const QByteArray path = fileSystemRepresentation();
    char value[100];
    ssize_t size = ::lgetxattr(path.constData(), names[0].constData(), value, sizeof value);
    if (size < 0)
        size = ::lgetxattr(path.constData(), names[1].constData(), value, sizeof value);
    return size == booleanSize ? value[markerAt] == trueMarker : isManagedSlower();
}

bool KPDoc::isManagedSlower() const
{
    return Karvex::getXAttrMetaData(Karvex::managedKey, filePath()).valueOr({}).boolValue();
}

bool KPDoc::isTakenOut() const
{
    const auto mark = Karvex::getXAttrMetaData(Karvex::managedKey, filePath()).valueOr({});
    return !mark.isNull() && !mark.boolValue();
}

// --- Many documents at once

void KPDoc::addTags(const Tags &tags, const Docs &docs, QObject *reportChangesOverView)
{
    KPDocServices::TagChange change;
    change.newTags = tags;
    for (const KPDoc *doc : docs)
        change.filePaths.append(doc->filePath());
    change.confirmWhenChangingManyFiles = true;
    change.reportChangesOverView = reportChangesOverView;
    KPDocServices::current().replaceOriginalTags(change);
}

// Both are tags of the user's.
static void setMark(const QString &tag, const QStringList &paths, bool isSet)
{
    const KPTagName::Tags tags = {KPTagName::tagNameForUserEnteredTag(tag)};
    KPDocServices::TagChange change;
    (isSet ? change.newTags : change.originalTags) = tags;
    change.filePaths = paths;
    change.confirmWhenChangingManyFiles = true;
    KPDocServices::current().replaceOriginalTags(change);
}

void KPDoc::setFlagged(const QStringList &paths, bool flagged)
{
    setMark(QStringLiteral("flagged"), paths, flagged);
}

void KPDoc::setHidden(const QStringList &paths, bool hidden)
{
    setMark(QStringLiteral("hidden"), paths, hidden);
}

void KPDoc::setManaged(const QStringList &paths, bool managed)
{
    for (const QString &path : paths) {
        if (KPDocServices::current().setManaged(managed, path) && !managed)
            countRemovedFromLibrary();
    }
}

void KPDoc::countRemovedFromLibrary()
{
    removedFromLibrary.fetch_add(1, std::memory_order_relaxed);
}

qsizetype KPDoc::numDocsRemovedFromLibrary()
{
    return removedFromLibrary.load(std::memory_order_relaxed);
}
