// The plane and line fits beside the usual methods for a principal direction: the fast one by the covariance matrix,
// the accurate one by QR, and CGAL's.

#include "benchmarks/Points.h"
#include "benchmarks/Subjects.h"
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

PeerAxis AxisOf(const CMaPoint& mean, const CMaVector& direction) {
    return {{mean.x(), mean.y(), mean.z()}, {direction[0], direction[1], direction[2]}};
}

void VerifyPeer(const PeerAxis& ours, const PeerAxis& peers, const std::string& what) {
    const double off =
        std::hypot(ours.mean[0] - peers.mean[0], ours.mean[1] - peers.mean[1], ours.mean[2] - peers.mean[2]);
    const double turned = Apart(DirectionOf(ours), DirectionOf(peers));
    Verify(off < sameWithin && turned < sameWithin,
           what + ": " + std::to_string(off) + " mm and " + std::to_string(turned) + " rad apart");
}

struct Inputs {
    Points points;
    CgalPoints cgal;

    explicit Inputs(Points thePoints) : points(std::move(thePoints)), cgal(points.list) {}
};

/// Times our fit of a shape and those of the peers. `fit` is ours, `fitWithCgal` CGAL's; `ours` is our answer.
template <typename Fit> void AddShape(Suite& suite, const std::string& shape,
                                      const std::shared_ptr<const Inputs>& inputs, Fit fit, const PeerAxis& ours,
                                      Spread spread, PeerAxis (CgalPoints::*fitWithCgal)() const) {
    const std::string size = Grouped(inputs->points.list.size()) + " points";
    suite.Time(shape + " ours " + size, [=] { benchmark::DoNotOptimize(fit(inputs->points.array)); });
    const auto against = [&](const std::string& peer, auto peersFit, std::optional<Limit> limit) {
        VerifyPeer(ours, peersFit(), shape + " through " + size + " by " + peer);
        suite.Against(
            shape, size, peer, [=] { benchmark::DoNotOptimize(peersFit()); }, std::move(limit));
    };
    const bool hasTarget = inputs->points.list.size() == 40;
    against(
        "Eigen covariance", [=] { return AxisByCovariance(inputs->points.list, spread); },
        hasTarget ? std::optional(Limit{1.0, "<= 1"}) : std::nullopt);
    against(
        "Eigen QR", [=] { return AxisByQr(inputs->points.list, spread); }, std::nullopt);
    against(
        "CGAL", [=] { return (inputs->cgal.*fitWithCgal)(); }, std::nullopt);
}

/// A strip 3000 mm long and 0.375 mm wide with the normal (1, 2, 2) / 3. The coordinates are exact in binary, so the
/// points have exactly this normal.
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
    const std::string subject = "plane: error of the normal", size = "strip 1 : 8 000";
    suite.Compare(subject, size, "rad", ours, "Eigen QR", byQr);
    suite.Compare(subject, size, "rad", ours, "Eigen covariance", byCovariance);
}

} // namespace

void AddPlaneAndLine(Suite& suite) {
    constexpr std::size_t million = 1000000;
    for (const std::size_t count : {std::size_t{8}, std::size_t{40}, std::size_t{1000}, million}) {
        if (count == million && !suite.IsLarge()) continue;
        const auto arc = std::make_shared<const Inputs>(ArcOf90Degrees(count));
        const CMaPlane plane = FittedPlane(arc->points.array);
        AddShape(suite, "plane", arc, FittedPlane, AxisOf(plane.GetPoint(), plane.GetNormal()), Spread::Least,
                 &CgalPoints::FitPlane);
        const auto straight = std::make_shared<const Inputs>(StraightLine(count));
        const CMaLine line = FittedLine(straight->points.array);
        AddShape(suite, "line", straight, FittedLine, AxisOf(line.GetPoint(), line.GetDirection()), Spread::Most,
                 &CgalPoints::FitLine);
    }
    AddAccuracy(suite);
}
