#pragma once

#include "interface/ErrorCodes.h"
#include "platform/Automation.h"

namespace qmv40 {

/// The texts with which an operation reports a failure. An operation that describes its steps sets the description
/// before each of them, so that a failure is reported with the step in which it occurred.
struct ErrorContext {
    const wchar_t* source; ///< class and operation joined by two colons
    const wchar_t* description = L"Unspecified";
    const wchar_t* helpFile = L"Unspecified";
    DWORD helpContext = 0;
};

/// Fills the calling thread's error record and throws `code` as an HRESULT. No code outside this file throws codes. If
/// the record cannot be created or set, the failure code of that step is thrown instead.
[[noreturn]] void RaiseError(HRESULT code, const ErrorContext& context);

/// The same, with these two texts, an empty help file and the help context 0 in the record.
[[noreturn]] void RaiseError(HRESULT code, const wchar_t* source, const wchar_t* description);

/// Throws `code`, whose error record is set already, out of an interface method. `returnAddress` is in the calling
/// program: the exception is of the kind that this program can catch. At this moment the method and this function must
/// have no object with a destructor, because one kind of exception leaves functions without calling destructors.
[[noreturn]] void ThrowRecordedCode(HRESULT code, const void* returnAddress);

/// Raises the code of a platform call that failed; does nothing if it succeeded.
inline void RaiseIfFailed(HRESULT result, const ErrorContext& context) {
    if (FAILED(result)) RaiseError(result, context);
}

} // namespace qmv40
