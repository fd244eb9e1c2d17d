#pragma once

#include "errors/ErrorContext.h"
#include "interface/ErrorCodes.h"

namespace qmv40 {

/// Fills the calling thread's error record and throws `code` alone, as an HRESULT. Only this file throws codes. When
/// the record cannot be made or set, the failure code of that step is thrown instead.
[[noreturn]] void RaiseError(HRESULT code, const wchar_t* source, const wchar_t* description, const wchar_t* helpFile,
                             DWORD helpContext);

/// Raises one of the component's fixed errors: these carry an empty help file.
[[noreturn]] void RaiseError(HRESULT code, const wchar_t* source, const wchar_t* description);

/// Passes on a failure code with the context as it stands: these carry the context's help file, "Unspecified".
[[noreturn]] void RaiseError(HRESULT code, const ErrorContext& context);

/// Throws `code`, whose error record is set already, out of an interface method. The program that called the method has
/// its code at `returnAddress` and gets the kind of exception that it can catch. The method and this function must have
/// nothing to clean up at this moment: some callers' exceptions leave their frames without a destructor being called.
[[noreturn]] void ThrowRecordedCode(HRESULT code, const void* returnAddress);

/// Raises the failure code of a platform call; a success passes.
inline void RaiseIfFailed(HRESULT result, const ErrorContext& context) {
    if (FAILED(result)) RaiseError(result, context);
}

} // namespace qmv40
