#include "tests/support/CountedMalloc.h"

#include <cstdlib>

// The system's own allocations (texts, arrays, error records) cannot be made to fail here.
void* CountedMalloc(std::size_t size) noexcept {
    void* const block = AllocationFailsNow() ? nullptr : std::malloc(size);
    if (block != nullptr) CountBlock(1);
    return block;
}

void CountedFree(void* block) noexcept {
    if (block != nullptr) CountBlock(-1);
    std::free(block);
}
