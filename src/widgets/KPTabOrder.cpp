#include "KPTabOrder.h"

#include <QWidget>

void KPTabOrder::insertBefore(QWidget &at, QWidget &late)
{
    // Only what takes the focus can be followed.
    QWidget *before = at.previousInFocusChain();
    while (before != &at && (before == &late || before->focusPolicy() == Qt::NoFocus))
        before = before->previousInFocusChain();
    if (before != &at)
        QWidget::setTabOrder(before, &late);
}
