#pragma once

#include <QList>
#include <QPalette>
#include <QRect>
#include <QStringList>

class QFontMetrics;
class QPainter;

// Tags drawn as small rounded chips in one line, as many as fit, and "+3" for the rest.
// Texts must be printable. Threads: main.
namespace KPTagChips {

struct Chip
{
    QString text; // elided where the line is too narrow for even one
    QRect rect;
};

// Centred in `line`.
QList<Chip> layout(const QStringList &tags, const QRect &line, const QFontMetrics &metrics);

void paint(QPainter *painter, const QList<Chip> &chips, const QPalette &palette);

} // namespace KPTagChips
