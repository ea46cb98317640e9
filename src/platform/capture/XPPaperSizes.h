#pragma once

#include <QSizeF>
#include <QString>

// The papers that scanners know, by the numbers that settings keep (0: the whole area).
// Any thread.
namespace XPPaperSizes {

// Width and height in millimetres, upright: ISO 216 and ISO 269, JIS P 0138, ANSI/ASME Y14.1, the
// usual prints and films. An empty size for the whole area and for numbers without a paper.
QSizeF sizeInMM(int paper);

// A name for people; "Unknown" for numbers without one.
QString name(int paper);

inline constexpr int wholeArea = 0;
inline constexpr int usLetter = 3;

} // namespace XPPaperSizes
