#pragma once

#include <QString>

// Files that are installed with the program and read as they are, besides those in its resources.
// Threads: any; blocking file calls.
namespace KPInstalledFiles {

// Where a file of that name is ("workflows/murn-tag.sh"), seen from the running program: where the
// package lays it, else in a build tree. Empty: nowhere.
QString path(const QString &name);

} // namespace KPInstalledFiles
