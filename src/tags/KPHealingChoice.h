#pragma once

#include "KPHealing.h"

// What the user says of cases of healing: that the attributes are put on the file, or not.
// Threads: any; blocking file calls.
namespace KPHealingChoice {

// Whether this can still be said of the case.
bool isOpen(const KPHealing &healing, bool accepts);

struct Result
{
    QList<KPHealing> done; // as they are now, also those that failed
    QList<XPError> failures;
};

// Does what was said to the files, and writes it to the log. Numbers of no case are passed over.
Result apply(const QList<qint64> &numbers, bool accepts);

} // namespace KPHealingChoice
