#pragma once

#include "platform/portable/Types.h"

/// Arrays with bounds, as the interface passes them. The elements are numbers or records of numbers: they are copied
/// and freed byte by byte.

struct SAFEARRAYBOUND {
    ULONG cElements;
    LONG lLbound;
};

struct SAFEARRAY {
    USHORT cDims;
    USHORT fFeatures;
    ULONG cbElements; ///< size of one element in bytes
    ULONG cLocks;     ///< accesses that have not ended
    void* pvData;
    SAFEARRAYBOUND rgsabound[1]; ///< cDims bounds, the last dimension first
};

extern "C" {
/// A zeroed descriptor for `dimensions` bounds; the caller fills `cbElements` and the bounds. This is how an array of
/// records is made: SafeArrayAllocDescriptor, cbElements, rgsabound, SafeArrayAllocData.
QMV_EXPORT HRESULT SafeArrayAllocDescriptor(UINT dimensions, SAFEARRAY** array) noexcept;
/// Allocates memory for all elements of the descriptor's bounds, filled with zeros.
QMV_EXPORT HRESULT SafeArrayAllocData(SAFEARRAY* array) noexcept;
/// Frees the data and the descriptor. DISP_E_ARRAYISLOCKED while an access has not ended; S_OK for null.
QMV_EXPORT HRESULT SafeArrayDestroy(SAFEARRAY* array) noexcept;
/// A copy of bounds and elements. A null array copies to a null array, successfully.
QMV_EXPORT HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy) noexcept;
QMV_EXPORT UINT SafeArrayGetDim(SAFEARRAY* array) noexcept;
QMV_EXPORT UINT SafeArrayGetElemsize(SAFEARRAY* array) noexcept;
/// Bounds of one dimension, counted from 1. E_INVALIDARG for a null array, DISP_E_BADINDEX for another dimension.
QMV_EXPORT HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) noexcept;
QMV_EXPORT HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) noexcept;
/// The elements, counted as an access until SafeArrayUnaccessData. E_INVALIDARG for a null array or null `data`,
/// E_UNEXPECTED for more than 65535 accesses at the same time.
QMV_EXPORT HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) noexcept;
/// Ends one access. E_UNEXPECTED when no access has begun.
QMV_EXPORT HRESULT SafeArrayUnaccessData(SAFEARRAY* array) noexcept;
}
