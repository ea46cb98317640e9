#pragma once

#include <QImage>
#include <QRectF>

// What can be seen of a scanned page without reading it. Any thread: pure functions.
namespace XPPageAnalysis {

// Where the paper lies: in parts of the picture, the whole where no border of another brightness
// is seen around it.
QRectF paper(const QImage &image);

// The angle of the lines of text, in degrees clockwise, between -10 and 10; 0 where none stand out.
// To straighten the page, turn it by the negative.
double angle(const QImage &image);

// Nothing is on the page but a little dirt.
bool isBlank(const QImage &image);

} // namespace XPPageAnalysis
