#include "KPCommonTags.h"

#include "Karvex.h"
#include "KarvexTagKey.h"

#include <QHash>
#include <algorithm>

KPCommonTags KPCommonTags::read(const QStringList &paths)
{
    KPCommonTags result;
    QHash<QString, Some> seen;
    QStringList last;
    bool ratingsDiffer = false;
    for (const QString &path : paths) {
        const auto tags = Karvex::getUserTags(path);
        const auto rating = Karvex::getRating(path);
        if (!tags || !rating) {
            XPError error = tags ? rating.error() : tags.error();
            error.path = path;
            result.unreadable.append(error);
            continue;
        }
        result.paths.append(path);
        last = Karvex::removeDuplicateTags(*tags);
        for (const QString &tag : std::as_const(last)) {
            Some &some = seen[karvexTagKey(tag)];
            some.tag = tag;
            ++some.count;
        }
        ratingsDiffer = ratingsDiffer || (result.rating && *result.rating != *rating);
        result.rating = *rating;
    }
    if (ratingsDiffer)
        result.rating.reset();
    for (const QString &tag : std::as_const(last)) {
        if (seen.value(karvexTagKey(tag)).count == result.paths.size()) {
            result.common.append(tag);
            seen.remove(karvexTagKey(tag));
        }
    }
    result.some = seen.values();
    std::sort(result.some.begin(), result.some.end(), [](const Some &a, const Some &b) {
        return a.count != b.count ? a.count > b.count : a.tag < b.tag;
    });
    return result;
}
