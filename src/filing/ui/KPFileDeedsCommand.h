#pragma once

#include "XPFileDeeds.h"

#include <QUndoCommand>
#include <functional>
#include <memory>

// What was done to files, in the window's history. The disk is touched on the file worker, in the
// order asked for, so that undo and redo can be asked for while one is under way; what could not be
// taken back is told when it is over.
// Threads: main.
class KPFileDeedsCommand : public QUndoCommand
{
public:
    // `changed` is called after each undo and redo.
    KPFileDeedsCommand(const QList<XPFileDeeds::Chain> &deeds, const QString &text,
                       std::function<void()> changed);

    void undo() override { takeBack(); }
    void redo() override;

private:
    void takeBack();

    // The file worker's, after the first redo().
    const std::shared_ptr<QList<XPFileDeeds::Chain>> m_deeds;
    const std::function<void()> m_changed;
    bool m_isNew = true; // pushed, which "redoes" what was done already
};
