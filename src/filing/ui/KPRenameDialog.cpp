#include "KPRenameDialog.h"

#include "KPDoc.h"
#include "KPFilenameFormatter.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QFontMetrics>
#include <QInputDialog>
#include <QLineEdit>
#include <QPointer>
#include <QUndoStack>

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

void rename(KPDoc *doc, const QString &oldName, const QString &typed,
            const QPointer<QUndoStack> &history) XP_REQUIRES(xpGuiThread)
{
    if (doc->fsName() != oldName) {
        tellNotRenamed(oldName, qtTrId("KPChangedMeanwhile"));
        return;
    }
    doc->setFsDisplayName(typed, [history, doc, oldName](const std::optional<XPError> &error) {
        xpGuiThread.assertHere();
        if (!error && history)
            history->push(new RenameCommand(doc, oldName));
        else if (error && error->kind != XPError::Kind::Cancelled)
            tellNotRenamed(oldName, error->reason());
    });
}

} // namespace

void KPRenameDialog::open(KPDoc *doc, QUndoStack &history, QWidget *window)
{
    constexpr int widthInLetters = 48;
    auto *dialog = new QInputDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setWindowTitle(qtTrId("KPRenameTitle"));
    dialog->setLabelText(qtTrId("KPRenameLabel"));
    dialog->setOkButtonText(qtTrId("KPRenameButton"));
    const QString name = doc->fsName();
    dialog->setTextValue(KPDoc::changeCharsForNameToFinderDisplayMode(name));
    const KPFilenameFormatter formatter{dialog->textValue()}; // a field may hold less than a name
    QObject::connect(dialog, &QInputDialog::textValueSelected, dialog,
                     [doc, name, formatter, history = QPointer(&history)](const QString &text) {
                         xpGuiThread.assertHere();
                         const QString typed = formatter.getObjectValueForString(text);
                         if (typed != formatter.originalDisplayName)
                             rename(doc, name, typed, history);
                     });
    dialog->open();
    // What people change is the name; the extension stays unless they mean it.
    if (auto *field = dialog->findChild<QLineEdit *>()) {
        field->setMinimumWidth(dialog->fontMetrics().averageCharWidth() * widthInLetters);
        const qsizetype extension = doc->isDirectory() ? 0 : XPPath::extension(name).size();
        field->setSelection(0, static_cast<int>(name.size() - (extension ? extension + 1 : 0)));
    }
}
