#include "Karvex.h"

#include "KarvexAuthenticated.h"
#include "KarvexChange.h"
#include "KarvexErrors.h"
#include "KarvexMirror.h"
#include "KarvexTimeStamp.h"
#include "XPExtendedAttributes.h"
#include "XPPropertyList.h"

#include <algorithm>
#include <cmath>

const QString Karvex::userTagsKey = QStringLiteral("kMDItemKXUserTags");
const QString Karvex::systemTagsKey = QStringLiteral("kMDItemUserTags");
const QString Karvex::userTagTimeKey = QStringLiteral("kMDItemKXUserTagTime");
const QString Karvex::starRatingKey = QStringLiteral("kMDItemStarRating");
const QString Karvex::ratingTimeKey = QStringLiteral("kMDItemKXRatingTime");
const QString Karvex::managedKey = QStringLiteral("kMDItemKXManaged");
const QString Karvex::documentDateKey = QStringLiteral("kMDItemKXDocumentDate");
const QString Karvex::bookmarksKey = QStringLiteral("kMDItemKXBookmarks");
const QString Karvex::commentKey = QStringLiteral("kMDItemFinderComment");

// No value of a few kilobytes has more parts unless it means harm: shared parts multiply.
static constexpr XPPropertyList::Limits readLimits = {Karvex::maximumValueSize, 64, 16384};

QString Karvex::spotlightKey(const QString &key)
{
    return QStringLiteral("com.apple.metadata:") + key;
}

QString Karvex::karvexKey(const QString &key)
{
    return QStringLiteral("org.karvexinfo:") + key;
}

QString Karvex::errnoString(int number)
{
    return xpErrnoString(number);
}

// The attribute layer has errors of its own only for a path or name that cannot exist.
static XPError attributeError(const XPError &error, const QString &path)
{
    return error.domain == XPError::posixDomain ? error : KarvexErrors::parameter(path);
}

static std::optional<XPError> writeAttribute(const PropertyValue &value, const QString &key,
                                             const QString &path)
{
    if (value.isNull())
        return XPExtendedAttributes::remove(path, key);
    const auto bytes = XPPropertyList::writeBinary(value);
    if (!bytes)
        return KarvexErrors::propertyList(bytes.error(), path);
    if (bytes->size() > Karvex::maximumValueSize)
        return KarvexErrors::tooBig(path);
    return XPExtendedAttributes::write(path, key, *bytes);
}

std::optional<XPError> Karvex::setXAttr(const PropertyValue &value, const QString &key,
                                        const QString &path)
{
    if (path.isEmpty() || key.isEmpty())
        return KarvexErrors::parameter(path);
    auto error = writeAttribute(value, key, path);
    if (!error || error->domain == XPError::karvexDomain)
        return error;
    if (!KarvexAuthenticated::mayRetry(*error))
        return attributeError(*error, path);
    auto refusal = KarvexAuthenticated::authenticatedSetXAttr(value, key, path);
    // What no rights would help with says so; all else is what the system said first.
    return refusal && refusal->code == KarvexErrors::permissions(path).code
               ? attributeError(*error, path)
               : refusal;
}

XPResult<PropertyValue> Karvex::getXAttr(const QString &key, const QString &path)
{
    if (path.isEmpty() || key.isEmpty())
        return KarvexErrors::parameter(path);
    const auto bytes = XPExtendedAttributes::read(path, key, maximumValueSize);
    if (!bytes)
        return attributeError(bytes.error(), path);
    if (!*bytes || (*bytes)->isEmpty())
        return PropertyValue();
    auto value = XPPropertyList::read(**bytes, readLimits);
    if (!value)
        return KarvexErrors::propertyList(value.error(), path);
    return value;
}

XPResult<std::optional<QByteArray>> Karvex::getBytes(const QString &key, const QString &path)
{
    return XPExtendedAttributes::read(path, key);
}

std::optional<XPError> Karvex::setXAttrMetaData(const PropertyValue &value, const QString &key,
                                                const QString &path)
{
    return KarvexMirror::writeWith(value, key, path,
                                   [&] { return setXAttr(value, spotlightKey(key), path); });
}

XPResult<PropertyValue> Karvex::getXAttrMetaData(const QString &key, const QString &path)
{
    return getXAttr(spotlightKey(key), path);
}

std::optional<XPError> Karvex::setNSArrayMetaData(const PropertyValue &value, const QString &key,
                                                  const QString &path)
{
    if (!value.isArray())
        return KarvexErrors::parameter(path);
    return setXAttrMetaData(value, key, path);
}

XPResult<PropertyValue> Karvex::getNSArrayMetaData(const QString &key, const QString &path)
{
    auto value = getXAttrMetaData(key, path);
    if (value && !value->isArray())
        return PropertyValue();
    return value;
}

std::optional<XPError> Karvex::addToNSArrayMetaData(const PropertyValue &values, const QString &key,
                                                    const QString &path)
{
    if (!values.isArrayOfStrings())
        return KarvexErrors::parameter(path);
    return karvexUnderLock(path, [&]() -> std::optional<XPError> {
        const auto stored = getXAttrMetaData(key, path);
        if (!stored)
            return stored.error();
        if (!stored->isNull() && !stored->isArray())
            return KarvexErrors::wrongKind(path);
        PropertyValue::Array array = stored->array();
        for (const PropertyValue &value : values.array()) {
            if (!array.contains(value))
                array.append(value);
        }
        if (array.size() == stored->array().size())
            return {};
        return setXAttrMetaData(array, key, path);
    });
}

std::optional<XPError> Karvex::setString(const PropertyValue &value, const QString &keyName,
                                         const QString &path)
{
    return setXAttrMetaData(value, keyName, path);
}

XPResult<PropertyValue> Karvex::getString(const QString &keyName, const QString &path)
{
    return getXAttrMetaData(keyName, path);
}

std::optional<XPError> Karvex::setRating(double rating, const QString &path)
{
    if (std::isnan(rating))
        return KarvexErrors::parameter(path);
    return karvexUnderLock(path, [&] {
        if (rating <= 0)
            return setXAttrMetaData({}, starRatingKey, path);
        return KarvexTimeStamp::writeWith(ratingTimeKey, PropertyValue::Date::now(), path, [&] {
            return setXAttrMetaData(PropertyValue::real(std::min(rating, 5.0)), starRatingKey,
                                    path);
        });
    });
}

XPResult<double> Karvex::getRating(const QString &path)
{
    const auto value = getXAttrMetaData(starRatingKey, path);
    if (!value)
        return value.error();
    if (value->isNull())
        return 0.0;
    const double rating = value->doubleValue(std::nan(""));
    if (!std::isfinite(rating))
        return KarvexErrors::wrongKind(path);
    return rating;
}
