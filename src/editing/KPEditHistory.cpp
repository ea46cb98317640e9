#include "KPEditHistory.h"

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

    void undo() override { m_worker->undo(m_record); }
    void redo() override
    {
        if (const auto edit = std::exchange(m_edit, {}))
            m_worker->edit(*edit, m_record);
        else
            m_worker->redo(m_record);
    }

private:
    KPEditWorker *m_worker;
    std::optional<KPFileEdit> m_edit; // until it was made
    KPEditWorker::Record m_record = std::make_shared<KPEditRecord>();
};

} // namespace

KPEditHistory::KPEditHistory(KPEditWorker *worker, QObject *parent)
    : QUndoStack(parent), m_worker(worker)
{
    setUndoLimit(remembered);
}

void KPEditHistory::edit(const KPFileEdit &edit)
{
    if (edit.paths.isEmpty() || (!edit.rating && !edit.tags))
        return;
    const int count = static_cast<int>(edit.paths.size());
    push(new EditCommand(m_worker, edit,
                         edit.tags ? qtTrId("KPUndoTags", count) : qtTrId("KPUndoRating", count)));
}
