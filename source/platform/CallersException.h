#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// On Windows there are two kinds of C++ exceptions: those of GCC, which builds this component, and the platform's own,
/// which all other compilers use. A `catch` of one kind does not catch exceptions of the other kind, not even as `catch
/// (...)`.

/// If the module that contains `returnAddress` was not linked by GNU ld, raises `code` as the platform's own kind of
/// exception: the module's code catches it as a `long` or HRESULT. Otherwise it returns, and the caller of this
/// function throws. Other systems have one kind only: there it always returns.
///
/// The exception leaves the functions of this component without calling destructors. So no function between the
/// interface method and this call may have an object with a destructor at that moment.
#ifdef _WIN32
void RaiseForCallerOfPlatformsKind(HRESULT code, const void* returnAddress);
#else
inline void RaiseForCallerOfPlatformsKind(HRESULT /*code*/, const void* /*returnAddress*/) {}
#endif

} // namespace qmv40
