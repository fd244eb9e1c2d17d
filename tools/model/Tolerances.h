#pragma once

/// The differences that the checker ignores. A plan that is computed from the same geometry file agrees to about 1e-9
/// mm. These tolerances also accept a plan that was typed from the four decimals of a printed table. They are
/// smaller than the errors of a measuring machine.

namespace qmv40::model {

inline constexpr double lengthTolerance = 0.001; ///< mm
/// 0.0006 mm at a radius of 36 mm, the widest arc.
inline constexpr double angleTolerance = 0.001; ///< degrees
/// Of the length of a rotation vector, which is 1: six printed decimals.
inline constexpr double unitTolerance = 1e-5;

} // namespace qmv40::model
