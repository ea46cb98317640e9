// The documents in the window: what is selected, what is edited, and the commands on them.
#include "KPController.h"
#include "KPDocumentCommands.h"
#include "KPDuplicatesWindow.h"
#include "KPEditHistory.h"
#include "KPEditSummary.h"
#include "KPFilingCommands.h"
#include "KPInspector.h"
#include "KPInspectorController.h"
#include "KPLibraryController.h"
#include "KPLibraryModel.h"
#include "KPQuickLook.h"
#include "KPSearchField.h"
#include "KPSidePanels.h"
#include "KPStatusLine.h"
#include "KPTagEditing.h"
#include "Karvex.h"
#include "KarvexPrefs.h"
#include "XPPrompts.h"

#include <QAbstractScrollArea>
#include <QMimeData>
#include <QScrollBar>

using Menu = KPCommandMenu;

QList<KPCommand> KPController::documentCommands()
{
    return {m_filing->pasteCommand(),
            {.id = QT_TRID_NOOP("KPGetInfo"),
             .menu = Menu::Documents,
             .shortcut = QKeySequence(Qt::ALT | Qt::Key_Return),
             .run = [this] { showInformation(m_library->documents()); },
             .state = [this] { return KPCommandState{m_library->documentCount() > 0}; },
             .isOnDocuments = true},
            {.id = QT_TRID_NOOP("KPFindDuplicates"),
             .menu = Menu::Documents,
             .run = [this] { (new KPDuplicatesWindow(pathsOfResults(), this))->show(); },
             .state = [this] { return KPCommandState{m_model->rowCount() > 1}; },
             .endsGroup = true}};
}

void KPController::connectLibrary()
{
    QWidget *library = m_library->widget();
    connect(m_sides.get(), &KPSidePanels::left, library, qOverload<>(&QWidget::setFocus));
    connect(m_searchField, &KPSearchField::left, library,
            [library] { library->setFocus(Qt::ShortcutFocusReason); });
    connect(m_searchField, &KPSearchField::finished, library, qOverload<>(&QWidget::setFocus));
    connect(m_searchField, &KPSearchField::pageRequested, this, [this](int direction) {
        QScrollBar *bar = m_library->resultsView()->verticalScrollBar();
        bar->setValue(bar->value() + direction * bar->pageStep());
    });
    connect(m_status, &KPStatusLine::zoomChanged, m_library.get(),
            &KPLibraryController::setCurrentSliderMagnification);
    connect(m_library.get(), &KPLibraryController::magnificationChanged, this, [this](double zoom) {
        m_status->setZoom(zoom);
        m_commands->update();
    });
    connect(m_library.get(), &KPLibraryController::libraryModeChanged, this, [this](int mode) {
        m_status->setZoomShown(mode != KPLibraryController::LibraryMode_List);
        m_commands->update();
    });
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_model.get(), signal, this, &KPController::showCounts);
    connect(m_model.get(), &QAbstractItemModel::modelReset, this, &KPController::showCounts);

    m_inspection->setSource([this] { return selectedDocs(); });
    connect(m_inspection.get(), &KPInspectorController::shown, this, &KPController::selectionShown);
    connect(m_library.get(), &KPLibraryController::selectionChanged, m_inspection.get(),
            &KPInspectorController::showLater);
    connect(m_library.get(), &KPLibraryController::selectedDocumentsChanged, m_inspection.get(),
            &KPInspectorController::update);
    connect(&m_looks, &KPQuickLook::problemChanged, this, &KPController::showProblems);
}

void KPController::connectEditing()
{
    auto *library = m_library.get();
    connect(library, &KPLibraryController::editRequested, m_edits.get(), &KPEditHistory::edit);
    connect(library, &KPLibraryController::tagEditorRequested, this, &KPController::editTags);
    connect(library, &KPLibraryController::cancelled, this, &KPController::cancel);
    connect(library, &KPLibraryController::renameRequested, this, &KPController::renameTyped);
    connect(library, &KPLibraryController::removeOrDeleteRequested, this, [this](bool commandKey) {
        xpGuiThread.assertHere();
        m_filing->removeOrDeleteSelected(commandKey);
    });
    connect(m_filing.get(), &KPFilingCommands::clipboardChanged, m_commands.get(),
            qOverload<>(&KPCommands::update));
    connect(library, &KPLibraryController::dropped, this,
            [this](const QMimeData *dropped, bool copies) {
                importDropped(dropped, {.copies = copies});
            });
    connect(library, &KPLibraryController::contextMenuRequested, this, [this](const QPoint &at) {
        if (!m_library->hasSelection())
            return;
        auto *menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        m_commands->fillDocumentsMenu(menu);
        menu->popup(at);
    });
    connect(m_documents.get(), &KPDocumentCommands::said, this,
            [this](const QString &message) { m_status->showMessage(message, 8000); });
    m_inspector->setSuggestions([this] { return suggestedTags(); });
    connect(m_inspector, &KPInspector::left, m_library->widget(), qOverload<>(&QWidget::setFocus));
    connect(m_inspection.get(), &KPInspectorController::editRequested, m_edits.get(),
            &KPEditHistory::edit);
    connect(m_inspection.get(), &KPInspectorController::renameRequested, this,
            &KPController::renameTyped);
    connect(m_edits.get(), &QUndoStack::indexChanged, m_commands.get(),
            qOverload<>(&KPCommands::update));
    connect(m_worker.get(), &KPEditWorker::progressed, m_status, &KPStatusLine::showEditing);
    connect(m_worker.get(), &KPEditWorker::reported, this, &KPController::report);
    connect(m_status, &KPStatusLine::stopEditRequested, m_worker.get(), &KPEditWorker::stop);
}

// --- Selection

void KPController::showCounts()
{
    m_status->showCounts(m_model->rowCount(), m_library->numberOfSelections(), 0);
}

void KPController::selectionShown()
{
    const KPSelectionFacts &facts = m_inspection->facts();
    m_status->showCounts(m_model->rowCount(), facts.documents().size(), facts.size());
    m_tagEditing->selectionChanged(m_inspection->facts().paths());
    m_commands->update();
    manageWindowTitle();
}

QStringList KPController::pathsOfSelection() const
{
    QStringList paths;
    for (const KPDoc *doc : selectedDocs())
        paths.append(doc->filePath());
    return paths;
}

KPDoc::Docs KPController::selectedDocs() const
{
    return m_library->documents();
}

QStringList KPController::pathsOfResults() const
{
    QStringList paths;
    for (int row = 0; row < m_model->rowCount(); ++row)
        paths.append(m_model->document(row)->filePath());
    return paths;
}

void KPController::selectByName(const QString &beginning)
{
    KPDoc::Docs found;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        KPDoc *doc = m_model->document(row);
        if (doc->fsName().startsWith(beginning, Qt::CaseInsensitive))
            found.append(doc);
    }
    m_library->setSelections(found, true);
}

QStringList KPController::suggestedTags() const
{
    return Karvex::removeDuplicateTags(KarvexPrefs::recentTags() + m_model->knownTags());
}

// --- Editing

void KPController::report(const KPEditReport &report)
{
    if (!m_worker->isBusy())
        m_status->endEditing();
    if (!report.failures.isEmpty())
        XPPrompts::current().alert(KPEditSummary::title(report), KPEditSummary::details(report));
    else if (report.stopped)
        m_status->showMessage(qtTrId("KPEditStopped", static_cast<int>(report.changed)), 8000);
    m_inspection->showLater(); // what failed is shown as it was
}
