#pragma once

#include "tools/check/obstacles/Solid.h"

#include <functional>
#include <limits>

/// A proven lower bound of the clearance between a moving part and an obstacle.
///
/// A part is a rod with round ends (or a ball). In an interval of the move its axis stays near the surface between its
/// places at both ends of the interval, which is taken as two triangles. How far the axis can leave them is bounded by
/// the curvature of its ends' paths and by its rotation. The distance from the triangles to the solid, less that bound
/// and the radius, is a lower bound of the clearance in the interval. The interval with the smallest bound is halved
/// until the bound is within `clearanceTolerance` of the true clearance.

namespace qmv40::check::obstacles {

inline constexpr double clearanceTolerance = 0.01; ///< mm

/// The ends of a part's axis.
struct Axis {
    model::Vector3 from;
    model::Vector3 to;
};

struct MovingPart {
    std::function<Axis(double fraction)> at; ///< fraction of the move, 0 to 1
    /// A bound of the second derivative of both ends by the fraction, mm: r * angle² (radians) for an arc.
    double bend;
    double radius;
};

/// A lower bound of the clearance, mm; the true value is larger by at most `clearanceTolerance`. When they meet it is
/// negative. A part that begins inside a closed mesh has minus its radius minus the depth of the beginning of its axis.
/// A clearance of `enough` or more is not computed exactly: the result is then a lower bound, and not less than
/// `enough`.
double ClearanceOf(const MovingPart& part, const Solid& solid, double enough = std::numeric_limits<double>::infinity());

} // namespace qmv40::check::obstacles
