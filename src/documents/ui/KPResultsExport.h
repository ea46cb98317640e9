#pragma once

#include "KPDoc.h"
#include "XPMutex.h"
#include "XPProgress.h"

class KPLongWork;
class QWidget;

// The list of results as a table for other programs: comma-separated values (RFC 4180) in UTF-8
// with all columns of the list, dates and times by ISO 8601, sizes in bytes, one line a document.
//
// A cell that a spreadsheet would take for a formula begins with an apostrophe, as names of files
// come from anywhere.
// Threads: as said.
namespace KPResultsExport {

// Asks for the file. Main thread; the work outlives what is begun.
void start(const KPDoc::Docs &docs, KPLongWork &work, QWidget *window) XP_REQUIRES(xpGuiThread);

// The line of titles, and that of a document; with line ends. Any thread.
QByteArray header();
QByteArray lineOf(const KPDoc &doc);

// Replaces the file as a whole, at the end. Any thread; waits.
std::optional<XPError> write(const KPDoc::Docs &docs, const QString &path,
                             const XPProgress::Task &task);

} // namespace KPResultsExport
