#include "XPStars.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

// One star in the unit square: ten corners, every other one nearer to the centre.
static QPainterPath makeStar()
{
    QPainterPath path;
    for (int corner = 0; corner < 10; ++corner) {
        const double radius = corner % 2 ? 0.22 : 0.5;
        const double angle = std::numbers::pi * (corner / 5.0 - 0.5);
        const QPointF point(0.5 + radius * std::cos(angle), 0.53 + radius * std::sin(angle));
        corner ? path.lineTo(point) : path.moveTo(point);
    }
    path.closeSubpath();
    return path;
}

double XPStars::width(double height, int stars)
{
    return height * stars;
}

void XPStars::paint(QPainter *painter, const QRectF &line, double rating, const QColor &colour,
                    bool empty)
{
    static const QPainterPath star = makeStar();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    QColor faint = colour;
    faint.setAlphaF(0.22F);
    const double side = line.height();
    for (int number = 0; number < count; ++number) {
        const double filled = std::clamp(rating - number, 0.0, 1.0);
        painter->save();
        painter->translate(line.left() + number * side, line.top());
        painter->scale(side, side);
        if (empty || (filled > 0 && filled < 1))
            painter->fillPath(star, faint);
        if (filled > 0) {
            painter->setClipRect(QRectF(0, 0, filled, 1));
            painter->fillPath(star, colour);
        }
        painter->restore();
    }
    painter->restore();
}
