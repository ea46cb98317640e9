#pragma once

#include "XPDocumentExport.h"
#include "XPDocumentImport.h"
#include "XPMutex.h"

#include <QStringList>

// The work on archives as the window wants it: on the file worker, shown, with what came of it in
// words. Threads: begun and answered on the main thread.
namespace KPArchiveWork {

// What was found out about an import, or done by it.
struct Import
{
    XPDocumentImport::Summary summary;
    QStringList lines; // of the documents that change, or failed; the first of them
    QStringList added; // the paths of those that are new
};

// Writes an archive under that name or, where it is taken, a free one, and tells what came of it.
void write(const QStringList &paths, const QString &archive) XP_REQUIRES(xpGuiThread);
void read(const QString &archive, const QString &folder, bool dryRun,
          std::function<void(const Import &)> done) XP_REQUIRES(xpGuiThread);

// What came of it, once it is over.
void tell(const QString &title, const QString &text, bool hasFailures) XP_REQUIRES(xpGuiThread);

// "12 documents are added, 3 get other tags": what a summary says, a sentence a line.
QStringList sentences(const XPDocumentImport::Summary &summary, bool dryRun);

} // namespace KPArchiveWork
