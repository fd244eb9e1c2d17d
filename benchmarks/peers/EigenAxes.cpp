#include "benchmarks/peers/AxesPeers.h"

#include <Eigen/Dense>

namespace {

using Given = Eigen::Map<const Eigen::Matrix3Xd>;

Given PointsOf(const std::vector<Points::Point>& points) {
    return Given(&points.front().x, 3, static_cast<Eigen::Index>(points.size()));
}

PeerAxis Axis(const Eigen::Vector3d& mean, const Eigen::Vector3d& direction) {
    return {{mean[0], mean[1], mean[2]}, {direction[0], direction[1], direction[2]}};
}

} // namespace

PeerAxis AxisByCovariance(const std::vector<Points::Point>& points, Spread spread) {
    const Given given = PointsOf(points);
    const Eigen::Vector3d mean = given.rowwise().mean();
    const Eigen::Matrix3Xd centred = given.colwise() - mean;
    const Eigen::Matrix3d covariance = centred * centred.transpose();
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> axes(covariance);
    return Axis(mean, axes.eigenvectors().col(spread == Spread::Most ? 2 : 0));
}

PeerAxis AxisByQr(const std::vector<Points::Point>& points, Spread spread) {
    const Given given = PointsOf(points);
    const Eigen::Vector3d mean = given.rowwise().mean();
    Eigen::MatrixX3d centred = (given.colwise() - mean).transpose();
    const Eigen::HouseholderQR<Eigen::Ref<Eigen::MatrixX3d>> qr(centred);
    const Eigen::Matrix3d triangle = qr.matrixQR().topRows<3>().triangularView<Eigen::Upper>();
    const Eigen::JacobiSVD<Eigen::Matrix3d> axes(triangle, Eigen::ComputeFullV);
    return Axis(mean, axes.matrixV().col(spread == Spread::Most ? 0 : 2));
}
