#pragma once

/// LateBinding<Base> adds late binding to the dual interface of `Base`, where the platform has late binding.
#ifdef _WIN32
#include "server/windows/LateBinding.h"
#else
/// Here dual interfaces have no methods of IDispatch, and IID_IDispatch is not supported.
namespace qmv40 {
template <typename Base> using LateBinding = Base;
} // namespace qmv40
#endif
