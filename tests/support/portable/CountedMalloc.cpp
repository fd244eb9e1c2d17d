#include "tests/support/CountedMalloc.h"

// With the option --wrap the linker directs each call of malloc, calloc and free in the program's code to a function
// __wrap_..., and each call of a function __real_... to the C library. So allocations of the platform layer's texts and
// arrays can fail too.
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void __wrap_free(void* block);
}

namespace {

void* Counted(void* block) noexcept {
    if (block != nullptr) CountBlock(1);
    return block;
}

} // namespace

void* __wrap_malloc(std::size_t size) { return AllocationFailsNow() ? nullptr : Counted(__real_malloc(size)); }

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return AllocationFailsNow() ? nullptr : Counted(__real_calloc(count, size));
}

void __wrap_free(void* block) {
    if (block != nullptr) CountBlock(-1);
    __real_free(block);
}

void* CountedMalloc(std::size_t size) noexcept { return __wrap_malloc(size); }
void CountedFree(void* block) noexcept { __wrap_free(block); }
