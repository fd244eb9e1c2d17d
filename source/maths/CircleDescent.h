#pragma once

#include "maths/CircleExpansion.h"

/// The points reach over 2 to 7 units, scaled as they are: about the height of a short arc, times its radius.
constexpr double heightTimesRadius = 1.0;

/// Where a descent has to stop.
struct DescentLimits {
    double straightRadius; ///< beyond it the arc's height is no more than the rounding of the coordinates
    long looksLeft;        ///< at the points
};

/// What the rounding of the coordinates, and of the arithmetic, can do to half a sum of squares.
double RoundingOf(double value, const ScaledPoints& points) noexcept;

struct FoundCircle {
    ApexCircle circle;
    double value; ///< half the sum of squares

    /// How large the distances of the points are, relative to the height of the arc.
    double NoiseInHeight(const ScaledPoints& points) const noexcept;
};

/// From a start down to a minimum of the sum of squares. Nothing when the circle turns into a straight line; throws
/// GeometryError (LimitReached) when the looks are used up.
std::optional<FoundCircle> Descend(const ScaledPoints& points, const ApexCircle& start, DescentLimits& limits);
