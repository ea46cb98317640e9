#pragma once

#include "XPError.h"
#include "XPMutex.h"

#include <QList>
#include <functional>

// What could not be done with some of many documents, in one alert. Threads: main.
namespace KPFailures {

// `titleId`: a text with a number. Each document with its reason, the first of many. Nothing for
// no failures.
void tell(const char *titleId, const QList<XPError> &failures) XP_REQUIRES(xpGuiThread);

// Asks whether to go on with the others, and does so: an alert would lie below what comes next, and
// take the keyboard from it. Goes on at once where there are no failures.
void ask(const char *titleId, const QList<XPError> &failures, std::function<void()> goOn)
    XP_REQUIRES(xpGuiThread);

} // namespace KPFailures
