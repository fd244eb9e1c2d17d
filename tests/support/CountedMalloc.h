#pragma once

#include <cstddef>

/// Counts the next allocation. Returns whether FailingAllocations makes it fail.
bool AllocationFailsNow() noexcept;

/// Counts a block that was allocated or freed.
void CountBlock(int change) noexcept;

/// Counts the call and calls malloc or free of the C library.
void* CountedMalloc(std::size_t size) noexcept;
void CountedFree(void* block) noexcept;
