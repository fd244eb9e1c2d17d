#include "support/CountedMalloc.h"

#include <cstdlib>

// The system's own allocations (texts, arrays, error records) are out of reach here.
void* CountedMalloc(std::size_t size) noexcept { return AllocationFailsNow() ? nullptr : std::malloc(size); }
