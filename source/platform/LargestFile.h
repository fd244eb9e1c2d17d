#pragma once

#include <cstddef>

namespace qmv40 {

/// Larger files are neither read nor changed: no profile or settings file is so large.
inline constexpr std::size_t largestFile = 16U << 20;

} // namespace qmv40
