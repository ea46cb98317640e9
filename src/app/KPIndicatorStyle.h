#pragma once

#include <QProxyStyle>

// Qt's own style with boxes and buttons to tick that have an outline one sees: its own is darker
// than the window, so that of an empty box nothing is left on a dark one. The outline keeps the
// contrast of 3 : 1 that WCAG 2.1 (1.4.11) asks of controls.
// Threads: main. Ownership: the application's, as of any style.
class KPIndicatorStyle : public QProxyStyle
{
public:
    KPIndicatorStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
};
