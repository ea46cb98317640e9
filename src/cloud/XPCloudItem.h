#pragma once

#include <QString>

// One word of a cloud. Threads: a value.
struct XPCloudItem
{
    QString keyName;     // the tag's key
    QString displayName; // as given; see itemDisplayName()
    QString tagStringForSorting;
    double count = 0;          // documents of the results that have the tag
    bool clickRemoves = false; // selected: part of the search already

    // Without blanks around it; `truncateIfLong`: 42 characters or more as 41 and "…".
    QString itemDisplayName(bool truncateIfLong) const;

    bool operator==(const XPCloudItem &) const = default;
};
