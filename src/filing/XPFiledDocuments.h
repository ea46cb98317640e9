#pragma once

#include "PropertyValue.h"
#include "XPFileReport.h"
#include "XPMutex.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <chrono>

// The managed folder: where it is, how it is laid out by date, how documents get into it, and the
// mark that makes a file, wherever it lies, a document of the library.
//
// The root is the folder that the user chose ("KPFiledDocumentsPath"), else "Filed Documents" in
// the documents folder once that exists; below it a folder for each year, month and, unless
// "KPUseYearMonthFiledDocs" is on, day, in plain decimal ("2013/6/14"). Where neither folder is
// there the managed folder is not in use, and the desktop stands in for it.
//
// Operations whose comment says "makes" create folders. A search's scope and a question asks the
// others ("…IfPresent"), which never do.
// Threads: any; blocking file calls, save where the root is known already: on the file worker, or
// in a program without a window. Those that take a completion are begun on the main thread, ask
// there through XPPrompts, do their work on the file worker and answer on the main thread.
// Errors: lists come out shorter by what could not be done; XPFilingRun tells why.
class XPFiledDocuments
{
public:
    // Where it is.

    // The dated folders of a day, without the root: its parts by the local calendar, 2000, 1 and 1
    // for a date that has none.
    static QString datedFolder(const QDateTime &date);

    static bool usesFiledDocuments();
    // What the user chose, expanded; empty when nothing.
    static QString filedDocumentsPreferredPath();
    // Kept when there is such a folder; the root is found anew in any case.
    static void setFiledDocumentsPreferredPath(const QString &path);

    // Without links on its way; remembered until the program becomes active again. Makes it when
    // it is in use.
    static QString filedDocumentsRoot();
    static QString filedDocumentsRootIfPresent();
    static void rebuildFiledDocsPath();
    // Makes sure that the root is there.
    static void createFiledDocumentsFolder();

    static QString filedDocumentsPathForDate(const QDateTime &date);
    // The folder of a moment. Makes it, marked as no document, when the managed folder is in use.
    static QString currentFiledDocumentsPath(const QDateTime &now = QDateTime::currentDateTime());
    static QString
    currentFiledDocumentsPathMonth(const QDateTime &now = QDateTime::currentDateTime());

    // Begins with the root: a plain test of the text.
    static bool pathIsInFiledDocuments(const QString &path);
    // Lies in a folder of a day, exactly; also where only months are made now, so that files are
    // filed again there. Where the managed folder is not in use: lies on the desktop.
    static bool pathIsAlreadyInGoodPlaceInFiledDocuments(const QString &path);

    // Where other parts put documents that are to be filed. The first makes it.
    static QString pendingDocsFolder();
    static QString pendingDocsFolderIfPresent();

    // A free path of that name in the dated folder of now. Makes the folder.
    static QString unusedDestinationPath(const QString &path);

    // The mark: whether a file is a document of the library.

    // The mark as it stands on the file, which may say no; nothing: there is none.
    static XPResult<std::optional<bool>> storedMark(const QString &path);
    // False also where the mark cannot be read.
    static bool isManaged(const QString &path);
    // True for no paths.
    static bool allFilesManaged(const QStringList &paths);
    static bool pathsAreAllManaged(const QStringList &paths) { return allFilesManaged(paths); }
    // Writes the mark unless it is there already, and looks whether it stayed. A mark that cannot
    // be read is not written over.
    static std::optional<XPError> setManaged(bool managed, const QString &path);
    // As if nobody had ever marked it.
    static std::optional<XPError> forgetMark(const QString &path);
    // Writes it, sees that the index learns of it, and pauses for `pacing`.
    static std::optional<XPError> writeManagedXAttr(bool managed, const QString &path);
    // A mark of either kind stays.
    static std::optional<XPError> setToManagedIfNoStateFound(const QString &path);
    // Has the index read the file again when it holds another mark, or none.
    static void reImportIfManagedMDItemNotInSync(const QString &path, bool stored);
    // Asks whoever keeps the index to read the path; returns before that happened.
    static void runMDImport(const QString &path);
    // Sees that the index reads the file. What it covers it is asked to read. Elsewhere the file's
    // modification date is set 2 s later, if it is an hour old or more.
    static void tellIndex(const QString &path);
    static void adjustModifictionDate(const QString &path);
    // Not where other programs keep their own files: what lies there is copied.
    static bool pathOKForManaged(const QString &path);

    // Marking and filing. Each answers where the documents are.

    static std::optional<QString> setToManagedCopyIfNeeded(const QString &path);
    static QStringList setToManaged(const QStringList &paths);
    // An empty path for an empty one; the path as given for what is in the managed folder.
    static std::optional<QString> copyToFiledDocumentsAndSetManaged(const QString &path);
    static QStringList copyAllToFiledDocumentsAndSetManaged(const QStringList &paths);
    // Plain folders are left out, and so, of the answer, are files that lie well already.
    static QStringList putFilesIntoFiledDocuments(const QStringList &paths, bool forceMove = false);
    static constexpr qsizetype mostFiles = 1000; // in one request; as many are refused
    // Files and packages, those in folders at any depth unless hidden. Stops once there are more
    // than `most`. `unread` is given the folders that could not be read.
    static QStringList digForFilesInsideFolders(const QStringList &paths,
                                                QList<XPFileStep> *unread = nullptr,
                                                qsizetype most = mostFiles);

    // With questions, progress and warnings. Nothing: cancelled or refused.

    using Done = std::function<void(const XPFileReport &)>;
    using Routed = std::function<void(const std::optional<XPFileReport> &)>;
    static void putFilesIntoFiledDocumentsUI(const QStringList &paths, Done done,
                                             bool forceMove = false) XP_REQUIRES(xpGuiThread);
    static void setToManagedUI(const QStringList &paths, Done done) XP_REQUIRES(xpGuiThread);
    static void takeMarksAwayUI(const QStringList &paths, Done done) XP_REQUIRES(xpGuiThread);
    // Marks, files, copies (`optionKey`: while that key is held) or asks, as the user prefers.
    static void setFilesAsManagedRoutingIfNeeded(const QStringList &paths, bool optionKey,
                                                 Routed done) XP_REQUIRES(xpGuiThread);
    // Answers whether to file or only to mark; nothing when cancelled.
    using PutInFiledDocs = std::function<void(std::optional<bool>)>;
    static void askToPutDocumentsIntoFiledDocumentsFolder(const QStringList &paths,
                                                          PutInFiledDocs answer)
        XP_REQUIRES(xpGuiThread);
    static void warnThatImportFailed(qsizetype requested, qsizetype worked)
        XP_REQUIRES(xpGuiThread);

    // Housekeeping, which asks and warns of nothing.

    // Moves what waits in the inbox to the folder of now. What cannot be moved stays there.
    static XPFileReport movePendingFilesToFiledDocuments(const XPFileRunOptions &options = {});
    // The same for what lies directly in the root. Hidden files are left alone by both.
    static XPFileReport moveDocsAtRootOfFiledDocumentsToToday();
    // Removes the folders of the last days that hold nothing.
    static void cleanup();
    static void removeEmptyOldFolders(int days,
                                      const QDateTime &now = QDateTime::currentDateTime());
    // By a fixed sample of days, not a search.
    static bool hasYearMonthDayFolders();
    // Moves what is in folders of days to those of their months, from 2000 to this year.
    static XPFileReport
    convertFromYearMonthDayToYearMonth(const XPFileRunOptions &options = {},
                                       const QDateTime &now = QDateTime::currentDateTime());

    // Tells the program that a file was moved.
    static void tellMoved(const QString &from, const QString &to);

    // Between two marks that are written; for measurements and tests 0.
    static std::chrono::microseconds pacing();
    static void setPacing(std::chrono::microseconds pacing);

    static constexpr qsizetype mostUnasked = 40;       // more are asked about in any case
    static constexpr qsizetype fewestForAddendum = 21; // said to be many

    // Posted before any batch that may move files.
    static const QString aboutToMoveNotification; // "aboutToPerhapsMoveDocuments"
    // "documentPathChanged", after each move into the folder: its object is a dictionary of
    // "oldPath" and "newPath".
    static const QString pathChangedNotification;
    // "DocumentAddedToFiledDocumentsFromPendingDocuments"
    static const QString addedFromPendingNotification;
    // Posted by the program whenever it is about to come to the front.
    static const QString willBecomeActiveNotification;

    static const QString preferredPathKey; // "KPFiledDocumentsPath"
    static const QString useYearMonthKey;  // "KPUseYearMonthFiledDocs"
    static const QString askKey;           // "KPFiledDocumentsAsk"
    static const QString alwaysFileKey;    // "KPFilesAlwaysPutInFiledDocuments"
};
