// The plane and line fits beside the usual methods for a principal direction: the fast one by the covariance matrix,
// the accurate one by QR, and CGAL's.

#include "benchmarks/Points.h"
#include "benchmarks/Subjects.h"
#include "benchmarks/Verify.h"
#include "benchmarks/peers/AxesPeers.h"
#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"

#include <cmath>
#include <memory>

namespace {

/// All answers agree to this, in millimetres and radians: the accuracy that is left after squaring the coordinates.
constexpr double sameWithin = 1e-9;

CMaPlane FittedPlane(const CMaPointArray& points) {
    CMaPlane plane;
    plane.Fit(points);
    return plane;
}

CMaLine FittedLine(const CMaPointArray& points) {
    CMaLine line;
    line.Fit(points);
    return line;
}

CMaVector DirectionOf(const PeerAxis& axis) { return {axis.direction[0], axis.direction[1], axis.direction[2]}; }

/// Sine of the angle between two directions; opposite directions count as equal.
double Apart(const CMaVector& a, const CMaVector& b) { return (a * b).Magnitude() / a.Magnitude() / b.Magnitude(); }

void VerifyPeer(const CMaPoint& mean, const CMaVector& direction, const PeerAxis& peer, const std::string& what) {
    const double off = std::hypot(mean.x() - peer.mean[0], mean.y() - peer.mean[1], mean.z() - peer.mean[2]);
    const double turned = Apart(direction, DirectionOf(peer));
    Verify(off < sameWithin && turned < sameWithin,
           what + ": " + std::to_string(off) + " mm and " + std::to_string(turned) + " rad apart");
}

struct Inputs {
    Points points;
    CgalPoints cgal;

    explicit Inputs(Points thePoints) : points(std::move(thePoints)), cgal(points.list) {}
};

void AddRows(Suite& suite, const std::string& shape, const std::string& size, bool hasTarget) {
    const std::string ours = shape + " ours " + size;
    const std::optional<Limit> limit = hasTarget ? std::optional(Limit{1.0, "<= 1"}) : std::nullopt;
    suite.Compare(shape, size, ours, "Eigen covariance", shape + " covariance " + size, limit);
    suite.Compare(shape, size, ours, "Eigen QR", shape + " qr " + size);
    suite.Compare(shape, size, ours, "CGAL", shape + " cgal " + size);
}

void AddPlane(Suite& suite, std::size_t count, const std::string& size) {
    const auto inputs = std::make_shared<const Inputs>(ArcOf90Degrees(count));
    const auto& list = inputs->points.list;
    const CMaPlane ours = FittedPlane(inputs->points.array);
    for (const PeerAxis& peer :
         {AxisByCovariance(list, Spread::Least), AxisByQr(list, Spread::Least), inputs->cgal.FitPlane()})
        VerifyPeer(ours.GetPoint(), ours.GetNormal(), peer, "plane through " + size);
    suite.Time("plane ours " + size, [inputs] { benchmark::DoNotOptimize(FittedPlane(inputs->points.array)); });
    suite.Time("plane covariance " + size,
               [inputs] { benchmark::DoNotOptimize(AxisByCovariance(inputs->points.list, Spread::Least)); });
    suite.Time("plane qr " + size,
               [inputs] { benchmark::DoNotOptimize(AxisByQr(inputs->points.list, Spread::Least)); });
    suite.Time("plane cgal " + size, [inputs] { benchmark::DoNotOptimize(inputs->cgal.FitPlane()); });
}

void AddLine(Suite& suite, std::size_t count, const std::string& size) {
    const auto inputs = std::make_shared<const Inputs>(StraightLine(count));
    const auto& list = inputs->points.list;
    const CMaLine ours = FittedLine(inputs->points.array);
    for (const PeerAxis& peer :
         {AxisByCovariance(list, Spread::Most), AxisByQr(list, Spread::Most), inputs->cgal.FitLine()})
        VerifyPeer(ours.GetPoint(), ours.GetDirection(), peer, "line through " + size);
    suite.Time("line ours " + size, [inputs] { benchmark::DoNotOptimize(FittedLine(inputs->points.array)); });
    suite.Time("line covariance " + size,
               [inputs] { benchmark::DoNotOptimize(AxisByCovariance(inputs->points.list, Spread::Most)); });
    suite.Time("line qr " + size, [inputs] { benchmark::DoNotOptimize(AxisByQr(inputs->points.list, Spread::Most)); });
    suite.Time("line cgal " + size, [inputs] { benchmark::DoNotOptimize(inputs->cgal.FitLine()); });
}

/// A strip 10 000 times as long as wide, whose normal is (1, 2, 2) / 3 to the last bit: its coordinates are exact.
Points NarrowStrip() {
    Points strip{{}, CMaPointArray(0)};
    for (int along = -500; along <= 500; ++along)
        for (const double side : {-0.0625, 0.0625}) {
            const Points::Point point{2.0 * along + 2.0 * side, along - 2.0 * side, -2.0 * along + side};
            strip.list.push_back(point);
            strip.array.Add(CMaPoint(point.x, point.y, point.z));
        }
    return strip;
}

/// The loss of accuracy of the fast method: the covariance matrix squares the proportions of the strip.
void AddAccuracy(Suite& suite) {
    const Points strip = NarrowStrip();
    const CMaVector normal(1.0, 2.0, 2.0);
    const double ours = Apart(FittedPlane(strip.array).GetNormal(), normal);
    const double byQr = Apart(DirectionOf(AxisByQr(strip.list, Spread::Least)), normal);
    const double byCovariance = Apart(DirectionOf(AxisByCovariance(strip.list, Spread::Least)), normal);
    const std::string subject = "plane: error of the normal", size = "strip 1 : 10 000";
    suite.Compare(subject, size, "rad", ours, "Eigen QR", byQr);
    suite.Compare(subject, size, "rad", ours, "Eigen covariance", byCovariance);
}

} // namespace

void AddPlaneAndLine(Suite& suite) {
    constexpr std::size_t million = 1000000;
    for (const std::size_t count : {std::size_t{8}, std::size_t{40}, std::size_t{1000}, million}) {
        if (count == million && !suite.IsLarge()) continue;
        const std::string size = Grouped(count) + " points";
        AddPlane(suite, count, size);
        AddRows(suite, "plane", size, count == 40);
        AddLine(suite, count, size);
        AddRows(suite, "line", size, count == 40);
    }
    AddAccuracy(suite);
}
