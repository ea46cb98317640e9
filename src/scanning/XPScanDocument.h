#pragma once

#include "XPScannedPages.h"
#include "XPTextLayer.h"

#include <QDateTime>
#include <QLocale>

// From the pages to a filed document.
//
// While pages come, a placeholder stands in the work folder for the document to be: a PDF like any
// other, so that it can be tagged and rated. In the end it is filed, and its content replaced by
// the pages; what was put on it stays.
// Threads: as said. Blocking file calls.
namespace XPScanDocument {

// --- The placeholder. Any thread.

// The one that the folder holds (the last by name), else a new one.
XPResult<QString> placeholderPDFPath(const QString &folder);
XPResult<QString> createPlaceholderPDF(const QString &folder);
void removePlaceholderPDF(const QString &folder);
// "Scan" with date and time, as a file may be called.
QString placeholderName(const QDateTime &now, const QLocale &locale = {});

// --- Several documents in one pile

struct FirstOfPile
{
    QList<XPScannedPages::Page> pages;
    int used = 0; // pages of the pile, the blank ones before and behind the document too
};
// Up to the first blank page that follows a page with something on it; all of a pile without one.
// Any thread.
FirstOfPile firstOfPile(const QList<XPScannedPages::Page> &pile);

// --- Filing. Any thread but the main one.

struct Request
{
    QList<XPScannedPages::Page> pages;
    QString folder; // the work folder
    QString toPath; // empty: into the managed folder, in place of the placeholder
    bool recognisesText = false;
    QStringList languages;
    bool leavesOutBlank = false;
};

// Answers where the document is. The pages and the placeholder are left where they are on failure
// alone. `progress` is told what part of the whole is done, and says whether to go on.
XPResult<QString> file(const Request &request, const std::function<bool(double)> &progress = {});

} // namespace XPScanDocument
