#pragma once

/// What the checker takes for equal. A plan computed from the same geometry file agrees to about 1e-9 mm; these leave
/// room for one that was typed from the four decimals of a printed table, and stay below what a measuring machine can
/// tell.

namespace qmv40::model {

inline constexpr double lengthTolerance = 0.001; ///< mm
/// 0.0006 mm at the 36 mm of the widest arc.
inline constexpr double angleTolerance = 0.001; ///< degrees
/// Of a rotation vector's length, which is 1: six printed decimals.
inline constexpr double unitTolerance = 1e-5;

} // namespace qmv40::model
