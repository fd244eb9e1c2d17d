#pragma once

#include "maths/fit/CircleObjective.h"
#include "maths/fit/PrincipalAxes.h"

// Initial guesses for the solver. The base of the points must be their mean. Each guess takes one pass over the points,
// and is nothing when its radius is beyond `straightRadius`: then the points cannot be distinguished from a straight
// line.

namespace qmv40::fit {

/// Taubin's algebraic circle (G. Taubin, IEEE PAMI 13, 1991) in the plane through the mean that the unit vectors
/// `first` and `second` span. Unlike Kasa's algebraic circle it is not biased towards small radii on short arcs.
std::optional<ApexCircle> TaubinCircle(const CMaVector& first, const CMaVector& second, const ScaledPoints& points,
                                       double straightRadius);

/// A flat arc along the axis of largest spread, with the curvature of the least-squares parabola through the points,
/// but with a radius of at least 10. It fits better than a straight line. Also nothing when that parabola is a straight
/// line.
std::optional<ApexCircle> FlatArc(const PrincipalAxes& axes, const ScaledPoints& points, double straightRadius);

} // namespace qmv40::fit
