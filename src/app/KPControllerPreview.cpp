// What the window shows of documents besides the results: the quick preview, windows with
// information, the list of what was done.
#include "KPController.h"
#include "KPDocCache.h"
#include "KPEditHistory.h"
#include "KPHistoryDialog.h"
#include "KPInfoWindow.h"
#include "KPInspector.h"
#include "KPPreviewController.h"

static constexpr qsizetype mostInfoWindows = 5;

void KPController::connectPreview()
{
    connect(m_preview.get(), &KPPreviewController::editRequested, m_edits.get(),
            &KPEditHistory::edit);
    connect(m_preview.get(), &KPPreviewController::visibleChanged, m_commands.get(),
            qOverload<>(&KPCommands::update));
    m_preview->setSuggestions([this] { return suggestedTags(); });
}

// The preview first, which lies above the window.
void KPController::closeFront()
{
    if (m_preview->isVisible())
        m_preview->close();
    else
        close();
}

void KPController::showInfoWindow(const KPDoc::Docs &documents)
{
    for (KPInfoWindow *open : findChildren<KPInfoWindow *>()) {
        if (open->documents() == documents) {
            open->raise();
            open->activateWindow();
            return;
        }
    }
    auto *info = new KPInfoWindow(documents, m_looks, this);
    connect(&info->controller(), &KPInspectorController::editRequested, m_edits.get(),
            &KPEditHistory::edit);
    connect(&info->controller(), &KPInspectorController::renameRequested, this,
            &KPController::renameTyped);
    info->inspector().setSuggestions([this] { return suggestedTags(); });
    info->show();
}

void KPController::showInformation(const QStringList &paths)
{
    KPDoc::Docs documents;
    for (const QString &path : paths) {
        if (KPDoc *doc = KPDocCache::docAtPathIfExists(path))
            documents.append(doc);
    }
    showInformation(documents);
}

// A window each of a few, one for all of many.
void KPController::showInformation(const KPDoc::Docs &documents)
{
    if (documents.isEmpty())
        return;
    if (documents.size() > mostInfoWindows) {
        showInfoWindow(documents);
        return;
    }
    for (KPDoc *doc : documents)
        showInfoWindow({doc});
}

void KPController::showHistory()
{
    if (!m_historyDialog) {
        m_historyDialog = new KPHistoryDialog(*m_edits, *m_worker, this);
        m_historyDialog->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_historyDialog->show();
    m_historyDialog->raise();
    m_historyDialog->activateWindow();
}
