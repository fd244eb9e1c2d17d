#pragma once

#include <cstddef>

/// Whether the allocation that is about to be made is one that FailingAllocations makes fail. Counts it.
bool AllocationFailsNow() noexcept;

/// Counted once, then the C library's malloc.
void* CountedMalloc(std::size_t size) noexcept;
