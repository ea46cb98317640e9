#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

// Five stars in a row. Threads: main.
namespace XPStars {

constexpr int count = 5;

// Draws `rating` stars (fractions as parts of a star) side by side in squares as high as
// `line`, from its left; with `empty`, the missing ones as faint shapes.
void paint(QPainter *painter, const QRectF &line, double rating, const QColor &colour, bool empty);

// The width that `stars` of them take.
double width(double height, int stars = count);

} // namespace XPStars
