#pragma once

#include <QStatusBar>
#include <QTimer>

class QLabel;
class QProgressBar;
class QSlider;
class QToolButton;

// The line below the grid: counts, the search or the edit at work with its stop button, what the
// index does, what could not be read or is not kept up to date, and the size of the pictures. Work
// that is over within half a second is not shown. Threads: main.
class KPStatusLine : public QStatusBar
{
    Q_OBJECT

public:
    explicit KPStatusLine(QWidget *parent = nullptr);

    // `size`: of the selected ones together, in bytes; 0: not known.
    void showCounts(qsizetype documents, qsizetype selected, qint64 size);
    void showSearching(bool searching);
    // An edit of few files is over before anybody could read of it: nothing is shown.
    void showEditing(qsizetype done, qsizetype total);
    void endEditing();
    // What the index does, or a backup; empty: nothing. What is done in a moment is not shown.
    void showIndex(const QString &activity);
    void showProblems(const QStringList &problems);
    const QStringList &problems() const { return m_problems; }
    void setZoom(double zoom); // 0 to 1; says nothing
    void setZoomShown(bool isShown);

Q_SIGNALS:
    void stopSearchRequested();
    void stopEditRequested();
    void zoomChanged(double zoom); // by the user

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void makeZoom();
    QWidget *makeProgress(QProgressBar **bar, QLabel **label, void (KPStatusLine::*stop)());
    QStringList problemLines(qsizetype count) const;
    void listProblems();

    QLabel *m_counts;
    QLabel *m_index;
    QTimer m_indexDelay;
    QTimer m_searchDelay;
    QWidget *m_search;
    QSlider *m_zoom;
    QWidget *m_edit;
    QProgressBar *m_editBar = nullptr;
    QLabel *m_editLabel = nullptr;
    QToolButton *m_problemsButton;
    QStringList m_problems;
};
