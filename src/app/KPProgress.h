#pragma once

#include "XPProgress.h"

#include <QDialog>
#include <QPointer>
#include <map>

class QProgressBar;

// One piece of work as a sheet over the window, with a button that stops it. Closing the sheet is
// the same as that button. It looks at the task a few times in a second. Threads: main.
class KPProgressSheet : public QDialog
{
    Q_OBJECT

public:
    KPProgressSheet(const XPProgress::Task &task, QWidget *window);

    void reject() override; // stops; the sheet goes when the work has

private:
    void look();

    const XPProgress::Task m_task;
    QProgressBar *m_bar;
};

// Long work over the main window: nothing is shown of what is over within half a second. The end of
// this object, as that of the program, asks all of it to stop.
// Threads: main.
class KPProgress : public XPProgress
{
public:
    explicit KPProgress(QWidget *window) : m_window(window) {}
    ~KPProgress() override;
    KPProgress(const KPProgress &) = delete;
    KPProgress &operator=(const KPProgress &) = delete;

    void begin(const Task &task) override;
    void end(const Task &task) override;

private:
    QPointer<QWidget> m_window;
    std::map<Task, QPointer<KPProgressSheet>> m_sheets;
};
