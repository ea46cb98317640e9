#pragma once

#include "KPEditWorker.h"

#include <QDialog>

class QLabel;
class QListWidget;
class QPushButton;
class QUndoStack;

// What was done in the window, the newest first, with a way back to before any of it, or forward
// again.
//
// Going back takes one step after the other, each when the files of the last are written, as a step
// may stand on what the one before it left; it ends at the first that finds a file changed by
// somebody else.
// Threads: main. History and worker outlive it.
class KPHistoryDialog : public QDialog
{
    Q_OBJECT

public:
    KPHistoryDialog(QUndoStack &history, KPEditWorker &worker, QWidget *window);

    // The number of steps that are to be done afterwards.
    void goTo(int steps);
    bool isGoing() const { return m_target >= 0; }

Q_SIGNALS:
    void arrived();

private:
    void fill();
    void describe();
    int stepsOfCurrent() const; // -1: none is chosen
    void step();
    void wait();
    void end();

    QUndoStack &m_history;
    KPEditWorker &m_worker;
    QListWidget *m_list;
    QLabel *m_note;
    QPushButton *m_go;
    int m_target = -1;
    bool m_hasFailed = false;
};
