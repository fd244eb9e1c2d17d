#pragma once

namespace qmv40 {

/// The head angles that can be reached: A from 0 to 90 degrees, B from -180 to 180, both in steps of 15.

/// Raises QMV_E_INVALID_TARGET, saying which angle and why, unless both angles can be reached. Bounds are inclusive;
/// the step is tested exactly, without a tolerance. An angle that is not a number is refused.
void ValidateMoveTarget(double a, double b);

/// `angle` rounded to a whole degree, halves away from zero. A value beyond 32-bit integers, or not a number, gives
/// -2147483648.0, which is outside both ranges.
double RoundToWholeDegree(double angle) noexcept;

} // namespace qmv40
