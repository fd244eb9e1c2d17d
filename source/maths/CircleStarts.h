#pragma once

#include "maths/CircleExpansion.h"
#include "maths/PrincipalAxes.h"

// Circles to start a fit from. Each reads the points, which are about their mean, once. Nothing when the circle is not
// to be told from a straight line: when its radius is beyond `straightRadius`.

/// Taubin's algebraic circle in the plane through the mean that `first` and `second` span.
std::optional<ApexCircle> TaubinCircle(const CMaVector& first, const CMaVector& second, const ScaledPoints& points,
                                       double straightRadius);

/// A flat arc along the direction of most spread, bent to the side to which the points are: it fits better than a
/// straight line. Nothing, too, when the points are bent to no side.
std::optional<ApexCircle> FlatArc(const PrincipalAxes& axes, const ScaledPoints& points, double straightRadius);
