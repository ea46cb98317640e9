// Karvex: the user's tags of a file, and what several files share.
#include "Karvex.h"
#include "KarvexChange.h"
#include "KarvexErrors.h"
#include "KarvexTagKey.h"
#include "KarvexTagStore.h"
#include "KarvexTimeStamp.h"

#include <QHash>
#include <QSet>

bool Karvex::MavericksOrLater()
{
    return KarvexTagStore::native() != nullptr;
}

QString Karvex::tagsToSearchFor()
{
    return KarvexTagStore::current().searchKey();
}

XPResult<QStringList> Karvex::getAppleTags(const QString &path)
{
    return KarvexTagStore::current().read(path);
}

std::optional<XPError> Karvex::setAppleTags(const QStringList &tags, const QString &path)
{
    return KarvexTagStore::current().write(tags, path);
}

XPResult<QStringList> Karvex::getUserTags(const QString &path)
{
    return getAppleTags(path);
}

// Under the file's lock.
static std::optional<XPError> writeTags(const PropertyValue &tags, const QString &path,
                                        PropertyValue::Date date)
{
    const QStringList normalised = Karvex::removeDuplicateTags(tags);
    return KarvexTimeStamp::writeWith(Karvex::userTagTimeKey, date, path, [&] {
        return KarvexTagStore::current().write(normalised, path);
    });
}

std::optional<XPError> Karvex::setUserTags(const PropertyValue &tags, const QString &path)
{
    return setUserTags(tags, path, PropertyValue::Date::now());
}

std::optional<XPError> Karvex::setUserTags(const PropertyValue &tags, const QString &path,
                                           PropertyValue::Date date)
{
    if (!validateAsArrayOfStrings(tags))
        return KarvexErrors::syncParameter(path);
    return karvexUnderLock(path, [&] { return writeTags(tags, path, date); });
}

// Replaces the tags of a file by what `change` makes of them, unless that answers nothing.
template <typename Change>
static std::optional<XPError> changeTags(const QString &path, Change change)
{
    return karvexUnderLock(path, [&]() -> std::optional<XPError> {
        const auto tags = Karvex::getUserTags(path);
        if (!tags)
            return tags.error();
        const std::optional<QStringList> changed = change(*tags);
        if (!changed)
            return {};
        return writeTags(*changed, path, PropertyValue::Date::now());
    });
}

std::optional<XPError> Karvex::changeUserTags(const TagsChange &change, const QString &path)
{
    return changeTags(path, change);
}

std::optional<XPError> Karvex::addUserTags(const QStringList &tags, const QString &path)
{
    return changeTags(path, [&](const QStringList &current) -> std::optional<QStringList> {
        QStringList all = removeDuplicateTags(current + tags);
        if (all == current)
            return {};
        return all;
    });
}

static QSet<QString> keysOf(const QStringList &tags)
{
    QSet<QString> keys;
    for (const QString &tag : tags)
        keys.insert(karvexTagKey(tag));
    return keys;
}

static QStringList without(const QStringList &tags, const QSet<QString> &keys)
{
    QStringList result;
    for (const QString &tag : tags) {
        if (!keys.contains(karvexTagKey(tag)))
            result.append(tag);
    }
    return result;
}

std::optional<XPError> Karvex::clearUserTags(const QStringList &tags, const QString &path)
{
    const QSet<QString> keys = keysOf(tags);
    return changeTags(path, [&](const QStringList &current) -> std::optional<QStringList> {
        QStringList kept = without(current, keys);
        if (kept.size() == current.size())
            return {};
        return kept;
    });
}

XPResult<QStringList> Karvex::getCommonUserTags(const QStringList &paths)
{
    QHash<QString, QString> common;
    QStringList last;
    for (const QString &path : paths) {
        auto tags = getUserTags(path);
        if (!tags || tags->isEmpty() || paths.size() == 1)
            return tags;
        last = *tags;
        if (&path == &paths.first()) {
            for (const QString &tag : last)
                common.insert(karvexTagKey(tag), tag);
        } else {
            const QSet<QString> keys = keysOf(last);
            common.removeIf([&](const auto &entry) { return !keys.contains(entry.key()); });
        }
    }
    return orderedArrayWithDict(common, last);
}

std::optional<XPError> Karvex::setCommonUserTags(const QStringList &paths,
                                                 const QStringList &originalCommonTags,
                                                 const QStringList &replaceWith)
{
    if (originalCommonTags.isEmpty() && replaceWith.isEmpty())
        return {};
    const QSet<QString> original = keysOf(originalCommonTags);
    std::optional<XPError> first;
    for (const QString &path : paths) {
        auto error = changeTags(path, [&](const QStringList &tags) -> std::optional<QStringList> {
            if (tags == replaceWith)
                return {};
            return without(tags, original) + replaceWith;
        });
        if (error && !first)
            first = std::move(error);
    }
    return first;
}
