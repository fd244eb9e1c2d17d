#pragma once

/// LateBinding<Base>: late binding for a dual interface, where the platform has it.
#ifdef _WIN32
#include "server/windows/LateBinding.h"
#else
/// There are no dispatch entries to fill here, and IID_IDispatch is not answered.
namespace qmv40 {
template <typename Base> using LateBinding = Base;
} // namespace qmv40
#endif
