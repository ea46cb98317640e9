#pragma once

#include <QImage>
#include <QRectF>

// What can be seen of a scanned page without reading it. Any thread: pure functions.
namespace XPPageAnalysis {

// The picture in grey and so small that looking at it takes little time. The others begin with
// that too; whoever calls several of them saves time by handing them this.
QImage reduced(const QImage &image);

// Where the paper lies: in parts of the picture when that was turned by the angle (degrees
// clockwise, about its middle), the whole where no border of another brightness is seen around it.
QRectF paper(const QImage &image, double straightenAngle = 0);

// The angle of the lines of text, in degrees clockwise, between -10 and 10; 0 where none stand out.
// To straighten the page, turn it by the negative.
double angle(const QImage &image);

// Nothing is on the page but a little dirt.
bool isBlank(const QImage &image);

} // namespace XPPageAnalysis
