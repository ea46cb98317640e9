#pragma once

#include "XPError.h"

#include <QStringList>
#include <functional>

// Files of the same contents: found by size first, then by the beginning of those that share one,
// then by all bytes of those that still agree. Only looks; what becomes of them people decide.
//
// Empty files are left out, and so are further names of one file, which take no room.
// Threads: any; blocking file calls, as long as the bytes take.
namespace XPDuplicates {

struct Group
{
    qint64 size = 0;   // of each
    QStringList paths; // two or more, sorted
};

struct Result
{
    QList<Group> groups;     // those that would free most first
    QList<XPError> failures; // by file
    bool stopped = false;    // what was found till then

    qint64 bytesToFree() const; // if one of each group stayed
};

// Called now and then with the bytes that were looked at of those that are to be. False stops.
using Progress = std::function<bool(qint64 done, qint64 total)>;

Result find(const QStringList &paths, const Progress &progress = {});

} // namespace XPDuplicates
