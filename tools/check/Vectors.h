#pragma once

#include "interface/Records.h"
#include "maths/CMaVector.h"

#include <cmath>
#include <numbers>

/// The little vector arithmetic of the checker. Coordinates are a machine's: nothing is done for huge or tiny ones.

namespace check {

constexpr double RadiansOf(double degrees) { return degrees * std::numbers::pi / 180.0; }
constexpr double DegreesOf(double radians) { return radians * 180.0 / std::numbers::pi; }

inline CMaVector VectorOf(const XYZData& position) {
    return {position.XPosition, position.YPosition, position.ZPosition};
}

inline CMaVector Way(const CMaVector& from, const CMaVector& to) { return to + from * -1.0; }

inline double Length(const CMaVector& vector) { return std::sqrt(vector % vector); }

inline double Distance(const CMaVector& left, const CMaVector& right) { return Length(Way(left, right)); }

inline CMaVector UnitOf(const CMaVector& vector) { return vector * (1.0 / Length(vector)); }

/// What is left of `vector` without its share along the unit vector `direction`.
inline CMaVector Across(const CMaVector& vector, const CMaVector& direction) {
    return vector + direction * -(vector % direction);
}

/// Turned right-handed about the vertical: a positive angle takes X towards Y.
inline CMaVector TurnedAboutZ(const CMaVector& vector, double degrees) {
    const double c = std::cos(RadiansOf(degrees));
    const double s = std::sin(RadiansOf(degrees));
    return {vector[0] * c - vector[1] * s, vector[0] * s + vector[1] * c, vector[2]};
}

/// The angle between two directions, degrees, 0 to 180; exact also where they are nearly parallel.
inline double AngleBetween(const CMaVector& left, const CMaVector& right) {
    return DegreesOf(std::atan2(Length(left * right), left % right));
}

} // namespace check
