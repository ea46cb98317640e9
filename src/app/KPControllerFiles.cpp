// What the window does with documents as files: renaming, the trash, showing where they are.
#include "KPController.h"
#include "KPDocCache.h"
#include "KPDocsView.h"
#include "KPEditHistory.h"
#include "KPLibraryModel.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QPointer>

namespace {

void tellNotRenamed(const QString &name, const QString &reason) XP_REQUIRES(xpGuiThread)
{
    XPPrompts::current().alert(qtTrId("KPCannotRename").arg(XPPath::printable(name)), reason);
}

// A renaming that was done. Taking it back gives the file its very name again, unless somebody
// else renamed it since.
class RenameCommand : public QUndoCommand
{
public:
    RenameCommand(KPDoc *doc, const QString &oldName)
        : QUndoCommand(qtTrId("KPUndoRename")), m_doc(doc), m_old(oldName), m_new(doc->fsName())
    {
    }
    void undo() override { rename(m_new, m_old); }
    void redo() override
    {
        if (!std::exchange(m_isNew, false))
            rename(m_old, m_new);
    }

private:
    void rename(const QString &from, const QString &to)
    {
        xpGuiThread.assertHere();
        if (m_doc->fsName() != from) {
            tellNotRenamed(from, qtTrId("KPChangedMeanwhile"));
            return;
        }
        m_doc->renameTo(to, [from](const std::optional<XPError> &error) {
            xpGuiThread.assertHere();
            if (error)
                tellNotRenamed(from, error->reason());
        });
    }

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
    dialog->setTextValue(KPDoc::changeCharsForNameToFinderDisplayMode(name));
    const QString shown = dialog->textValue(); // a field may hold less than a name does
    connect(dialog, &QInputDialog::textValueSelected, this,
            [this, path, name, shown](const QString &text) {
                if (text != shown)
                    renameTyped(path, name, text);
            });
    dialog->open();
    // What people change is the name; the extension stays unless they mean it.
    if (auto *field = dialog->findChild<QLineEdit *>()) {
        field->setMinimumWidth(fontMetrics().averageCharWidth() * 48);
        const qsizetype extension = XPPath::extension(name).size();
        field->setSelection(0, static_cast<int>(name.size() - (extension ? extension + 1 : 0)));
    }
}

void KPController::renameTyped(const QString &path, const QString &oldName, const QString &typed)
{
    xpGuiThread.assertHere();
    KPDoc *doc = KPDocCache::docAtPathIfExists(path);
    if (doc == nullptr)
        return;
    doc->setFsDisplayName(
        typed, [window = QPointer(this), doc, oldName](const std::optional<XPError> &error) {
            xpGuiThread.assertHere();
            if (!error && window)
                window->m_edits->push(new RenameCommand(doc, oldName));
            else if (error && error->kind != XPError::Kind::Cancelled)
                tellNotRenamed(oldName, error->reason());
        });
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
        KPDoc::deleteDoc(doc, true, [trashing, name](const XPResult<QString> &inTrash) {
            if (!inTrash) {
                trashing->failed.append(name);
                if (trashing->reason.isEmpty())
                    trashing->reason = inTrash.error().reason();
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
        showAllIn({XPPath::folder(paths.first())});
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
    m_panels->setShown(KPWindowPanels::Place::Inspector, true);
}
