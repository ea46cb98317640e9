#include "KarvexRepair.h"

#include "Karvex.h"
#include "KarvexChange.h"
#include "XPExtendedAttributes.h"
#include "XPPropertyList.h"

#include <cmath>

static bool isOfItsKind(const QString &key, const PropertyValue &value)
{
    if (key == Karvex::userTagsKey)
        return value.isArrayOfStrings();
    if (key == Karvex::bookmarksKey)
        return value.isArray();
    if (key == Karvex::commentKey)
        return value.isString();
    if (key == Karvex::starRatingKey || key == Karvex::managedKey)
        return std::isfinite(value.doubleValue(std::nan("")));
    return value.kind() == PropertyValue::Kind::Date;
}

static bool isUnderstood(const QString &key, const QByteArray &bytes)
{
    const auto value = XPPropertyList::read(bytes);
    return value && isOfItsKind(key, *value);
}

XPResult<QList<KarvexRepair::Bytes>> KarvexRepair::unreadable(const QString &path)
{
    QList<Bytes> found;
    for (const QString &key :
         {Karvex::userTagsKey, Karvex::userTagTimeKey, Karvex::starRatingKey, Karvex::ratingTimeKey,
          Karvex::commentKey, Karvex::bookmarksKey, Karvex::managedKey, Karvex::documentDateKey}) {
        for (const QString &name : {Karvex::spotlightKey(key), Karvex::karvexKey(key)}) {
            const auto bytes = Karvex::getBytes(name, path);
            if (!bytes)
                return bytes.error();
            if (*bytes && !(*bytes)->isEmpty() && !isUnderstood(key, **bytes))
                found.append({name, **bytes, {}});
        }
    }
    return found;
}

XPResult<bool> KarvexRepair::exchange(const Bytes &bytes, const QString &path)
{
    bool isAsBefore = false;
    const auto error = karvexUnderLock(path, [&]() -> std::optional<XPError> {
        const auto now = Karvex::getBytes(bytes.name, path);
        if (!now)
            return now.error();
        const QByteArray present = now->value_or(QByteArray());
        const bool isDone = present == bytes.after;
        isAsBefore = isDone || present == bytes.before;
        if (isDone || !isAsBefore)
            return {};
        return bytes.after.isNull() ? XPExtendedAttributes::remove(path, bytes.name)
                                    : XPExtendedAttributes::write(path, bytes.name, bytes.after);
    });
    return error ? XPResult<bool>(*error) : XPResult<bool>(isAsBefore);
}
