// The circle fit beside two general minimisers on the same points, and beside the least that can be done with a million
// points: reading each once.

#include "benchmarks/Allocations.h"
#include "benchmarks/Points.h"
#include "benchmarks/Subjects.h"
#include "benchmarks/peers/CirclePeers.h"
#include "maths/CMaCircle.h"

#include <cmath>
#include <cstring>
#include <memory>
#include <span>

namespace {

constexpr long iterationLimit = 200000;

/// All answers agree to this, in millimetres.
constexpr double sameWithin = 1e-9;

CMaCircle Fitted(const Points& points) {
    CMaCircle circle(1.0);
    circle.Fit(points.array, iterationLimit);
    return circle;
}

void VerifyPeer(const Points& points, const PeerCircle& peer, const std::string& name) {
    const CMaCircle ours = Fitted(points);
    const CMaPoint centre = ours.GetCentre();
    const double off =
        std::hypot(centre.x() - peer.centre[0], centre.y() - peer.centre[1], centre.z() - peer.centre[2]);
    const double across = ours.GetNormal() % CMaVector(peer.normal[0], peer.normal[1], peer.normal[2]);
    const bool same = off < sameWithin && std::fabs(ours.GetRadius() - peer.radius) < sameWithin &&
                      std::fabs(std::fabs(across) - 1.0) < sameWithin / arcRadius;
    Verify(same, name + " on a circle through " + std::to_string(points.list.size()) +
                     " points: " + std::to_string(off) + " mm apart");
}

/// Adds all coordinates. The eight sums do not wait for each other, so that the time is that of reading the points.
double ReadOnce(std::span<const double> values) {
    using Pair [[gnu::vector_size(16)]] = double;
    constexpr std::size_t pairs = 8;
    Pair sums[pairs]{};
    std::size_t i = 0;
    for (; i + 2 * pairs <= values.size(); i += 2 * pairs)
        for (std::size_t k = 0; k < pairs; ++k) {
            Pair pair;
            std::memcpy(&pair, &values[i + 2 * k], sizeof pair);
            sums[k] += pair;
        }
    for (; i < values.size(); ++i) sums[0][0] += values[i];
    double total = 0.0;
    for (const Pair& sum : sums) total += sum[0] + sum[1];
    return total;
}

/// Memory beside the input, in copies of the points.
double CopiesHeld(const Points& points) {
    const Allocations allocations;
    const CMaCircle circle = Fitted(points);
    benchmark::DoNotOptimize(circle);
    const auto copy = static_cast<double>(points.list.size() * sizeof(Points::Point));
    return static_cast<double>(allocations.PeakBytes()) / copy;
}

} // namespace

void AddCircle(Suite& suite) {
    constexpr std::size_t million = 1000000;
    for (const std::size_t count : {std::size_t{8}, std::size_t{40}, std::size_t{1000}, million}) {
        if (count == million && !suite.IsLarge()) continue;
        const auto points = std::make_shared<const Points>(ArcOf90Degrees(count));
        const std::string size = Grouped(count) + " points";
        suite.Time("circle ours " + size, [points] { benchmark::DoNotOptimize(Fitted(*points)); });
        const auto against = [&](const std::string& peer, auto fit, double tolerance, std::optional<Limit> limit) {
            VerifyPeer(*points, fit(points->list, tolerance), peer);
            const auto work = [=] { benchmark::DoNotOptimize(fit(points->list, tolerance)); };
            suite.Against("circle", size, peer, work, std::move(limit));
        };
        const bool isCapture = count <= 40;
        against("Eigen MINPACK", FitCircleWithMinpack, atRoundingLevel,
                isCapture ? std::optional(Limit{1.0 / 3.5, "<= 1 / 3.5"}) : std::nullopt);
        against("Eigen MINPACK, 1.5e-8", FitCircleWithMinpack, minpacksOwn, std::nullopt);
        against("Ceres", FitCircleWithCeres, atRoundingLevel, std::nullopt);
        if (count != million) continue;
        const auto readOnce = [points] {
            for (const auto axis : {points->array.X(), points->array.Y(), points->array.Z()})
                benchmark::DoNotOptimize(ReadOnce(axis));
        };
        suite.Against("circle", size, "reading once", readOnce, Limit{12.0, "<= 12"});
        suite.Report("circle: memory beside the input", size, Known(CopiesHeld(*points), "copies"),
                     Limit{1.0, "<= 1 copy"});
    }
}
