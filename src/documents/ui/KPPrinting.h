#pragma once

#include "XPMutex.h"

#include <QStringList>

class KPLongWork;
class QWidget;

// Prints documents: has their pages drawn, shows them as they will come out of the printer, and
// prints them when the user says so. Threads: main. Ownership: none; the work outlives it.
namespace KPPrinting {

void start(const QStringList &paths, KPLongWork &work, QWidget *window) XP_REQUIRES(xpGuiThread);

} // namespace KPPrinting
