#pragma once

#include "XPFileDeeds.h"

#include <QUndoCommand>
#include <functional>
#include <memory>

// What was done to files, in the window's history. The disk is touched on the file worker, in the
// order asked for, so that undo and redo can be asked for while one is under way; what could not be
// taken back is told when it is over. What a stop leaves comes with the next turn.
// Threads: main.
class KPFileDeedsCommand : public QUndoCommand
{
public:
    // `changed` is called after each undo and redo.
    KPFileDeedsCommand(const QList<XPFileDeeds::Chain> &deeds, const QString &text,
                       std::function<void()> changed);

    void undo() override;
    void redo() override;

private:
    void takeBack(const char *titleId);

    // The file worker's, after the first redo().
    const std::shared_ptr<QList<XPFileDeeds::Chain>> m_deeds;
    // Of the way that was gone last, which a stop cut short.
    const std::shared_ptr<QList<XPFileDeeds::Chain>> m_left;
    const std::function<void()> m_changed;
    const qsizetype m_count;
    bool m_isNew = true; // pushed, which "redoes" what was done already
};
