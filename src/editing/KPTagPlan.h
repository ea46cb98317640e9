#pragma once

#include "KPFileEdit.h"

// What renaming or deleting a tag over the whole library would do: told before it is done.
//
// Files of the index; those below `missingRoots` (roots of the index whose volume is away) are
// remembered for when they come back. Threads: make() any, blocking; a value then.
struct KPTagPlan
{
    struct Place
    {
        QString folder;
        qsizetype count = 0;
    };

    KPTagRename rename;
    QStringList paths;   // that are there
    QStringList away;    // that are not, at the moment
    QList<Place> places; // of both, the folders with most first
    // Other tags of the library that differ from the new name (the old one when it is deleted) in
    // case, accents or composition alone, most used first: to be merged as well, perhaps.
    QStringList otherSpellings;
    bool isMerge = false; // documents have the new name already

    static KPTagPlan make(const KPTagRename &rename, const QStringList &missingRoots);
    bool isEmpty() const { return paths.isEmpty() && away.isEmpty(); }
    KPFileEdit edit() const { return {paths, {}, {}, rename}; }
};
