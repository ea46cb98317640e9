// KPFilingCommands: documents from the clipboard and from drags.
#include "KPDocServices.h"
#include "KPFilingCommands.h"
#include "XPFilingWork.h"
#include "XPPasteboardSupport.h"
#include "XPPrompts.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

bool KPFilingCommands::canPaste()
{
    if (!m_canPaste)
        m_canPaste = XPPasteboardSupport::canImportFromPB(QGuiApplication::clipboard()->mimeData());
    return *m_canPaste;
}

void KPFilingCommands::paste()
{
    import(QGuiApplication::clipboard()->mimeData());
}

// The bytes are fetched here, as only this thread may ask the other program; everything else is
// done where file work may wait.
void KPFilingCommands::import(const QMimeData *data)
{
    if (!XPPasteboardSupport::canImportFromPB(data))
        return;
    const XPPasteboard pb = XPPasteboard::from(data);
    const bool areFiles = !pb.fileNames().isEmpty();
    XPFilingWork::run([pb] { return XPPasteboardSupport::importFromPBToFiledDocuments(pb); },
                      [self = QPointer(this), areFiles](const XPResult<QStringList> &paths) {
                          xpGuiThread.assertHere();
                          if (!paths) {
                              XPPrompts::current().alert(qtTrId("KPCannotPaste"),
                                                         paths.error().reason());
                              return;
                          }
                          // Files that are somewhere already are the program's, which is told of
                          // them.
                          if (!self || paths->isEmpty() || areFiles)
                              return;
                          QList<XPFileDeeds::Chain> deeds;
                          for (const QString &path : *paths)
                              deeds.append({{XPFileDeed::Kind::Made, {}, path}});
                          self->remember(deeds, QT_TRID_NOOP("KPUndoPaste"));
                          KPDocServices::current().revealInLibrary(*paths);
                      });
}
