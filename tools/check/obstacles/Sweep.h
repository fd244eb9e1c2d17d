#pragma once

#include "tools/check/obstacles/Solid.h"

#include <functional>
#include <limits>

/// How close a moving part comes to something that stands around, with a proof: the number is a lower bound.
///
/// A part is a rod with round ends (or a ball). Over a stretch of the move its axis lies near the area between its
/// places at both ends of the stretch: two triangles. How far it can lie off them is bounded, by how much the paths of
/// its ends bend and by how much the axis turns. The distance from the triangles to the solid, less that bound, is what
/// the part keeps in the stretch at least. The stretch with the smallest bound is divided until the bound is within
/// `clearanceTolerance` of the truth.

namespace qmv40::check::obstacles {

inline constexpr double clearanceTolerance = 0.01; ///< mm

/// Where the axis of a part is.
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

/// What the part keeps clear of the solid, mm: never more than the truth, and less than it by `clearanceTolerance` at
/// most. Negative where they meet: by the part's radius at least. A clearance of `enough` or more is not worked out:
/// what is returned is then proven, and no less than `enough`.
double ClearanceOf(const MovingPart& part, const Solid& solid, double enough = std::numeric_limits<double>::infinity());

} // namespace qmv40::check::obstacles
