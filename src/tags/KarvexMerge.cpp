#include "KarvexMerge.h"

#include "Karvex.h"
#include "KarvexFileLock.h"
#include "KarvexTagStore.h"
#include "KarvexTimeStamp.h"

using Date = PropertyValue::Date;

namespace {

// A value of the file as it is.
template <typename T>
struct Present
{
    T value{};
    std::optional<Date> date;
    bool stands = false; // something is in its place, an empty list too
};

struct PresentFile
{
    XPResult<Present<QStringList>> tags;
    XPResult<Present<double>> rating;

    KarvexBackupRecord record(const QString &path) const
    {
        const auto known = tags.valueOr({});
        const auto rated = rating.valueOr({});
        return {path, known.value, rated.value, known.date, rated.date};
    }
};

} // namespace

static XPResult<std::optional<Date>> readDate(const QString &key, const QString &path)
{
    const auto value = Karvex::getXAttrMetaData(key, path);
    if (!value)
        return value.error();
    return value->kind() == PropertyValue::Kind::Date ? std::optional(value->date())
                                                      : std::optional<Date>();
}

static XPResult<Present<QStringList>> presentTags(const QString &path)
{
    const auto tags = Karvex::getUserTags(path);
    const auto raw = Karvex::getXAttrMetaData(Karvex::tagsToSearchFor(), path);
    const auto date = readDate(Karvex::userTagTimeKey, path);
    if (!tags)
        return tags.error();
    if (!raw)
        return raw.error();
    if (!date)
        return date.error();
    return Present<QStringList>{*tags, *date, !raw->isNull() || !tags->isEmpty()};
}

static XPResult<Present<double>> presentRating(const QString &path)
{
    const auto rating = Karvex::getRating(path);
    const auto date = readDate(Karvex::ratingTimeKey, path);
    if (!rating)
        return rating.error();
    if (!date)
        return date.error();
    return Present<double>{*rating, *date, *rating > 0};
}

static PresentFile backupDictForPath(const QString &path)
{
    return {presentTags(path), presentRating(path)};
}

// Whether what the backup says of a value comes in the place of what the file says. A value that
// stands on the file goes only when both times say that it was removed since.
static bool isNewer(const std::optional<Date> &backup, bool hasBackup,
                    const std::optional<Date> &file, bool hasFile)
{
    if (!hasBackup && hasFile)
        return backup && file && KarvexBackupRecord::isLater(*backup, *file);
    if (backup)
        return !file || KarvexBackupRecord::isLater(*backup, *file);
    return hasBackup && !hasFile && !file;
}

// What the file would be like.
static KarvexBackupRecord merged(const KarvexBackupRecord &backup, const PresentFile &present,
                                 const QString &path)
{
    KarvexBackupRecord after = present.record(path);
    if (present.tags &&
        isNewer(backup.tagDate, !backup.tags.isEmpty(), after.tagDate, present.tags->stands)) {
        after.tags = Karvex::removeDuplicateTags(backup.tags);
        after.tagDate = backup.tagDate ? *backup.tagDate : Date::now();
    }
    if (present.rating &&
        isNewer(backup.ratingDate, backup.rating > 0, after.ratingDate, present.rating->stands)) {
        after.rating = std::min(backup.rating, 5.0);
        after.ratingDate = backup.ratingDate ? *backup.ratingDate : Date::now();
    }
    return after;
}

// Under the file's lock.
static std::optional<XPError> write(const KarvexBackupRecord &before,
                                    const KarvexBackupRecord &after, const QString &path)
{
    std::optional<XPError> error;
    if (after.tagDate && (after.tags != before.tags || after.tagDate != before.tagDate))
        error = KarvexTimeStamp::writeWith(Karvex::userTagTimeKey, *after.tagDate, path, [&] {
            return KarvexTagStore::current().write(after.tags, path);
        });
    if (after.ratingDate &&
        (after.rating != before.rating || after.ratingDate != before.ratingDate)) {
        const PropertyValue rating =
            after.rating > 0 ? PropertyValue::real(after.rating) : PropertyValue();
        const auto second =
            KarvexTimeStamp::writeWith(Karvex::ratingTimeKey, *after.ratingDate, path, [&] {
                return Karvex::setXAttrMetaData(rating, Karvex::starRatingKey, path);
            });
        error = error ? error : second;
    }
    if (error)
        error->path = path;
    return error;
}

// The file's present state is looked at again under its lock, so that tags which somebody sets at
// this moment are not overwritten.
KarvexMerge::Result KarvexMerge::apply(const KarvexBackupRecord &record, const QString &path,
                                       bool dryRun)
{
    std::optional<KarvexFileLock> lock;
    if (!dryRun)
        lock.emplace(path);
    const PresentFile present = backupDictForPath(path);
    Result result;
    if (!present.tags)
        result.failures.append(present.tags.error());
    else if (!present.rating)
        result.failures.append(present.rating.error());
    result.before = present.record(path);
    result.after = merged(record, present, path);
    if (KarvexBackupRecord::backupDictsTheSame(record, result.before) ||
        KarvexBackupRecord::backupDictsTheSame(result.before, result.after))
        return result;
    const auto error = dryRun ? std::nullopt : write(result.before, result.after, path);
    if (error)
        result.failures.append(*error);
    result.changes = !error;
    return result;
}
