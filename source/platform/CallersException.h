#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// Two C++ compilers need not agree on what an exception is. On Windows there are two kinds: the one of GCC, in which
/// this component is built, and the platform's own, which all other compilers there use. A `catch` of one kind does not
/// see exceptions of the other kind, not even as `catch (...)`.

/// Raises `code` as the platform's own kind of exception, which such a caller catches as a `long` or HRESULT, when the
/// program that has its code at `returnAddress` was not linked by GNU ld. Otherwise it returns, and the caller of this
/// function throws. On other systems there is one kind only, and it always returns.
///
/// The exception leaves the functions of this component without calling destructors. So no function between the
/// interface method and this call may have an object with a destructor at that moment.
void RaiseForCallerOfPlatformsKind(HRESULT code, const void* returnAddress);

} // namespace qmv40
