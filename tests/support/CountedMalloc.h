#pragma once

#include <cstddef>

/// Counts the next allocation, and says whether FailingAllocations makes it fail.
bool AllocationFailsNow() noexcept;

/// Counts a block that was allocated or freed.
void CountBlock(int change) noexcept;

/// Counted once, then the C library's malloc and free.
void* CountedMalloc(std::size_t size) noexcept;
void CountedFree(void* block) noexcept;
