#include "platform/portable/SafeArray.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <limits>
#include <optional>
#include <span>

namespace {

constexpr ULONG mostAccesses = 0xFFFF; // at the same time; one more is refused

using Bounds = std::span<SAFEARRAYBOUND>;

/// All bounds, the last dimension first. The descriptor's memory is larger than its type, by cDims - 1 bounds.
Bounds BoundsOf(SAFEARRAY& array) noexcept {
    SAFEARRAYBOUND* const first = array.rgsabound;
    return {first, array.cDims};
}

/// The size of all elements in bytes; nothing if it is larger than any memory.
std::optional<std::size_t> DataSize(SAFEARRAY& array) noexcept {
    std::size_t size = array.cbElements;
    for (const SAFEARRAYBOUND& bound : BoundsOf(array))
        if (__builtin_mul_overflow(size, std::size_t{bound.cElements}, &size)) return std::nullopt;
    if (size > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max())) return std::nullopt;
    return size;
}

/// The bound of `dimension`, or the reason why there is none.
HRESULT FindBound(SAFEARRAY* array, UINT dimension, const LONG* result, SAFEARRAYBOUND& bound) noexcept {
    if (array == nullptr || result == nullptr) return E_INVALIDARG;
    if (dimension == 0 || dimension > array->cDims) return DISP_E_BADINDEX;
    bound = BoundsOf(*array)[array->cDims - dimension];
    return S_OK;
}

void Free(SAFEARRAY* array) noexcept {
    std::free(array->pvData);
    std::free(array);
}

} // namespace

HRESULT SafeArrayAllocDescriptor(UINT dimensions, SAFEARRAY** array) noexcept {
    if (dimensions == 0 || dimensions > std::numeric_limits<USHORT>::max()) return E_INVALIDARG;
    if (array == nullptr) return E_POINTER;
    const std::size_t size = sizeof(SAFEARRAY) + (dimensions - 1) * sizeof(SAFEARRAYBOUND);
    *array = static_cast<SAFEARRAY*>(std::calloc(1, size));
    if (*array == nullptr) return E_OUTOFMEMORY;
    (*array)->cDims = static_cast<USHORT>(dimensions);
    return S_OK;
}

HRESULT SafeArrayAllocData(SAFEARRAY* array) noexcept {
    if (array == nullptr) return E_INVALIDARG;
    const std::optional<std::size_t> size = DataSize(*array);
    if (!size) return E_OUTOFMEMORY;
    // At least one byte, so that an array without elements has a data address too.
    array->pvData = std::calloc(1, std::max(*size, std::size_t{1}));
    return array->pvData == nullptr ? E_OUTOFMEMORY : S_OK;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) noexcept {
    if (array == nullptr) return S_OK;
    if (std::atomic_ref(array->cLocks).load() != 0) return DISP_E_ARRAYISLOCKED;
    Free(array);
    return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy) noexcept {
    if (copy == nullptr) return E_INVALIDARG;
    *copy = nullptr;
    if (array == nullptr) return S_OK;
    if (array->cbElements == 0) return E_INVALIDARG;

    SAFEARRAY* made = nullptr;
    const HRESULT allocated = SafeArrayAllocDescriptor(array->cDims, &made);
    if (FAILED(allocated)) return allocated;
    made->cbElements = array->cbElements;
    std::ranges::copy(BoundsOf(*array), BoundsOf(*made).begin());
    const HRESULT result = SafeArrayAllocData(made);
    if (FAILED(result)) {
        Free(made);
        return result;
    }
    if (array->pvData != nullptr) std::memcpy(made->pvData, array->pvData, DataSize(*array).value_or(0));
    *copy = made;
    return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* array) noexcept { return array == nullptr ? 0U : UINT{array->cDims}; }

UINT SafeArrayGetElemsize(SAFEARRAY* array) noexcept { return array == nullptr ? 0U : array->cbElements; }

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) noexcept {
    SAFEARRAYBOUND found{};
    const HRESULT result = FindBound(array, dimension, bound, found);
    if (SUCCEEDED(result)) *bound = found.lLbound;
    return result;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) noexcept {
    SAFEARRAYBOUND found{};
    const HRESULT result = FindBound(array, dimension, bound, found);
    // Unsigned arithmetic: impossible bounds wrap instead of overflowing. An empty array gives lower bound - 1.
    if (SUCCEEDED(result)) *bound = static_cast<LONG>(static_cast<ULONG>(found.lLbound) + found.cElements - 1U);
    return result;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) noexcept {
    if (array == nullptr || data == nullptr) return E_INVALIDARG;
    const std::atomic_ref accesses(array->cLocks);
    if (accesses.fetch_add(1) >= mostAccesses) {
        accesses.fetch_sub(1);
        return E_UNEXPECTED;
    }
    *data = array->pvData;
    return S_OK;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) noexcept {
    if (array == nullptr) return E_INVALIDARG;
    const std::atomic_ref accesses(array->cLocks);
    ULONG count = accesses.load();
    do {
        if (count == 0) return E_UNEXPECTED;
    } while (!accesses.compare_exchange_weak(count, count - 1));
    return S_OK;
}
