#include "benchmarks/peers/CircleProblem.h"

#include <unsupported/Eigen/NonLinearOptimization>

namespace {

/// Two residuals for each point: its distance from the plane, and from the axis less the radius.
class Residuals {
public:
    explicit Residuals(const CircleProblem& theProblem) : points(theProblem.local) {}

    int inputs() const { return 6; }
    int values() const { return static_cast<int>(2 * points.cols()); }

    int operator()(const Eigen::VectorXd& unknowns, Eigen::VectorXd& residuals) const {
        const Circle circle(unknowns);
        for (Eigen::Index i = 0; i < points.cols(); ++i) {
            const Eigen::Vector3d arm = points.col(i) - circle.centre;
            const double height = arm.dot(circle.normal);
            residuals[2 * i] = height;
            residuals[2 * i + 1] = (arm - height * circle.normal).norm() - circle.radius;
        }
        return 0;
    }

    int df(const Eigen::VectorXd& unknowns, Eigen::MatrixXd& jacobian) const {
        const Circle circle(unknowns);
        for (Eigen::Index i = 0; i < points.cols(); ++i) {
            const Eigen::Vector3d arm = points.col(i) - circle.centre;
            const double height = arm.dot(circle.normal);
            const Eigen::Vector3d outward = (arm - height * circle.normal).normalized();
            const double rho = (arm - height * circle.normal).norm();
            const Eigen::RowVector2d byTilt(arm.dot(circle.normalByTilt[0]), arm.dot(circle.normalByTilt[1]));
            jacobian.row(2 * i) << -circle.normal.transpose(), byTilt, 0.0;
            jacobian.row(2 * i + 1) << -outward.transpose(), byTilt * (-height / rho), -1.0;
        }
        return 0;
    }

private:
    struct Circle {
        explicit Circle(const Eigen::VectorXd& unknowns) : centre(unknowns.head<3>()), radius(unknowns[5]) {
            const Eigen::Vector3d along(unknowns[3], unknowns[4], 1.0);
            normal = along.normalized();
            for (int i = 0; i < 2; ++i)
                normalByTilt[i] = (Eigen::Vector3d::Unit(i) - normal * normal[i]) / along.norm();
        }
        Eigen::Vector3d centre;
        double radius;
        Eigen::Vector3d normal;
        Eigen::Vector3d normalByTilt[2];
    };

    const Eigen::Matrix3Xd& points;
};

} // namespace

PeerCircle FitCircleWithMinpack(const std::vector<Points::Point>& points, double tolerance) {
    const CircleProblem problem(points);
    Residuals residuals(problem);
    Eigen::LevenbergMarquardt<Residuals> minimiser(residuals);
    Eigen::VectorXd unknowns = problem.Start();
    minimiser.parameters.ftol = tolerance;
    minimiser.parameters.xtol = tolerance;
    minimiser.minimize(unknowns);
    return problem.ToCaller(unknowns);
}
