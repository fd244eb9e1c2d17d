#pragma once

#include "benchmarks/Points.h"

/// The least-squares circle in space by general minimisers. Each begins with the start that its user would write: the
/// plane of the covariance matrix and an algebraic circle in it.

struct PeerCircle {
    double centre[3];
    double normal[3];
    double radius;
};

/// The relative change of the unknowns and of the sum of squares at which a minimiser stops. Our fit stops at rounding
/// level. With that limit the peers find most of the certified circles (34 and 28 of 39; 32 and 10 with MINPACK's own
/// tolerance).
inline constexpr double atRoundingLevel = 1e-15;
inline constexpr double minpacksOwn = 1.49e-8;

/// Eigen's port of MINPACK's Levenberg-Marquardt, with the Jacobian written out.
PeerCircle FitCircleWithMinpack(const std::vector<Points::Point>& points, double tolerance);

/// Ceres, one residual block for each point, with automatic derivatives.
PeerCircle FitCircleWithCeres(const std::vector<Points::Point>& points, double tolerance);
