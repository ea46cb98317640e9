#pragma once

#include "KPEditWorker.h"

#include <QUndoStack>

// The user's edits of tags and ratings, to be undone and redone.
//
// An entry holds what each file had before and after; taking it back writes only where the file
// still has what we wrote. Threads: main. The worker is not owned.
class KPEditHistory : public QUndoStack
{
    Q_OBJECT

public:
    explicit KPEditHistory(KPEditWorker *worker, QObject *parent = nullptr);

    // Starts the edit. Nothing is remembered of one without files or without a change asked for.
    void edit(const KPFileEdit &edit);
    // Puts what earlier runs of the program (murnctl too) changed below everything: call first.
    void restore();
    // What an edit is called in the menu.
    static QString textOf(const KPFileEdit &edit);

private:
    KPEditWorker *m_worker;
};
