// What the window does with documents as files: renaming, the trash, showing where they are.
#include "KPController.h"
#include "KPDocCache.h"
#include "KPDocsView.h"
#include "KPEditHistory.h"
#include "KPFilterBar.h"
#include "KPLibraryModel.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QDockWidget>
#include <QInputDialog>
#include <QLineEdit>
#include <QPointer>

namespace {

void rename(
    KPDoc *doc, const QString &name, const std::function<void()> &succeeded = [] {})
{
    xpGuiThread.assertHere();
    const QString shown = XPPath::printable(doc->fsDisplayName());
    doc->setFsDisplayName(name, [shown, succeeded](const std::optional<XPError> &error) {
        if (!error)
            succeeded();
        else if (error->kind != XPError::Kind::Cancelled)
            XPPrompts::current().alert(qtTrId("KPCannotRename").arg(shown), error->reason());
    });
}

// A renaming that was done. Taking it back is renaming once more, with the same questions.
class RenameCommand : public QUndoCommand
{
public:
    RenameCommand(KPDoc *doc, const QString &oldName)
        : QUndoCommand(qtTrId("KPUndoRename")), m_doc(doc), m_old(oldName),
          m_new(doc->fsDisplayName())
    {
    }
    void undo() override { rename(m_doc, m_old); }
    void redo() override
    {
        if (!std::exchange(m_isNew, false))
            rename(m_doc, m_new);
    }

private:
    KPDoc *const m_doc; // for the process
    const QString m_old, m_new;
    bool m_isNew = true; // pushed, which "redoes" what was done already
};

// How many could not be moved, told when the last one is done.
struct Trashing
{
    qsizetype left = 0;
    QStringList failed; // names
    QString reason;     // of the first
};

void tellFailures(const Trashing &trashing)
{
    if (trashing.failed.isEmpty())
        return;
    const auto count = static_cast<int>(trashing.failed.size());
    const QString title = count == 1
                              ? qtTrId("KPCannotTrash").arg(trashing.failed.first())
                              : qtTrId("KPCannotTrashSome", count).arg(QLocale().toString(count));
    XPPrompts::current().alert(title, trashing.reason);
}

} // namespace

void KPController::renameSelected()
{
    const QStringList paths = m_view->selectedPaths();
    if (paths.size() != 1)
        return;
    auto *dialog = new QInputDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setWindowTitle(qtTrId("KPRenameTitle"));
    dialog->setLabelText(qtTrId("KPRenameLabel"));
    dialog->setOkButtonText(qtTrId("KPRenameButton"));
    const QString &path = paths.first();
    const QString name = XPPath::fileName(path);
    dialog->setTextValue(name);
    connect(
        dialog, &QInputDialog::textValueSelected, this, [this, path, name](const QString &text) {
            if (KPDoc *doc = KPDocCache::docAtPathIfExists(path); doc != nullptr && text != name)
                rename(doc, text, [window = QPointer(this), doc, name] {
                    if (window)
                        window->m_history->push(new RenameCommand(doc, name));
                });
        });
    dialog->open();
    // What people change is the name; the extension stays unless they mean it.
    if (auto *field = dialog->findChild<QLineEdit *>()) {
        field->setMinimumWidth(fontMetrics().averageCharWidth() * 48);
        const qsizetype extension = XPPath::extension(name).size();
        field->setSelection(0, static_cast<int>(name.size() - (extension ? extension + 1 : 0)));
    }
}

void KPController::trashSelected()
{
    xpGuiThread.assertHere();
    KPDoc::Docs docs;
    for (const QString &path : m_view->selectedPaths()) {
        if (KPDoc *doc = KPDocCache::docAtPathIfExists(path))
            docs.append(doc);
    }
    const auto trashing = std::make_shared<Trashing>();
    trashing->left = docs.size();
    for (KPDoc *doc : docs) {
        const QString name = XPPath::printable(doc->fsDisplayName());
        KPDoc::deleteDoc(doc, true, [trashing, name](const std::optional<XPError> &error) {
            if (error) {
                trashing->failed.append(name);
                if (trashing->reason.isEmpty())
                    trashing->reason = error->reason();
            }
            if (--trashing->left == 0)
                tellFailures(*trashing);
        });
    }
}

void KPController::showDocuments(const QStringList &paths)
{
    QItemSelection found;
    for (const QString &path : paths) {
        if (const QModelIndex index = m_model->indexForPath(path); index.isValid())
            found.select(index, index);
    }
    if (found.isEmpty() && !paths.isEmpty()) {
        m_filter->clear();
        m_folders = {XPPath::folder(paths.first())};
        showFolders();
        startSearch();
    } else if (!found.isEmpty()) {
        m_view->selectionModel()->select(found, QItemSelectionModel::ClearAndSelect);
        m_view->selectionModel()->setCurrentIndex(found.indexes().first(),
                                                  QItemSelectionModel::NoUpdate);
        m_view->scrollTo(found.indexes().first());
    }
    raise();
    activateWindow();
}

void KPController::showInformation(const QStringList &paths)
{
    showDocuments(paths);
    m_dock->show();
}
