#include "benchmarks/Allocations.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

bool isCounting = false;
std::size_t count = 0;
std::size_t heldBytes = 0;
std::size_t peakBytes = 0;

void* Allocate(std::size_t size) {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    if (isCounting) {
        ++count;
        heldBytes += malloc_usable_size(block);
        peakBytes = std::max(peakBytes, heldBytes);
    }
    return block;
}

void Free(void* block) noexcept {
    // A block that was allocated before the counting began may be freed during it.
    if (isCounting) heldBytes -= std::min(heldBytes, malloc_usable_size(block));
    std::free(block);
}

} // namespace

Allocations::Allocations() noexcept {
    count = heldBytes = peakBytes = 0;
    isCounting = true;
}

Allocations::~Allocations() { isCounting = false; }

std::size_t Allocations::Count() const noexcept { return count; }

std::size_t Allocations::PeakBytes() const noexcept { return peakBytes; }

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }
