#pragma once

#include "platform/portable/Types.h"

/// Length-prefixed wide text. A null BSTR is the empty text. Whoever gets one from a function frees it; a function that
/// is given one does not.
using BSTR = OLECHAR*;

extern "C" {
/// A copy of `text`; null when `text` is null or memory is exhausted.
QMV_EXPORT BSTR SysAllocString(const OLECHAR* text) noexcept;
/// A copy of the first `length` characters (or `length` undefined ones when `text` is null), terminated.
QMV_EXPORT BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept;
QMV_EXPORT void SysFreeString(BSTR text) noexcept;
/// Length in characters, without the terminator; 0 for null.
QMV_EXPORT UINT SysStringLen(BSTR text) noexcept;
}
