#include "XPImportedFacts.h"

#include "Karvex.h"
#include "XPExtendedAttributes.h"
#include "XPPropertyList.h"

#include <cerrno>
#include <cmath>
#include <sys/stat.h>
#include <sys/xattr.h>

static PropertyValue valueIn(const XPArchivedFile &file, const QString &key)
{
    PropertyValue value = file.attributes.value(Karvex::spotlightKey(key));
    if (value.kind() != PropertyValue::Kind::Data)
        return value;
    return XPPropertyList::read(value.data()).valueOr({});
}

static std::optional<PropertyValue::Date> dateIn(const XPArchivedFile &file, const QString &key)
{
    const PropertyValue value = valueIn(file, key);
    return value.kind() == PropertyValue::Kind::Date ? std::optional(value.date()) : std::nullopt;
}

KarvexBackupRecord XPImportedFacts::record(const XPArchivedFile &file)
{
    KarvexBackupRecord record;
    record.path = file.path;
    const PropertyValue tags = valueIn(file, Karvex::userTagsKey);
    const double rating = valueIn(file, Karvex::starRatingKey).doubleValue();
    record.tags = tags.isArrayOfStrings() ? tags.strings() : QStringList();
    record.rating = std::isfinite(rating) ? rating : 0;
    record.tagDate = dateIn(file, Karvex::userTagTimeKey);
    record.ratingDate = dateIn(file, Karvex::ratingTimeKey);
    return record;
}

static int write(int open, const QString &name, const PropertyValue &value, int flags)
{
    const QByteArray bytes = XPArchivedFile::bytesOf(value);
    return ::fsetxattr(open, XPExtendedAttributes::nameOnDisk(name).constData(), bytes.constData(),
                       static_cast<size_t>(bytes.size()), flags) == 0
               ? 0
               : errno;
}

int XPImportedFacts::apply(const XPArchivedFile &file, int open)
{
    int error = 0;
    const auto &attributes = file.attributes;
    for (auto each = attributes.begin(); error == 0 && each != attributes.end(); ++each)
        error = write(open, each.key(), each.value(), 0);
    struct stat status = {};
    if (error != 0 || ::fstat(open, &status) != 0)
        return error != 0 ? error : errno;
    constexpr mode_t others = 0077;
    const mode_t program = S_ISDIR(status.st_mode) ? 0 : 0111;
    const mode_t taken = others & static_cast<mode_t>(~file.rights);
    const mode_t rights = status.st_mode & 0777 & static_cast<mode_t>(~(taken | program));
    if (::fchmod(open, rights) != 0 && errno != EPERM && errno != ENOTSUP && errno != ENOSYS)
        return errno;
    constexpr qint64 second = 1'000'000'000;
    const qint64 fraction = (file.modified % second + second) % second;
    const timespec modified = {(file.modified - fraction) / second, fraction};
    const timespec times[] = {{0, UTIME_OMIT}, modified};
    return ::futimens(open, times) == 0 ? 0 : errno;
}

int XPImportedFacts::addMissing(const XPArchivedFile &file, int open)
{
    const QStringList merged = {
        Karvex::spotlightKey(Karvex::userTagsKey), Karvex::spotlightKey(Karvex::userTagTimeKey),
        Karvex::spotlightKey(Karvex::starRatingKey), Karvex::spotlightKey(Karvex::ratingTimeKey)};
    const auto &attributes = file.attributes;
    for (auto each = attributes.begin(); each != attributes.end(); ++each) {
        if (merged.contains(each.key()))
            continue;
        const int error = write(open, each.key(), each.value(), XATTR_CREATE);
        if (error != 0 && error != EEXIST)
            return error;
    }
    return 0;
}
