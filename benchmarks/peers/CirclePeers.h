#pragma once

#include "benchmarks/Points.h"

/// The least-squares circle in space by general minimisers, each from the same kind of start that a user of it would
/// write: the plane of the covariance matrix and an algebraic circle in it.

struct PeerCircle {
    double centre[3];
    double normal[3];
    double radius;
};

/// When a minimiser stops: by the relative change of the unknowns and of the sum of squares.
/// At rounding level is where our fit stops, and where theirs meet the most of the certified circles (34 and 28 of 39;
/// 32 and 10 at MINPACK's own tolerance).
inline constexpr double atRoundingLevel = 1e-15;
inline constexpr double minpacksOwn = 1.49e-8;

/// Eigen's port of MINPACK's Levenberg-Marquardt, with the Jacobian written out.
PeerCircle FitCircleWithMinpack(const std::vector<Points::Point>& points, double tolerance);

/// Ceres, one residual block for each point, derivatives by itself.
PeerCircle FitCircleWithCeres(const std::vector<Points::Point>& points, double tolerance);
