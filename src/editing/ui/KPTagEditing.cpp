#include "KPTagEditing.h"

#include "KPMirrorQuestion.h"
#include "KPTagRenameDialog.h"
#include "KPWaitingTagChanges.h"
#include "KPWaitingTagsDialog.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPTagEditorController.h"

#include <QLocale>
#include <QProgressDialog>
#include <QToolTip>

static KPTagEditing *instance = nullptr;

KPTagEditing *KPTagEditing::current()
{
    return instance;
}

KPTagEditing::KPTagEditing(KPEditHistory *history, KPEditWorker *worker, QWidget *window)
    : m_batch(history, worker), m_window(window),
      m_editor(std::make_unique<XPTagEditorController>(window))
{
    instance = this;
    connect(m_editor.get(), &XPTagEditorController::edited, this, &KPTagEditing::perform);
    connect(&m_batch, &KPBatchEdit::toReport, this, [](QObject *view, const QString &text) {
        if (auto *widget = qobject_cast<QWidget *>(view); widget && widget->isVisible())
            QToolTip::showText(widget->mapToGlobal(widget->rect().center()), text, widget);
    });
    connectProgress();
    new KPMirrorQuestion(worker, this);
}

KPTagEditing::~KPTagEditing()
{
    if (instance == this)
        instance = nullptr;
}

// The event loop goes on under it; it is seen only when the change takes its time.
void KPTagEditing::connectProgress()
{
    connect(&m_batch, &KPBatchEdit::began, this, [this](qsizetype files) {
        m_progress = new QProgressDialog(qtTrId("XPProgressSettingTags"),
                                         qtTrId("XPProgressSettingTagsStop"), 0,
                                         static_cast<int>(files), m_window);
        m_progress->setWindowModality(Qt::WindowModal);
        m_progress->setMinimumDuration(500);
        m_progress->setAutoClose(false);
        m_progress->setAutoReset(false);
        connect(m_progress, &QProgressDialog::canceled, &m_batch, &KPBatchEdit::stopWritingTags);
    });
    connect(&m_batch, &KPBatchEdit::progressed, this, [this](qsizetype done, qsizetype total) {
        if (!m_progress)
            return;
        m_progress->setMaximum(static_cast<int>(total));
        m_progress->setValue(static_cast<int>(done));
    });
    connect(&m_batch, &KPBatchEdit::ended, this, [this] {
        if (m_progress)
            std::exchange(m_progress, nullptr)->deleteLater();
    });
}

void KPTagEditing::perform(const KPFileEdit &edit)
{
    xpGuiThread.assertHere();
    m_batch.replaceOriginalTags(edit, true, m_window);
}

void KPTagEditing::editTags(const QStringList &paths)
{
    if (!paths.isEmpty())
        m_editor->editTagsForFilePaths(paths);
}

XPTagEditorController &KPTagEditing::panel()
{
    if (!m_panel) {
        m_panel =
            std::make_unique<XPTagEditorController>(m_window, XPTagEditorController::Form::Panel);
        connect(m_panel.get(), &XPTagEditorController::edited, this, &KPTagEditing::perform);
        connect(m_panel.get(), &XPTagEditorController::nextWanted, this, &KPTagEditing::nextWanted);
    }
    return *m_panel;
}

bool KPTagEditing::isPanelShown() const
{
    return m_panel && m_panel->isVisible();
}

void KPTagEditing::togglePanel(const QStringList &paths)
{
    if (isPanelShown())
        panel().close();
    else
        panel().editTagsForFilePaths(paths);
}

void KPTagEditing::selectionChanged(const QStringList &paths)
{
    if (isPanelShown())
        panel().follow(paths);
}

void KPTagEditing::searchForTags()
{
    if (!m_search) {
        m_search =
            std::make_unique<XPTagEditorController>(m_window, XPTagEditorController::Form::Search);
        connect(m_search.get(), &XPTagEditorController::searchWanted, this,
                &KPTagEditing::searchWanted);
    }
    m_search->askForTags();
}

void KPTagEditing::replaceOriginalTags(const KPDocServices::TagChange &change)
{
    KPFileEdit edit{change.filePaths,
                    KPFileEdit::Tags{KPTagName::displayStringsForTagNames(change.originalTags),
                                     KPTagName::displayStringsForTagNames(change.newTags)},
                    change.rating};
    m_batch.replaceOriginalTags(edit, change.confirmWhenChangingManyFiles,
                                change.reportChangesOverView);
}

// Over the library.

void KPTagEditing::makePlan(const KPTagRename &rename, std::function<void(const KPTagPlan &)> done)
{
    xpGuiThread.assertHere();
    auto plan = std::make_shared<KPTagPlan>();
    const QStringList missing = m_missingRoots ? m_missingRoots() : QStringList();
    KPDocServices::current().runFileWork(
        [plan, rename, missing] { *plan = KPTagPlan::make(rename, missing); },
        [self = QPointer(this), plan, done = std::move(done)] {
            if (self)
                done(*plan);
        });
}

void KPTagEditing::rename(const KPTagPlan &plan)
{
    xpGuiThread.assertHere();
    if (const auto error = KPWaitingTagChanges::add(plan.rename, plan.away))
        XPPrompts::current().alert(qtTrId("KPTagsCannotWait"), error->reason());
    m_batch.replaceOriginalTags(plan.edit(), false, m_window);
}

void KPTagEditing::showRenameDialogForTag(KPTagName *tag)
{
    if (tag->tagType() != KPTagName::User)
        return;
    auto *dialog = new KPTagRenameDialog(tag->displayName(), m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &KPTagRenameDialog::previewWanted, this,
            [this, shown = QPointer(dialog)](const KPTagRename &wanted) {
                makePlan(wanted, [shown](const KPTagPlan &plan) {
                    if (shown)
                        shown->showPreview(plan);
                });
            });
    connect(dialog, &KPTagRenameDialog::agreed, this, &KPTagEditing::rename);
    dialog->start();
}

void KPTagEditing::showDeleteDialogForTag(KPTagName *tag)
{
    xpGuiThread.assertHere();
    if (tag->tagType() != KPTagName::User) {
        XPPrompts::current().alert(qtTrId("KPTagsReadOnly"), {});
        return;
    }
    makePlan({tag->displayName(), {}, false}, [this](const KPTagPlan &plan) {
        xpGuiThread.assertHere();
        if (plan.isEmpty()) {
            XPPrompts::current().alert(qtTrId("KPNoTagsToDelete"), {});
            return;
        }
        XPPrompts::current().ask(
            {qtTrId("KPTagDeleteTitle").arg(XPPath::printable(plan.rename.from)),
             KPTagRenameDialog::describe(plan),
             {qtTrId("KPTagDeleteButton"), qtTrId("KPCancel")},
             1},
            [self = QPointer(this), plan](int answer) {
                if (self && answer == 0)
                    self->rename(plan);
            });
    });
}

// What waited.

void KPTagEditing::rootsMayHaveChanged()
{
    const QStringList missing = m_missingRoots ? m_missingRoots() : QStringList();
    if (!m_lastMissing || *m_lastMissing != missing)
        workOffWaiting();
    m_lastMissing = missing;
}

void KPTagEditing::showWaiting()
{
    auto *dialog = new KPWaitingTagsDialog(m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void KPTagEditing::workOffWaiting()
{
    xpGuiThread.assertHere();
    auto ready = std::make_shared<XPResult<QList<KPWaitingTagChanges::Change>>>(
        QList<KPWaitingTagChanges::Change>());
    KPDocServices::current().runFileWork(
        [ready] { *ready = KPWaitingTagChanges::takeReady(); },
        [self = QPointer(this), ready] {
            xpGuiThread.assertHere();
            if (!*ready) {
                qCWarning(xpLog).noquote() << ready->error().message;
                return;
            }
            for (const auto &change : **ready) {
                if (self)
                    self->m_batch.replaceOriginalTags({change.paths, {}, {}, change.rename}, false,
                                                      self->m_window);
            }
        });
}
