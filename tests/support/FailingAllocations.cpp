#include "tests/support/FailingAllocations.h"

#include "tests/support/CountedMalloc.h"

#include <atomic>
#include <new>

namespace {

struct Countdown {
    bool running = false;
    bool failed = false;
    long successesLeft = 0;
    FailingAllocations::Extent extent = FailingAllocations::Extent::One;

    bool FailsNow() noexcept {
        if (!running || successesLeft-- > 0) return false;
        if (failed && extent == FailingAllocations::Extent::One) return false;
        failed = true;
        return true;
    }
};

thread_local constinit Countdown countdown;
constinit std::atomic<long> liveBlocks{0};

// Based on malloc, so that the sanitizers check every block.
void* Allocate(std::size_t size) noexcept { return CountedMalloc(size == 0 ? 1 : size); }

void* AllocateOrThrow(std::size_t size) {
    void* const block = Allocate(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

} // namespace

bool AllocationFailsNow() noexcept { return countdown.FailsNow(); }

void CountBlock(int change) noexcept { liveBlocks.fetch_add(change, std::memory_order_relaxed); }

long FailingAllocations::LiveBlocks() noexcept { return liveBlocks.load(); }

FailingAllocations::FailingAllocations(long successes, Extent extent) noexcept {
    countdown = {true, false, successes, extent};
}

FailingAllocations::~FailingAllocations() { Stop(); }

bool FailingAllocations::Stop() noexcept {
    countdown.running = false;
    return countdown.failed;
}

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { CountedFree(block); }
void operator delete[](void* block) noexcept { CountedFree(block); }
void operator delete(void* block, std::size_t) noexcept { CountedFree(block); }
void operator delete[](void* block, std::size_t) noexcept { CountedFree(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { CountedFree(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { CountedFree(block); }
