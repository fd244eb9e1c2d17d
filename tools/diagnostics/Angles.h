#pragma once

#include <cmath>
#include <numbers>

namespace diagnostics {

inline double ToRadians(double degrees) { return degrees * (std::numbers::pi / 180.0); }
inline double ToDegrees(double radians) { return radians * (180.0 / std::numbers::pi); }

/// The same direction, in degrees from -180 to 180.
inline double Wrapped(double degrees) { return std::remainder(degrees, 360.0); }

} // namespace diagnostics
