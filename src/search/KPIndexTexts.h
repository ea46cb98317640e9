#pragma once

#include "IndexStatus.h"

#include <QStringList>

// The index's state in words, in the user's language.
// Threads: any.
namespace KPIndexTexts {

QString problem(const IndexProblem &problem);
QStringList problems(const IndexStatus &status);

} // namespace KPIndexTexts
