#pragma once

#include "maths/fit/CircleObjective.h"

namespace qmv40::fit {

/// The sagitta of an arc (its height above the chord) times its radius, in the scaled unit of ScaledPoints.
///
/// A chord of length c on a circle of radius r has the sagitta c^2 / (8 r), if the arc is short. The largest extent of
/// scaled points is 2 to 4 units along an axis, hence c is 2 to 7 units and the sagitta times r is 0.5 to 6. Only the
/// order of magnitude is needed.
constexpr double sagittaTimesRadius = 1.0;

struct SolverLimits {
    double straightRadius; ///< beyond it the sagitta is smaller than four roundings of a coordinate
    long evaluationsLeft;  ///< of the objective; each reads the points once or twice
};

/// A bound of the rounding error of `value`, which is half a sum of squares: the roundings of the coordinates and those
/// of the arithmetic.
double RoundingOf(double value, const ScaledPoints& points) noexcept;

struct SolvedCircle {
    ApexCircle circle;
    double value; ///< half the sum of squared distances

    /// The root mean square distance of the points from the circle, divided by the sagitta of the arc.
    double NoiseOverSagitta(const ScaledPoints& points) const noexcept;
};

/// Minimises the objective, from the initial guess to the nearest local minimum. Returns nothing when the circle
/// degenerates to a straight line. Throws GeometryError (LimitReached) when no evaluations are left.
std::optional<SolvedCircle> Solve(const ScaledPoints& points, const ApexCircle& initialGuess, SolverLimits& limits);

} // namespace qmv40::fit
