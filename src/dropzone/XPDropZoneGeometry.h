#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <optional>

// Where the drop zone stands: at the right edge of the rightmost screen, or at the left edge of
// the leftmost; in the middle of it unless it was moved. Put away, only a strip is left of it.
//
// In points of Qt's virtual desktop, in which screens of any density lie beside each other.
// Threads: a value.
class XPDropZoneGeometry
{
public:
    struct Screen
    {
        QRect all;
        QRect usable; // without the desktop's panels, between which the zone stands
    };
    struct Wishes
    {
        bool isLeft = false;     // "KPDropZoneLeftEdge"
        bool isOverlap = false;  // "KPDropZoneOverlapWithScreen"
        std::optional<double> y; // "KPDropZoneY": of the zone's upper edge
    };

    static constexpr int height = 300;
    static constexpr int width = 232;
    static constexpr int strip = 2;
    static constexpr int wideStrip = 20;

    // At least one screen.
    XPDropZoneGeometry(const QList<Screen> &screens, const Wishes &wishes);

    qsizetype screen() const { return m_screen; } // which of them
    QRect onscreen() const { return m_onscreen; }
    QRect offscreen() const { return m_offscreen; }
    double y() const { return m_onscreen.y(); } // as near to the wish as the screen allows
    // The corner of a window beside the zone, wholly on the screen.
    QPoint beside(const QSize &window) const;

private:
    qsizetype m_screen;
    QRect m_usable;
    bool m_isLeft;
    QRect m_onscreen;
    QRect m_offscreen;
};
