#pragma once

#include <QStringList>

class QWidget;

// What a person could not read or reach in a window, a line a fault, by the widget's name and text.
// The window is shown.
namespace WindowFaults {

// Texts of labels, buttons and tabs that have less room than they need, and controls that stand
// partly outside of their parent.
QStringList cutTexts(QWidget *window);
// Controls that the keyboard reaches and that a screen reader has no name for.
QStringList namelessControls(QWidget *window);
// Enabled texts with less than 4.5 : 1 between letters and ground (WCAG 2.1, 1.4.3; large ones
// 3 : 1), measured on a picture of the window.
QStringList faintTexts(QWidget *window);

} // namespace WindowFaults
