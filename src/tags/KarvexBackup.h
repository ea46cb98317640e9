#pragma once

#include "KarvexBackupFile.h"
#include "KarvexProgress.h"

class IndexSource;

// Backs up the tags and ratings of all files that the index knows.
//
// The values are the index's: no file is touched, so that a volume that hangs holds up nobody.
// Records of files that carry tags no more stay, and so do tags or a rating that a file lost
// without a trace; what cannot be read changes no record. A location that cannot be read as a
// backup is set aside (".damaged"), one that cannot be read at all is left alone, and where nothing
// changes nothing is written. Threads: any but main; one run at a time on this machine, whichever
// process.
class KarvexBackup
{
public:
    struct Result
    {
        QString status; // "12 backups done, file written to ~/…", or what failed
        bool worked = false;
        qsizetype itemCount = 0;
        QStringList problems; // a line each
        QStringList notes;    // a line each, of what is no failure: a file that was set aside
        QStringList written;  // the locations that were
        bool stopped = false;
        XPError::Kind failure = XPError::Kind::Io; // the first, when it did not work
    };

    // The merged backups of all locations, the earlier ones first, are written to each of them.
    static Result writeSingleFile(IndexSource &source, const QStringList &locations,
                                  const KarvexProgress &progress = {});

    // The same for these files alone, in the user's own backup: for tags that a file is about to
    // lose. Any thread.
    static std::optional<XPError> keep(const QList<KarvexBackupRecord> &records);
};
