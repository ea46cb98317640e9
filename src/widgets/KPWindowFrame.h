#pragma once

#include <QSize>
#include <QString>

class QWidget;

// Where a window stands, from one time it is open to the next.
// Threads: main.
namespace KPWindowFrame {

// As it was saved under that setting; else of that size, as far as the screen has room, in the
// middle of its parent's window, or of the one that is in use.
void restore(QWidget &window, const QString &key, const QSize &usual);
// Assistive programs learn of every window that it is one; once, more do nothing.
void tellWindows();
void save(const QWidget &window, const QString &key);

} // namespace KPWindowFrame
