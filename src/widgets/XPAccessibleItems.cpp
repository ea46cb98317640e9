#include "XPAccessibleItems.h"

void XPAccessible::tellFocused(QWidget &view, int item)
{
    if (!QAccessible::isActive() || item < 0 || !view.hasFocus())
        return;
    QAccessibleEvent event(&view, QAccessible::Focus);
    event.setChild(item);
    QAccessible::updateAccessibility(&event);
}

void XPAccessible::tellReordered(QWidget &view)
{
    QAccessibleEvent event(&view, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}
