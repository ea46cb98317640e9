#pragma once

#include "XPError.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

// The managed folder: where it is, how it is laid out by date, and where documents wait to be
// filed into it.
//
// The root is the folder that the user chose ("KPFiledDocumentsPath"), else "Filed Documents" in
// the documents folder once that exists; below it a folder for each year, month and, unless
// "KPUseYearMonthFiledDocs" is on, day, in plain decimal ("2013/6/14"). Where neither folder is
// there the managed folder is not in use, and the desktop stands in for it.
//
// Operations whose comment says "makes" create folders. A search's scope and a question asks the
// others ("…IfPresent"), which never do.
// Threads: any; blocking file calls, save where the root is known already.
class XPFiledDocuments
{
public:
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

    // Posted by the program whenever it is about to come to the front.
    static const QString willBecomeActiveNotification;

    static const QString preferredPathKey; // "KPFiledDocumentsPath"
    static const QString useYearMonthKey;  // "KPUseYearMonthFiledDocs"
};
