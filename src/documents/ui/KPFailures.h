#pragma once

#include "XPError.h"
#include "XPMutex.h"

#include <QList>

// What could not be done with some of many documents, in one alert. Threads: main.
namespace KPFailures {

// `titleId`: a text with a number. Each document with its reason, the first of many. Nothing for
// no failures.
void tell(const char *titleId, const QList<XPError> &failures) XP_REQUIRES(xpGuiThread);

} // namespace KPFailures
