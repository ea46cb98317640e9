#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>

class KPBaseItem;
class QTreeView;

// How the items of navigation are drawn: what picture a name stands for, and the colours of steps
// and chips, which follow the palette. Sizes in points. Threads: main.
namespace KPNavigationLook {

inline constexpr int trailHeight = 36;
inline constexpr int barHeight = 32;
inline constexpr int rowHeight = 24;
inline constexpr int iconSize = 16;

// The picture of an item: its kind decides where several share one name.
QIcon icon(const KPBaseItem &item);
// By the name that items give ("libraryGroupIcon.tif", "folder", a resource).
QIcon icon(const QString &name);

// A tree whose rows are drawn by KPSourceListDelegate alone, on the ground of a panel.
void prepare(QTreeView *tree);

QColor mixed(const QColor &one, const QColor &other, double share); // share of the other
QColor chip(const QPalette &palette, bool isHovered);               // a criterion
QColor chipText(const QPalette &palette);
QColor quiet(const QPalette &palette); // source, location and other plain pills
QColor muted(const QPalette &palette); // counts, captions
QColor line(const QPalette &palette);  // between panes

} // namespace KPNavigationLook
