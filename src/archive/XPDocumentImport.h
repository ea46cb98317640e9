#pragma once

#include "KarvexBackupFile.h"
#include "XPArchiveReader.h"
#include "XPError.h"

#include <functional>

// Brings the documents of an archive into a folder, or gives those that are there what the archive
// says of them.
//
// The whole archive is read and checked before anything is made; one that is cut, altered or
// written by a newer version changes nothing. A document that is not there appears with all that
// stands on it, or not at all. Where there is one of its name: of the same contents, it gets tags
// and rating as backups give them (KarvexMerge), and what else it lacks; an older one is replaced
// and goes to the trash; one that is as new or newer is left alone. Nothing ever leaves the folder,
// not even through links. Memory does not depend on the archive.
// Threads: any; blocking file calls.
class XPDocumentImport
{
public:
    enum class Action {
        Added,
        Same,     // there already, with these contents, tags and rating
        Changed,  // there already: only tags or the rating changed
        Replaced, // the older one is in the trash
        Kept,     // there is a newer one, or one as new
        Failed,
    };
    struct Step
    {
        QString path; // where it is or would be
        Action action = Action::Failed;
        KarvexBackupRecord before = {}; // of Changed
        KarvexBackupRecord after = {};  // and of Added: what the archive says
        std::optional<XPError> problem = {};
        QString keptAside = {}; // the one that was replaced, where no trash takes it
    };
    struct Summary;
    struct Options
    {
        bool dryRun = false; // only finds out
        // Asked when the archive was checked and before anything is made; false ends it there.
        std::function<bool(const Summary &checked)> agrees = {};
        // Called now and then with the documents that are through. False stops; the one that is
        // not whole then leaves nothing.
        std::function<bool(qint64 done, qint64 total)> progress = {};
        std::function<void(const Step &step)> told = {};
    };
    struct Summary
    {
        std::optional<XPError> error; // of the archive or the folder
        qint64 documents = 0;         // in the archive
        qint64 bytes = 0;             // of those that are not there
        bool isBeside = false;        // the documents lie beside the archive
        qint64 counts[6] = {};        // by action
        bool stopped = false;

        qint64 count(Action action) const { return counts[static_cast<int>(action)]; }
    };

    // For those of an archive that nobody named a folder for: one of its name in the documents
    // folder.
    static QString usualFolder(const QString &archive);

    // Only reads and checks the archive.
    static Summary check(const QString &archive, const QString &folder, const Options &options);
    // check(), then the work. The folder is made if it is missing.
    static Summary run(const QString &archive, const QString &folder, const Options &options);
};
