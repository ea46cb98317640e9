// Documents as files: names that were typed, files that were dropped, showing where they are.
#include "KPController.h"
#include "KPDocCache.h"
#include "KPFilingCommands.h"
#include "KPLibraryController.h"
#include "KPLibraryModel.h"
#include "XPPath.h"

void KPController::renameTyped(KPDoc *doc, const QString &typed)
{
    xpGuiThread.assertHere();
    m_filing->rename(doc, typed);
}

bool KPController::importDropped(const QMimeData *dropped, KPImport how)
{
    xpGuiThread.assertHere();
    how.isDrop = true;
    return m_filing->import(dropped, how);
}

void KPController::showDocuments(const QStringList &paths)
{
    KPDoc::Docs docs;
    for (const QString &path : paths) {
        KPDoc *doc = KPDocCache::docAtPathIfExists(path);
        if (doc != nullptr && m_model->rowOf(doc) >= 0)
            docs.append(doc);
    }
    if (!docs.isEmpty()) {
        m_library->setSelections(docs, true);
    } else if (!paths.isEmpty()) {
        showAllIn({XPPath::folder(paths.first())});
        m_library->selectWhenShown(paths);
    }
    raise();
    activateWindow();
}

void KPController::selectDocuments(const QStringList &paths, bool editsTags)
{
    KPDoc::Docs docs;
    for (const QString &path : paths) {
        if (KPDoc *doc = KPDocCache::docAtPathIfExists(path))
            docs.append(doc);
    }
    if (editsTags)
        m_library->selectDocsAndEditTags(docs);
    else
        m_library->setSelections(docs, true);
}

// What is under way comes first.
void KPController::cancel()
{
    if (m_isWaiting)
        stopSearch();
    else
        m_library->currentSearchController().selectNone();
}
