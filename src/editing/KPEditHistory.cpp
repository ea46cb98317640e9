#include "KPEditHistory.h"

#include "KPEditJournal.h"
#include "XPPath.h"

#include <QCoreApplication>

static constexpr int remembered = 100; // edits, each with the tags of its files

namespace {

class EditCommand : public QUndoCommand
{
public:
    EditCommand(KPEditWorker *worker, const KPFileEdit &edit, const QString &text)
        : QUndoCommand(text), m_worker(worker), m_edit(edit)
    {
    }
    // One that was made before.
    EditCommand(KPEditWorker *worker, const KPEditJournal::Saved &saved)
        : QUndoCommand(saved.text), m_worker(worker), m_isMade(true)
    {
        m_record->journal = saved.file;
        m_record->isLoaded = false;
    }

    void undo() override { m_worker->undo(m_record); }
    void redo() override
    {
        if (std::exchange(m_isMade, false))
            return;
        if (const auto edit = std::exchange(m_edit, {}))
            m_worker->edit(*edit, m_record, text());
        else
            m_worker->redo(m_record);
    }

private:
    KPEditWorker *m_worker;
    std::optional<KPFileEdit> m_edit; // until it was made
    bool m_isMade = false;
    KPEditWorker::Record m_record = std::make_shared<KPEditRecord>();
};

} // namespace

KPEditHistory::KPEditHistory(KPEditWorker *worker, QObject *parent)
    : QUndoStack(parent), m_worker(worker)
{
    setUndoLimit(remembered);
}

static QStringList without(QStringList tags, const QStringList &others)
{
    tags.removeIf([&](const QString &tag) { return others.contains(tag); });
    return tags;
}

// The program's own marks are tags, which people need not know.
static QString textOf(const KPFileEdit::Tags &tags, int count)
{
    const QStringList added = without(tags.after, tags.before);
    const QStringList removed = without(tags.before, tags.after);
    const QString only = (added + removed).join(u'\n').toLower(); // of one tag it is that tag
    if (only == u"flagged")
        return added.isEmpty() ? qtTrId("KPUndoUnflag", count) : qtTrId("KPUndoFlag", count);
    if (only == u"hidden")
        return added.isEmpty() ? qtTrId("KPUndoUnhide", count) : qtTrId("KPUndoHide", count);
    return qtTrId("KPUndoTags", count);
}

QString KPEditHistory::textOf(const KPFileEdit &edit)
{
    const auto count = static_cast<int>(edit.paths.size());
    if (edit.rename)
        return edit.rename->isDeletion()
                   ? qtTrId("KPUndoDeleteTag").arg(XPPath::printable(edit.rename->from))
                   : qtTrId("KPUndoRenameTag")
                         .arg(XPPath::printable(edit.rename->from),
                              XPPath::printable(edit.rename->to));
    if (edit.repairs)
        return qtTrId("KPUndoRepair", count);
    if (edit.comment)
        return qtTrId("KPUndoComment", count);
    return edit.tags ? ::textOf(*edit.tags, count) : qtTrId("KPUndoRating", count);
}

void KPEditHistory::edit(const KPFileEdit &edit)
{
    if (!edit.paths.isEmpty() && !edit.isEmpty())
        push(new EditCommand(m_worker, edit, textOf(edit)));
}

void KPEditHistory::restore()
{
    for (const KPEditJournal::Saved &saved : KPEditJournal::saved())
        push(new EditCommand(m_worker, saved));
}
