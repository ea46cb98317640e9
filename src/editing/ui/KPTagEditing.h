#pragma once

#include "KPBatchEdit.h"
#include "KPDocServices.h"
#include "KPTagPlan.h"

#include <QWidget>
#include <functional>

class QProgressDialog;
class XPTagEditorController;

// Everything about changing tags that a window offers: the editor, renaming and deleting over the
// whole library, progress, and changes that waited for a volume. Threads: main. Ownership: history,
// worker and window outlive it.
class KPTagEditing : public QObject
{
    Q_OBJECT

public:
    KPTagEditing(KPEditHistory *history, KPEditWorker *worker, QWidget *window);
    ~KPTagEditing() override;
    static KPTagEditing *current(); // null while there is none

    // The roots of the index whose volume is away. Asked for before a change of the library.
    void setMissingRoots(std::function<QStringList()> roots) { m_missingRoots = std::move(roots); }
    // The index's roots may have changed: works off what waited for those that are back.
    void rootsMayHaveChanged();

    void editTags(const QStringList &paths);
    // The panel that follows the selection: shows it, or takes it away.
    void togglePanel(const QStringList &paths);
    bool isPanelShown() const;
    void selectionChanged(const QStringList &paths);
    void searchForTags();
    void showWaiting(); // what waits for volumes
    // As the document records ask for it (KPDocServices).
    void replaceOriginalTags(const KPDocServices::TagChange &change) XP_REQUIRES(xpGuiThread);
    void showRenameDialogForTag(KPTagName *tag);
    void showDeleteDialogForTag(KPTagName *tag);

Q_SIGNALS:
    void nextWanted(); // the document after the selected one
    void searchWanted(const QStringList &tags);

private:
    XPTagEditorController &panel();
    void perform(const KPFileEdit &edit);
    void connectProgress();
    void makePlan(const KPTagRename &rename, std::function<void(const KPTagPlan &)> done);
    void rename(const KPTagPlan &plan);
    void workOffWaiting();

    KPBatchEdit m_batch;
    QWidget *m_window;
    std::unique_ptr<XPTagEditorController> m_editor;
    std::unique_ptr<XPTagEditorController> m_panel; // these two are made when first asked for
    std::unique_ptr<XPTagEditorController> m_search;
    QProgressDialog *m_progress = nullptr;
    std::function<QStringList()> m_missingRoots;
    std::optional<QStringList> m_lastMissing; // none: never looked
};
