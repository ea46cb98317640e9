#pragma once

#include <QStringView>

// The names under which the desktop itself keeps tags, a comment and a rating on a file, without
// "user.". Their bytes stand among the attributes of an IndexRecord; one of the convention's
// ("com.apple.metadata:" + such a name) is left out. Threads: any.
inline bool isIndexDesktopKey(QStringView key)
{
    return key == u"xdg.tags" || key == u"xdg.comment" || key == u"baloo.rating";
}
