#pragma once

#include "tests/maths/DoubleDouble.h"
#include "tests/maths/GeometryChecks.h"

/// Vectors with 32 digits.
using ExactVector = std::array<DoubleDouble, 3>;

inline DoubleDouble Dot(const ExactVector& a, const ExactVector& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
inline ExactVector Scaled(const ExactVector& a, DoubleDouble f) { return {a[0] * f, a[1] * f, a[2] * f}; }
inline ExactVector Plus(const ExactVector& a, const ExactVector& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }
inline ExactVector Minus(const ExactVector& a, const ExactVector& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
inline ExactVector Cross(const ExactVector& a, const ExactVector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
inline ExactVector UnitAlong(const ExactVector& a) { return Scaled(a, DoubleDouble(1.0) / Sqrt(Dot(a, a))); }
/// The component of `a` perpendicular to the unit vector `n`.
inline ExactVector Across(const ExactVector& a, const ExactVector& n) { return Minus(a, Scaled(n, Dot(a, n))); }
inline double Norm(const ExactVector& a) { return static_cast<double>(Sqrt(Dot(a, a))); }

inline std::vector<ExactVector> Exactly(const std::vector<Coordinates>& points) {
    std::vector<ExactVector> exact;
    for (const auto& [x, y, z] : points) exact.push_back({x, y, z});
    return exact;
}

/// The points with each coordinate changed at random by up to half a unit in its last place.
inline std::vector<ExactVector> RoundedAtRandom(std::vector<ExactVector> points, std::mt19937_64& random) {
    std::uniform_real_distribution<double> half(-0.5, 0.5);
    for (ExactVector& p : points)
        for (DoubleDouble& coordinate : p) {
            const double value = std::fabs(static_cast<double>(coordinate));
            coordinate += half(random) * (std::nextafter(value, 2.0 * value + 1.0) - value);
        }
    return points;
}
