#include "benchmarks/peers/CircleProblem.h"

#include <ceres/ceres.h>

namespace {

/// The two residuals of one point, as in MinpackCircle.cpp: its distance from the plane, and from the axis less the
/// radius. For any number type, so that the derivatives are computed automatically.
struct DistanceFromCircle {
    template <typename T> bool operator()(const T* const unknowns, T* residuals) const {
        using Vector = Eigen::Matrix<T, 3, 1>;
        const Vector normal = Vector(unknowns[3], unknowns[4], T(1.0)).normalized();
        const Vector arm = point.cast<T>() - Vector(unknowns[0], unknowns[1], unknowns[2]);
        const T height = arm.dot(normal);
        residuals[0] = height;
        residuals[1] = (arm - normal * height).norm() - unknowns[5];
        return true;
    }
    Eigen::Vector3d point;
};

} // namespace

PeerCircle FitCircleWithCeres(const std::vector<Points::Point>& points, double tolerance) {
    const CircleProblem circle(points);
    CircleProblem::Unknowns unknowns = circle.Start();
    ceres::Problem problem;
    for (const auto& point : circle.local.colwise()) {
        using Cost = ceres::AutoDiffCostFunction<DistanceFromCircle, 2, 6>;
        auto functor = std::make_unique<DistanceFromCircle>(DistanceFromCircle{point});
        auto cost = std::make_unique<Cost>(functor.release());
        // The problem takes ownership.
        problem.AddResidualBlock(cost.release(), nullptr, unknowns.data());
    }
    ceres::Solver::Options options;
    options.linear_solver_type = ceres::DENSE_QR;
    options.num_threads = 1;
    options.logging_type = ceres::SILENT;
    options.function_tolerance = tolerance;
    options.parameter_tolerance = tolerance;
    options.gradient_tolerance = tolerance;
    ceres::Solver::Summary summary;
    ceres::Solve(options, &problem, &summary);
    return circle.ToCaller(unknowns);
}
