#pragma once

#include "KarvexBackupFile.h"

// What a record of a file's tags and rating makes of a file: the one rule by which backups and
// archives give tags back.
//
// Tags are written when the record's are later than the file's, or the file's have no time; the
// rating likewise. What the record has no time of is written only to a file that has nothing in
// its place. A value that a record does not have goes from the file only when both have a time and
// the file's is the older one: then it was removed. What cannot be read is left alone and reported;
// the file's other value is still written. Threads: any; blocking file calls.
class KarvexMerge
{
public:
    struct Result
    {
        KarvexBackupRecord before; // what the file has
        KarvexBackupRecord after;  // what was not written is as before
        QList<XPError> failures;
        bool changes = false; // done, or to be done

        bool removesTags() const { return after.tags.isEmpty() && !before.tags.isEmpty(); }
        bool removesRating() const { return after.rating <= 0 && before.rating > 0; }
    };

    // Under the file's lock; with `dryRun` the file is only looked at.
    static Result apply(const KarvexBackupRecord &record, const QString &path, bool dryRun);
};
