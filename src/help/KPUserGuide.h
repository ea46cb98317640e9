#pragma once

#include <QString>

// The user guide, which comes with the program: a PDF made of docs/guide when it is built.
// Threads: any; blocking file calls.
namespace KPUserGuide {

// Where it is installed, seen from the running program, else in a build tree. Empty: nowhere.
QString path();

} // namespace KPUserGuide
