#include "tests/support/CountedMalloc.h"

// The linker sends every call of malloc, calloc and free in the program's own code to __wrap_..., and __real_... to the
// C library's (option --wrap): so the texts and arrays of the platform layer can be made to fail too.
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
