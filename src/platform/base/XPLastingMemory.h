#pragma once

#include <cstddef>

// Memory of the process-wide tables: whole pages from the system, kept until the process ends.
// It needs no destructor, so it outlives every static object. Any thread.
namespace XPLastingMemory {

// Zeroed, page-aligned, rounded up to whole pages. Out of memory ends as for any container.
void *pages(size_t bytes);

// Gives the contents back to the system; the addresses stay valid and read as zero.
void release(void *start, size_t bytes);

} // namespace XPLastingMemory
