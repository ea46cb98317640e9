#pragma once

#include "XPError.h"

#include <QByteArray>
#include <vector>

// Landlock by its system calls (the C library of Debian 12 has none for them).
namespace Landlock {

// From now on this thread, and every thread and program it starts, opens nothing but below
// `readOnlyFolders`; those that do not exist are left out. The version of the kernel's interface;
// 0 where the kernel has none, or has it switched off.
XPResult<int> restrictTo(const std::vector<QByteArray> &readOnlyFolders);

} // namespace Landlock
