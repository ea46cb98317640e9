#pragma once

#include "KPBookmarks.h"

// The first of that title; null: there is none.
inline const KPBookmark *titled(const KPBookmarks &bookmarks, const QString &title)
{
    for (const KPBookmarks::Named &each : bookmarks.all()) {
        if (each.bookmark->title == title)
            return each.bookmark;
    }
    return nullptr;
}
