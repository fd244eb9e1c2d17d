#pragma once

#include "maths/CMaVector.h"

namespace qmv40 {

/// The vector of length 1 along `v`, which is neither zero nor so small or large that 1 / its length overflows.
inline CMaVector Unit(const CMaVector& v) noexcept { return v * (1.0 / v.Magnitude()); }

} // namespace qmv40
