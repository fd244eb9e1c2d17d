#include "benchmarks/peers/AxesPeers.h"

#include <CGAL/Simple_cartesian.h>
#include <CGAL/linear_least_squares_fitting_3.h>

namespace {

using Kernel = CGAL::Simple_cartesian<double>;

PeerAxis Axis(const Kernel::Point_3& mean, const Kernel::Vector_3& direction) {
    return {{mean.x(), mean.y(), mean.z()}, {direction.x(), direction.y(), direction.z()}};
}

} // namespace

struct CgalPoints::List {
    std::vector<Kernel::Point_3> points;
};

CgalPoints::CgalPoints(const std::vector<Points::Point>& points) {
    List made;
    for (const Points::Point& point : points) made.points.emplace_back(point.x, point.y, point.z);
    list = std::make_shared<const List>(std::move(made));
}

PeerAxis CgalPoints::FitLine() const {
    Kernel::Line_3 line;
    Kernel::Point_3 mean;
    CGAL::linear_least_squares_fitting_3(list->points.begin(), list->points.end(), line, mean,
                                         CGAL::Dimension_tag<0>());
    return Axis(mean, line.to_vector());
}

PeerAxis CgalPoints::FitPlane() const {
    Kernel::Plane_3 plane;
    Kernel::Point_3 mean;
    CGAL::linear_least_squares_fitting_3(list->points.begin(), list->points.end(), plane, mean,
                                         CGAL::Dimension_tag<0>());
    return Axis(mean, plane.orthogonal_vector());
}
