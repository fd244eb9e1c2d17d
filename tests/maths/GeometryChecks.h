#pragma once

#include "maths/CMaCircle.h"
#include "maths/CMaPointArray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>
#include <vector>

using Coordinates = std::array<double, 3>;

inline CMaPointArray ArrayOf(const std::vector<Coordinates>& points) {
    CMaPointArray array;
    for (const auto& [x, y, z] : points) array.Add(CMaPoint(x, y, z));
    return array;
}

inline CMaVector VectorOf(const Coordinates& p) { return {p[0], p[1], p[2]}; }
inline Coordinates CoordinatesOf(const CMaVector& v) { return {v[0], v[1], v[2]}; }
inline CMaVector Difference(const CMaVector& a, const CMaVector& b) { return a + b * -1.0; }

inline double Distance(const CMaVector& a, const CMaVector& b) { return Difference(a, b).Magnitude(); }
inline double Distance(const CMaPoint& a, const CMaPoint& b) { return Distance(a.To3DVector(), b.To3DVector()); }

/// The angle between two unit vectors in radians, if it is small. Opposite vectors count as equal.
inline double DirectionError(const CMaVector& a, const CMaVector& b) {
    return std::min(Distance(a, b), Distance(a, b * -1.0));
}

/// Whether the bits are equal: -0.0 and 0.0 differ. All not-a-numbers count as equal.
inline bool SameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b));
}

template <typename Action> testing::AssertionResult FailsWith(qmv40::GeometryError::Reason reason, Action&& action) {
    try {
        action();
    } catch (const qmv40::GeometryError& error) {
        if (error.GetReason() == reason) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "failed with the other GeometryError::Reason";
    }
    return testing::AssertionFailure() << "did not fail";
}

/// An orthonormal right-handed frame with random directions.
struct RandomFrame {
    explicit RandomFrame(std::mt19937_64& random) {
        std::normal_distribution<double> normal;
        const auto direction = [&] {
            const double x = normal(random), y = normal(random), z = normal(random);
            return CMaVector(x, y, z);
        };
        first = qmv40::Unit(direction());
        third = qmv40::Unit(first * direction());
        second = third * first;
    }

    Coordinates At(double u, double v, double w) const { return CoordinatesOf(first * u + second * v + third * w); }

    CMaVector first{1.0, 0.0, 0.0}, second{0.0, 1.0, 0.0}, third{0.0, 0.0, 1.0};
};
