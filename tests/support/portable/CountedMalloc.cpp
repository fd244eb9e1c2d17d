#include "support/CountedMalloc.h"

// The linker sends every call of malloc and calloc in the program's own code to __wrap_..., and __real_... to the C
// library's (option --wrap): so the texts and arrays of the platform layer can be made to fail too.
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
}

void* __wrap_malloc(std::size_t size) { return AllocationFailsNow() ? nullptr : __real_malloc(size); }

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return AllocationFailsNow() ? nullptr : __real_calloc(count, size);
}

void* CountedMalloc(std::size_t size) noexcept { return __wrap_malloc(size); }
