#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// Two C++ compilers need not agree on what an exception is. On Windows there are two kinds: the one of GCC, in which
/// this component is built, and the platform's own, which all other compilers there use. Neither's `catch` sees the
/// other's exceptions, not even as `catch (...)`.

/// Raises `code` as the platform's own kind of exception, which such a caller catches as a `long` or HRESULT, when the
/// program that has its code at `returnAddress` was not linked by GNU ld. Else it returns, and the caller of this
/// function throws. Elsewhere than on Windows there is one kind, and it always returns.
///
/// The exception passes through the frames of this component without destroying anything in them. So nothing between
/// the interface method and this call may have anything to clean up.
void RaiseForCallerOfPlatformsKind(HRESULT code, const void* returnAddress);

} // namespace qmv40
