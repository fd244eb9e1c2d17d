#pragma once

#include "benchmarks/Points.h"

#include <memory>

/// The mean of points and the direction in which they spread most (a line's) or least (a plane's).
struct PeerAxis {
    double mean[3];
    double direction[3];
};
enum class Spread { Most, Least };

/// Eigen: eigenvectors of the covariance matrix.
PeerAxis AxisByCovariance(const std::vector<Points::Point>& points, Spread spread);
/// Eigen: QR decomposition of the centred points and singular values of its triangle.
PeerAxis AxisByQr(const std::vector<Points::Point>& points, Spread spread);

/// The points in CGAL's own type, which its fits need.
class CgalPoints {
public:
    explicit CgalPoints(const std::vector<Points::Point>& points);
    PeerAxis FitLine() const;
    PeerAxis FitPlane() const;

private:
    struct List;
    std::shared_ptr<const List> list;
};
