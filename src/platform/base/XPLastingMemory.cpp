#include "XPLastingMemory.h"

#include <QtGlobal>
#include <sys/mman.h>

void *XPLastingMemory::pages(size_t bytes)
{
    void *start =
        ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED)
        qBadAlloc();
    return start;
}

void XPLastingMemory::release(void *start, size_t bytes)
{
    // Refused (locked memory), the pages merely stay.
    (void)::madvise(start, bytes, MADV_DONTNEED);
}
