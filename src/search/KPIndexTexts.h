#pragma once

#include "IndexStatus.h"

#include <QStringList>

// The index's state in words, in the user's language.
// Threads: any.
namespace KPIndexTexts {

QString problem(const IndexProblem &problem);
QStringList problems(const IndexStatus &status);
// What can be done about it; empty: nothing but wait.
QString remedy(const IndexProblem &problem);

} // namespace KPIndexTexts
