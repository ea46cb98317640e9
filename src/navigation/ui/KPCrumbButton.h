#pragma once

#include "KPCrumb.h"

#include <QAbstractButton>

// One step of the crumb trail: a pill with what it says, a mark for its menu or a cross that takes
// the criterion away. What is left out is struck through, so that colour alone never says it.
//
// Clicked, or with Return and Space: the menu (clicked()); the cross, Delete and Backspace remove;
// "-", "!" and a click with Alt turn it into its opposite. Threads: main.
class KPCrumbButton : public QAbstractButton
{
    Q_OBJECT

public:
    KPCrumbButton(const KPCrumb &crumb, QWidget *parent);

    const KPCrumb &crumb() const { return m_crumb; }
    bool isPlace() const; // source or location
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void removeRequested();
    void negateRequested();
    void leaveRequested(int direction); // the arrow keys: -1 to the left, 1 to the right

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QRect end() const; // of the cross or the menu's mark
    void paintEnd(QPainter *painter, const QColor &colour) const;

    KPCrumb m_crumb;
    bool m_crossPressed = false;
};
