#pragma once

#include "XPFileReport.h"
#include "XPMutex.h"

#include <optional>

// Moving or copying documents to a folder that the user chose.
//
// No file is ever replaced unless the user said so; a name that is taken is made free with a
// number ("report 1.pdf").
// Threads: the plain operations any, blocking file calls. Those that take a completion are begun
// on the main thread, ask there through XPPrompts, do their work on the file worker and answer on
// the main thread.
class XPFileTransfers
{
public:
    struct Request
    {
        QStringList paths;
        QString folder;
        bool copies = false;
        bool replaces = false;    // what has the same name there; it goes to the trash
        bool isRemembered = true; // the folder as a recent destination
        bool mayLoseTags = false; // the user was told that the folder cannot hold them
        bool listsTags = false;   // and wants them in a list beside the files (XPTagSidecar)
    };

    // Those that do not lie in the folder, nor have a file of their name there.
    static QStringList removeFilesAlreadyAtDestination(const QStringList &paths,
                                                       const QString &folder);
    static bool allFilesExist(const QStringList &paths);
    // Without those that share their name with an earlier one.
    static QStringList removeDuplicatesInDestination(const QStringList &paths,
                                                     QStringList *skipped);

    // The work itself. A file that is in the folder already is not moved; its copy gets a free
    // name. Tells records of what was moved, and remembers the folder among the recent ones.
    static XPFileReport moveCopyFiles(const Request &request, const XPFileRunOptions &options = {});

    // Tells records that a file was moved.
    static void tellMoved(const QString &from, const QString &to);

    // Everything that there is to ask. Answers what to do; nothing: not to go on. Without `warn`
    // files that are there already are left out, and only what cannot be done as wanted is asked.
    using Answer = std::function<void(const std::optional<Request> &)>;
    static void askUserAboutMovingOrCopying(const QStringList &paths, const QString &folder,
                                            bool copies, bool warn, Answer answer)
        XP_REQUIRES(xpGuiThread);

    // Asks, then works and shows how far it is. No steps when the user did not go on.
    using Done = std::function<void(const XPFileReport &)>;
    static void moveCopyFilesProgressUI(const QStringList &paths, const QString &folder,
                                        bool copies, bool warn, Done done) XP_REQUIRES(xpGuiThread);

    // What failed, and what was replaced and is in no trash.
    static void tellFailures(const XPFileReport &report, bool copies) XP_REQUIRES(xpGuiThread);

    static constexpr qsizetype mostFiles = 1000;

    // Posted soon after a request moved or copied anything.
    static const QString filesMovedNotification; // "XPNotificationFilesMoved"
};
