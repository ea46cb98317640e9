#pragma once

#include "XPError.h"
#include "XPFileDescriptor.h"
#include "XPFileInfo.h"

#include <QByteArray>
#include <QSet>
#include <functional>
#include <vector>

// What lies in one folder, as the disk has it: names and facts, links not followed.
//
// Threads: a value; reading is blocking file calls, which may hang on a network volume.
struct KPFolderContents
{
    struct Entry
    {
        qsizetype nameAt = 0; // in `names`
        qsizetype nameSize = 0;
        XPFileInfo info;
        bool hasAttributes = false; // looked for only if asked
    };

    QByteArray path;
    QByteArray names;
    std::vector<Entry> entries;
    // The names that were looked for; the others of the folder are not in `entries`. None: all.
    std::optional<QSet<QByteArray>> only;
    std::optional<XPError> error; // could not be read, or not to its end
    bool isAbandoned = false;     // `isAbandoned` said so before the end

    QByteArrayView name(const Entry &entry) const
    {
        return QByteArrayView(names).sliced(entry.nameAt, entry.nameSize);
    }

    struct How
    {
        bool followLink = false; // where the folder itself is one
        bool attributes = false; // find out which entries have any
        bool all = false;        // names that begin with a dot too
        std::function<bool()> isAbandoned;
        std::function<void(int descriptor)> opened; // the folder, before it is read
    };
    static KPFolderContents read(const QByteArray &path,
                                 const std::optional<QSet<QByteArray>> &only, const How &how);
    // However long the path is. Not open: errno says why.
    static XPFileDescriptor open(const QByteArray &path, bool followLink);
};
