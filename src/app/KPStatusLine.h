#pragma once

#include <QStatusBar>

class QLabel;
class QProgressBar;
class QToolButton;

// The line below the grid: counts, the search or the edit at work with its stop button, and the
// folders that could not be read. Threads: main.
class KPStatusLine : public QStatusBar
{
    Q_OBJECT

public:
    explicit KPStatusLine(QWidget *parent = nullptr);

    void showCounts(qsizetype documents, qsizetype selected);
    void showSearching(bool searching);
    // An edit of few files is over before anybody could read of it: nothing is shown.
    void showEditing(qsizetype done, qsizetype total);
    void endEditing();
    void showProblems(const QStringList &problems);

Q_SIGNALS:
    void stopSearchRequested();
    void stopEditRequested();

private:
    QWidget *makeProgress(QProgressBar **bar, QLabel **label, void (KPStatusLine::*stop)());
    void listProblems();

    QLabel *m_counts;
    QWidget *m_search;
    QWidget *m_edit;
    QProgressBar *m_editBar = nullptr;
    QLabel *m_editLabel = nullptr;
    QToolButton *m_problemsButton;
    QStringList m_problems;
};
