#pragma once

#include <QProxyStyle>

// Qt's own style, for desktops that have none, made to go with what the window draws itself:
// - Boxes and buttons to tick, and fields, have an outline one sees: its own is darker than the
//   window, so that nothing is left of it on a dark one. That of what is ticked keeps the contrast
//   of 3 : 1 that WCAG 2.1 (1.4.11) asks of controls.
// - Flat buttons and selected rows are plain tints, without frames and gradients, whose edges
//   show as seams where a point is several pixels.
// Threads: main. Ownership: the application's, as of any style.
class KPFusionStyle : public QProxyStyle
{
public:
    KPFusionStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption *option,
                         const QWidget *widget) const override;
};
