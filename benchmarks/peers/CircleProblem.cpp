#include "benchmarks/peers/CircleProblem.h"

#include <cmath>

CircleProblem::CircleProblem(const std::vector<Points::Point>& points) {
    const Eigen::Map<const Eigen::Matrix3Xd> given(&points.front().x, 3, static_cast<Eigen::Index>(points.size()));
    mean = given.rowwise().mean();
    local = given.colwise() - mean;
    const Eigen::Matrix3d covariance = local * local.transpose();
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> axes(covariance);
    frame << axes.eigenvectors().col(2), axes.eigenvectors().col(1), axes.eigenvectors().col(0);
    local = frame.transpose() * local;
}

CircleProblem::Unknowns CircleProblem::Start() const {
    // The algebraic circle: u^2 + v^2 = 2 a u + 2 b v + c in least squares, with the centre (a, b). The sums of u and
    // of v are zero, so c is the mean of u^2 + v^2.
    const auto u = local.row(0).array(), v = local.row(1).array();
    const auto squares = u.square() + v.square();
    Eigen::Matrix2d normal;
    normal << u.square().sum(), (u * v).sum(), (u * v).sum(), v.square().sum();
    const Eigen::Vector2d rightSide(0.5 * (u * squares).sum(), 0.5 * (v * squares).sum());
    const Eigen::Vector2d centre = normal.inverse() * rightSide;
    Unknowns start;
    start << centre, 0.0, 0.0, 0.0, std::sqrt(squares.mean() + centre.squaredNorm());
    return start;
}

PeerCircle CircleProblem::ToCaller(const Unknowns& unknowns) const {
    const Eigen::Vector3d centre = mean + frame * unknowns.head<3>();
    const Eigen::Vector3d normal = (frame * Eigen::Vector3d(unknowns[3], unknowns[4], 1.0)).normalized();
    return {{centre[0], centre[1], centre[2]}, {normal[0], normal[1], normal[2]}, unknowns[5]};
}
