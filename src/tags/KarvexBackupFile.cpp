#include "KarvexBackupFile.h"

#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPropertyList.h"
#include "XPText.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>

using Date = PropertyValue::Date;
using Dictionary = PropertyValue::Dictionary;

static const QString pathKey = QStringLiteral("path");
static const QString tagsKey = QStringLiteral("tags");
static const QString ratingKey = QStringLiteral("rating");
static const QString tagDateKey = QStringLiteral("tagdate");
static const QString ratingDateKey = QStringLiteral("ratingdate");

// Room for millions of files.
static constexpr qsizetype mostBytes = qsizetype{1} << 30;
static constexpr XPPropertyList::Limits limits = {mostBytes, 8, 100'000'000};

bool KarvexBackupRecord::isLater(Date date, Date than)
{
    double one = date.secondsSince2001;
    double two = than.secondsSince2001;
    if (one == std::floor(one) || two == std::floor(two)) {
        one = std::floor(one);
        two = std::floor(two);
    }
    return one > two;
}

static bool isSameDate(const std::optional<Date> &one, const std::optional<Date> &two)
{
    if (!one || !two)
        return one.has_value() == two.has_value();
    return !KarvexBackupRecord::isLater(*one, *two) && !KarvexBackupRecord::isLater(*two, *one);
}

bool KarvexBackupRecord::backupDictsTheSame(const KarvexBackupRecord &one,
                                            const KarvexBackupRecord &two)
{
    const auto isSameTag = [](const QString &a, const QString &b) {
        return a == b || decomposed(a) == decomposed(b);
    };
    return one.rating == two.rating && isSameDate(one.tagDate, two.tagDate) &&
           isSameDate(one.ratingDate, two.ratingDate) &&
           std::equal(one.tags.begin(), one.tags.end(), two.tags.begin(), two.tags.end(),
                      isSameTag);
}

// --- The form in the file

static XPError notABackup(const QString &path)
{
    XPError error = XPError::malformed(qtTrId("KarvexNotABackup"));
    error.path = path;
    return error;
}

// A date that is another kind of value is none.
static std::optional<Date> dateIn(const Dictionary &dictionary, const QString &key)
{
    const PropertyValue value = dictionary.value(key);
    return value.kind() == PropertyValue::Kind::Date ? std::optional(value.date()) : std::nullopt;
}

static std::optional<KarvexBackupRecord> recordFrom(const Dictionary &dictionary)
{
    KarvexBackupRecord record;
    const PropertyValue path = dictionary.value(pathKey);
    record.path = path.isString() ? path.string() : XPPath::decode(path.data());
    const PropertyValue tags = dictionary.value(tagsKey);
    const PropertyValue rating = dictionary.value(ratingKey);
    record.tags = tags.strings();
    record.rating = rating.doubleValue();
    record.tagDate = dateIn(dictionary, tagDateKey);
    record.ratingDate = dateIn(dictionary, ratingDateKey);
    const bool isRead = !record.path.isEmpty() && (tags.isNull() || tags.isArrayOfStrings()) &&
                        std::isfinite(rating.isNull() ? 0 : rating.doubleValue(std::nan("")));
    return isRead ? std::optional(record) : std::nullopt;
}

static Dictionary dictionaryOf(const KarvexBackupRecord &record)
{
    Dictionary dictionary;
    if (record.path.isValidUtf16())
        dictionary.insert(pathKey, record.path);
    else
        dictionary.insert(pathKey, XPPath::encode(record.path));
    if (!record.tags.isEmpty())
        dictionary.insert(tagsKey, record.tags);
    if (record.rating > 0)
        dictionary.insert(ratingKey, PropertyValue::real(record.rating));
    if (record.tagDate)
        dictionary.insert(tagDateKey, *record.tagDate);
    if (record.ratingDate)
        dictionary.insert(ratingDateKey, *record.ratingDate);
    return dictionary;
}

XPResult<KarvexBackupFile::Records> KarvexBackupFile::decode(const QByteArray &bytes,
                                                             const QString &path)
{
    const auto list = XPPropertyList::read(bytes, limits);
    if (!list) {
        XPError error = list.error();
        error.path = path;
        return error;
    }
    if (!list->isArray())
        return notABackup(path);
    Records records;
    records.reserve(list->array().size());
    for (const PropertyValue &value : list->array()) {
        const auto record = recordFrom(value.dictionary());
        if (!record)
            return notABackup(path);
        records.insert(record->path, *record);
    }
    return records;
}

XPResult<QByteArray> KarvexBackupFile::encode(const Records &records)
{
    std::vector<const KarvexBackupRecord *> sorted;
    sorted.reserve(static_cast<size_t>(records.size()));
    for (const KarvexBackupRecord &record : records)
        sorted.push_back(&record);
    std::sort(sorted.begin(), sorted.end(),
              [](const auto *one, const auto *two) { return one->path > two->path; });
    PropertyValue::Array array;
    array.reserve(records.size());
    for (const KarvexBackupRecord *record : sorted)
        array.append(dictionaryOf(*record));
    return XPPropertyList::writeBinary(array, limits);
}

XPResult<QByteArray> KarvexBackupFile::readBytes(const QString &path)
{
    return XPAtomicFile::read(path, mostBytes);
}

QString KarvexBackupFile::defaultPath()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/tags_and_ratings.plist");
}
