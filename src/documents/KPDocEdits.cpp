#include "KPDocEdits.h"

#include "KPDocMetaData.h"
#include "Karvex.h"
#include "KarvexErrors.h"
#include "UserDefaults.h"
#include "XPLog.h"
#include "XPPath.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

// As if the file had been saved just now; its access time stays.
static void touchIfWanted(const QString &path)
{
    if (!UserDefaults::standard().boolValue(QStringLiteral("KPSetModifiyTimeOnTagsChanging")))
        return;
    const timespec times[2] = {{0, UTIME_OMIT}, {0, UTIME_NOW}};
    if (::utimensat(AT_FDCWD, XPPath::encode(path).constData(), times, AT_SYMLINK_NOFOLLOW) != 0)
        qCWarning(xpLog).noquote()
            << XPPath::printable(path) << ": its modification time stays:" << xpErrnoString(errno);
}

// What the file has after the edit is what is shown, whoever else wrote it meanwhile.
template <typename Value, typename Write>
static std::optional<XPError> edit(KPDocMetaData::Attribute attribute, const QString &path,
                                   XPResult<Value> (*read)(const QString &path),
                                   XPAttributeValuePtr (*held)(const Value &value),
                                   const Write &write)
{
    const auto before = read(path);
    if (auto error = write())
        return error;
    const auto after = read(path);
    if (!after)
        return {};
    KPDocMetaData::setValue(attribute, KPPool::pooledString(path), held(*after));
    if (!before || *before != *after)
        touchIfWanted(path);
    return {};
}

template <typename Write>
static std::optional<XPError> editTags(const QString &path, const Write &write)
{
    const auto held = [](const QStringList &tags) { return KPDocMetaData::makeTagNames(tags); };
    return edit<QStringList>(KPDocMetaData::UserTags, path, &Karvex::getUserTags, held, write);
}

std::optional<XPError> KPDocEdits::setUserTags(const QStringList &tags, const QString &path)
{
    return editTags(path, [&] { return Karvex::setUserTags(tags, path); });
}

std::optional<XPError> KPDocEdits::addUserTags(const QStringList &tags, const QString &path)
{
    return editTags(path, [&] { return Karvex::addUserTags(tags, path); });
}

std::optional<XPError> KPDocEdits::clearUserTags(const QStringList &tags, const QString &path)
{
    return editTags(path, [&] { return Karvex::clearUserTags(tags, path); });
}

std::optional<XPError> KPDocEdits::setCommonUserTags(const QString &path,
                                                     const QStringList &originalCommonTags,
                                                     const QStringList &replaceWith)
{
    return editTags(
        path, [&] { return Karvex::setCommonUserTags({path}, originalCommonTags, replaceWith); });
}

std::optional<XPError> KPDocEdits::changeUserTags(const Karvex::TagsChange &change,
                                                  const QString &path)
{
    return editTags(path, [&] { return Karvex::changeUserTags(change, path); });
}

std::optional<XPError> KPDocEdits::setRating(double rating, const QString &path)
{
    const auto held = [](const double &stars) {
        return stars == 0 ? XPAttributeValuePtr()
                          : XPAttributeOf<PropertyValue>::make(PropertyValue::real(stars));
    };
    return edit<double>(KPDocMetaData::Rating, path, &Karvex::getRating, held,
                        [&] { return Karvex::setRating(rating, path); });
}

static XPResult<PropertyValue> readUrls(const QString &path)
{
    return Karvex::getXAttrMetaData(Karvex::bookmarksKey, path);
}

std::optional<XPError> KPDocEdits::setURLs(const QStringList &urls, const QString &path)
{
    const PropertyValue value = urls.isEmpty() ? PropertyValue() : PropertyValue(urls);
    return edit<PropertyValue>(KPDocMetaData::Urls, path, &readUrls, &KPDocMetaData::makeUrls, [&] {
        return Karvex::setXAttrMetaData(value, Karvex::bookmarksKey, path);
    });
}

static XPResult<PropertyValue> readComment(const QString &path)
{
    auto value = Karvex::getString(Karvex::commentKey, path);
    if (value && !value->isNull() && !value->isString())
        return KarvexErrors::wrongKind(path);
    return value;
}

XPResult<QString> KPDocEdits::comment(const QString &path)
{
    const auto value = readComment(path);
    return value ? XPResult<QString>(value->string()) : XPResult<QString>(value.error());
}

std::optional<XPError> KPDocEdits::setComment(const QString &comment, const QString &path)
{
    const PropertyValue value = comment.isEmpty() ? PropertyValue() : PropertyValue(comment);
    return edit<PropertyValue>(KPDocMetaData::Comment, path, &readComment,
                               &KPDocMetaData::makeComment,
                               [&] { return Karvex::setString(value, Karvex::commentKey, path); });
}

XPResult<bool> KPDocEdits::exchange(const KarvexRepair::Bytes &bytes, const QString &path)
{
    auto done = KarvexRepair::exchange(bytes, path);
    if (done && *done) {
        for (const auto attribute : {KPDocMetaData::UserTags, KPDocMetaData::Rating,
                                     KPDocMetaData::Urls, KPDocMetaData::Comment})
            KPDocMetaData::updateCacheForFilePaths(attribute, {path});
    }
    return done;
}
