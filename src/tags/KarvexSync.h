#pragma once

#include <QStringList>

class IndexSource;

// Keeps the backup of tags and ratings in the background, and restores from it.
//
// Operations run one after the other on a thread of their own, without asking anybody for
// administrator's rights. Each ends with the notification "KarvexSyncDone" on the main thread, also
// when it was stopped; its user information holds "status" (a sentence), "worked", "itemCount" and,
// when it did not work, "kind" (of the first failure, an XPError::Kind). A restore posts
// "TagSyncDoneAgressive" before, with "numDone".
// Threads: any.
class KarvexSync
{
public:
    static const QString doneNotification; // "KarvexSyncDone"
    static const QString kindKey;          // "kind"

    // Queues one operation: with `aggressiveRestore` a restore from the first of the files, then
    // a backup to all of them (KarvexBackup). False: dropped, as more than one waits or runs
    // already; a restore is never dropped. The source must live until stop().
    static bool syncWithFiles(IndexSource &source, const QStringList &files,
                              bool aggressiveRestore);

    // Before the source goes: drops what waits, ends what runs. A file call that never returns is
    // left behind after a while.
    static void stop();
};
