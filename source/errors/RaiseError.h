#pragma once

#include "errors/ErrorContext.h"
#include "interface/ErrorCodes.h"

/// Fills the calling thread's error record and throws `code`, and nothing but the code, as an HRESULT. This file is the
/// only place that throws one. When the record itself cannot be made or set, the failure code of that is thrown
/// instead.
[[noreturn]] void RaiseError(HRESULT code, const wchar_t* source, const wchar_t* description, const wchar_t* helpFile,
                             DWORD helpContext);

/// Raises one of the component's fixed errors: these carry an empty help file.
[[noreturn]] void RaiseError(HRESULT code, const wchar_t* source, const wchar_t* description);

/// Passes on a failure code with the context as it stands: these carry the context's help file, "Unspecified".
[[noreturn]] void RaiseError(HRESULT code, const ErrorContext& context);

/// Throws `code` on, its record set already: for an interface method that throws its failures. It and its caller have
/// nothing to clean up, because a caller in another apartment cannot be unwound to, and frames that try are not left in
/// one piece.
[[noreturn]] void ThrowRecordedCode(HRESULT code);

/// Raises the failure code of a platform call; a success passes.
inline void RaiseIfFailed(HRESULT result, const ErrorContext& context) {
    if (FAILED(result)) RaiseError(result, context);
}
