#include "KPRenaming.h"

#include "KPDoc.h"
#include "XPPath.h"
#include "XPPrompts.h"

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

} // namespace

void KPRenaming::rename(KPDoc *doc, const QString &typed, QUndoStack &history)
{
    const QString oldName = doc->fsName();
    doc->setFsDisplayName(
        typed, [history = QPointer(&history), doc, oldName](const std::optional<XPError> &error) {
            xpGuiThread.assertHere();
            if (!error && history)
                history->push(new RenameCommand(doc, oldName));
            else if (error && error->kind != XPError::Kind::Cancelled)
                tellNotRenamed(oldName, error->reason());
        });
}
