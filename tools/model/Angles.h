#pragma once

#include "tools/model/Vector3.h"

#include <cmath>
#include <numbers>

namespace qmv40::model {

constexpr double ToRadians(double degrees) { return degrees * std::numbers::pi / 180.0; }
constexpr double ToDegrees(double radians) { return radians * 180.0 / std::numbers::pi; }

/// The same direction, in degrees from -180 to 180.
inline double Wrapped(double degrees) { return std::remainder(degrees, 360.0); }

/// The angle between two directions, degrees, 0 to 180; exact also where they are nearly parallel.
inline double AngleBetween(const Vector3& left, const Vector3& right) {
    return ToDegrees(std::atan2(Length(Cross(left, right)), Dot(left, right)));
}

} // namespace qmv40::model
