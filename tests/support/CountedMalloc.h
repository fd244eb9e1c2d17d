#pragma once

#include <cstddef>

/// Whether the allocation that is about to be made is one that FailingAllocations makes fail. Counts it.
bool AllocationFailsNow() noexcept;

/// Keeps account of a block that was handed out or given back.
void CountBlock(int change) noexcept;

/// Counted once, then the C library's malloc and free.
void* CountedMalloc(std::size_t size) noexcept;
void CountedFree(void* block) noexcept;
