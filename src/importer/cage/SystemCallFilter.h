#pragma once

#include "XPError.h"

// The system calls that a reader needs, and no others (libseccomp).
namespace SystemCallFilter {

// False where the kernel has no such filters. `mayOpen`: opening files for reading is allowed.
XPResult<bool> install(bool mayOpen);

} // namespace SystemCallFilter
