#pragma once

#include "benchmarks/peers/CirclePeers.h"

#include <Eigen/Dense>

/// The problem of both minimisers: the points relative to their mean, in the frame of their plane, and six unknowns
/// there: centre (3), tilts of the normal (2) and radius (1).
struct CircleProblem {
    using Unknowns = Eigen::Matrix<double, 6, 1>;

    explicit CircleProblem(const std::vector<Points::Point>& points);

    /// The algebraic circle in the plane.
    Unknowns Start() const;
    PeerCircle ToCaller(const Unknowns& unknowns) const;

    Eigen::Vector3d mean;
    Eigen::Matrix3d frame;  ///< columns: two directions in the plane and its normal
    Eigen::Matrix3Xd local; ///< the points in this frame
};
