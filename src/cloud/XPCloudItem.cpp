#include "XPCloudItem.h"

static constexpr qsizetype shownAtMost = 41;

QString XPCloudItem::itemDisplayName(bool truncateIfLong) const
{
    QString name = displayName.trimmed();
    if (!truncateIfLong || name.size() <= shownAtMost)
        return name;
    // A character of two units is not cut in the middle.
    const bool splits = name[shownAtMost - 1].isHighSurrogate();
    name.truncate(splits ? shownAtMost - 1 : shownAtMost);
    return name + u'…';
}
