#pragma once

class QWidget;

// Threads: main.
namespace KPTabOrder {

// A widget made late stands last in its window; this puts it where it is seen. `at` itself need
// not take the focus.
void insertBefore(QWidget &at, QWidget &late);

} // namespace KPTabOrder
