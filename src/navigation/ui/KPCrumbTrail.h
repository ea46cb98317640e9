#pragma once

#include "KPCrumbs.h"
#include "XPNotificationCenter.h"

#include <QTimer>
#include <QWidget>
#include <vector>

class KPCrumbButton;
class KPCrumbController;
class QLabel;
class QMenu;
class QToolButton;

// The crumb trail: the search that is shown as steps, each to be changed, removed or turned into
// its opposite, and how many documents it holds at the right end. Steps that have no room stand in
// a menu at the end, so none is ever out of sight. It follows the searcher by itself.
//
// A row of 36 points; the window puts it below the toolbar, and calls modifiersChanged() when
// modifier keys are pressed or let go.
// Threads: main. Ownership: the controller must outlive it.
class KPCrumbTrail : public QWidget
{
    Q_OBJECT

public:
    explicit KPCrumbTrail(KPCrumbController &controller, QWidget *parent = nullptr);
    ~KPCrumbTrail() override;

    void modifiersChanged(Qt::KeyboardModifiers modifiers);
    const KPCrumbs &crumbs() const { return m_crumbs; }
    // The menu of a step, as a click opens it; the caller owns it.
    QMenu *menuOf(const KPCrumb &crumb);
    QMenu *menuOfAdditions();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void rebuild();
    void place();
    void showCount();
    void fill(QMenu *menu, const QList<KPCrumbChoice> &choices);
    void fill(QMenu *menu, const KPCrumb &crumb);
    void addFolders(QMenu *menu);
    void fillOverflow();
    void choose(const KPCrumbChoice &choice);
    void askForDates();
    void open(KPCrumbButton *button);
    void moveFocus(const KPCrumbButton *from, int direction);

    KPCrumbController &m_controller;
    KPCrumbs m_crumbs;
    std::vector<KPCrumbButton *> m_buttons;
    std::vector<int> m_separators; // where the arrows between the first steps stand
    QToolButton *m_add;
    QToolButton *m_overflow;
    QLabel *m_count;
    QTimer m_rebuild;
    QTimer m_busy; // a search takes long enough to say so
    bool m_isExcluding = false;
    std::vector<XPObservation> m_observations;
};
