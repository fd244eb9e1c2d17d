#include "tools/diagnosis/SetJudgement.h"

#include "tools/diagnosis/Thresholds.h"
#include "tools/diagnosis/fit/AxisCircle.h"
#include "tools/diagnosis/fit/HeadFit.h"
#include "tools/model/Angles.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <span>

namespace qmv40::diagnosis {

namespace {

using Points = std::span<const fit::CapturedPoint>;
using model::Vector3;

double MedianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// The median distance of the points from their centre. One point that is far off does not change it.
double ReachOf(Points points) {
    const auto median = [&](double Vector3::*axis) {
        std::vector<double> values;
        for (const fit::CapturedPoint& point : points) values.push_back(point.position.*axis);
        return MedianOf(std::move(values));
    };
    const Vector3 middle{median(&Vector3::x), median(&Vector3::y), median(&Vector3::z)};
    std::vector<double> distances;
    for (const fit::CapturedPoint& point : points) distances.push_back(model::SafeLength(point.position - middle));
    return MedianOf(std::move(distances));
}

/// The number of different positions, up to `most`. Positions closer than `within` count as one.
std::size_t DifferentPositions(Points points, double within, std::size_t most) {
    std::vector<Vector3> different;
    for (const fit::CapturedPoint& point : points) {
        const auto isNear = [&](const Vector3& each) { return model::SafeLength(point.position - each) <= within; };
        if (std::ranges::none_of(different, isNear)) different.push_back(point.position);
        if (different.size() == most) break;
    }
    return different.size();
}

std::size_t DifferentAngles(Points points, double fit::CapturedPoint::*angle) {
    std::set<double> angles;
    for (const fit::CapturedPoint& point : points) angles.insert(point.*angle);
    return angles.size();
}

/// One set, and the other set for comparison.
class Set {
public:
    Set(const fit::CapturedSets& sets, bool isOfASet)
        : isA(isOfASet), points(Of(sets, isOfASet)), others(Of(sets, !isOfASet)), reach(ReachOf(points)),
          otherReach(ReachOf(others)), first(isOfASet ? 0 : sets.aCount) {}

    void Judge(std::vector<Finding>& findings) const {
        constexpr std::size_t least = 3;
        // Neighbouring index positions on the widest circle are farther apart than this share of the reach.
        constexpr double samePlace = 0.02;
        if (IsSmall()) {
            if (const auto kind = WhySmall()) Add(*kind, reach, findings);
        } else if (const std::size_t count = DifferentPositions(points, samePlace * reach, least); count < least) {
            Add(FindingKind::TooFewPositions, static_cast<double>(count), findings);
        }
    }

    bool IsSmall() const { return !(reach >= SmallReach()) || !(reach > 0.0); }

private:
    static Points Of(const fit::CapturedSets& sets, bool isOfASet) {
        return isOfASet ? Points(sets.points).first(sets.aCount) : Points(sets.points).subspan(sets.aCount);
    }
    /// At A = 0, the tip of a straight stylus is off the B axis by some thousandths of the stylus length, and makes a
    /// circle as small as this.
    double SmallReach() const {
        const bool mayHang = !isA && std::abs(points.front().a) < hanging;
        return std::max((mayHang ? 0.06 : 0.03) * otherReach, 1e-9);
    }
    static constexpr double hanging = 10.0; ///< degrees

    /// Empty when the points form a good circle that is only far too small: the set may be in another unit.
    std::optional<FindingKind> WhySmall() const {
        const auto turned = isA ? &fit::CapturedPoint::a : &fit::CapturedPoint::b;
        if (DifferentAngles(points, turned) < 3) return FindingKind::TooFewPositions;
        if (!isA && std::abs(points.front().a) < hanging) return FindingKind::CircleTooSmall;
        if (IsACircle()) return std::nullopt;
        return AreWhereTheSphereIs() ? FindingKind::TipInForce : FindingKind::TooFewPositions;
    }
    bool IsACircle() const {
        // The radius of an arc of 40 degrees is not more than `widest` times its reach. Noise in one place gives a wide
        // circle or a poor fit.
        constexpr double clearly = 0.03, widest = 6.0;
        const auto circle = fit::FitAxisCircle(fit::PositionsOf(points));
        return circle && circle->Rms() < clearly * circle->radius && circle->radius < widest * reach;
    }
    /// With a tip offset in force, every point is at the place of the sphere, and both axes pass through it.
    bool AreWhereTheSphereIs() const {
        const auto circle = fit::FitAxisCircle(fit::PositionsOf(others));
        if (!circle) return false;
        // Unless the stylus points sideways, the B circle lies above the sphere.
        const double above = isA ? circle->radius / std::tan(model::ToRadians(others.front().a)) : 0.0;
        const Vector3 sphere = circle->centre - Vector3{0.0, 0.0, above};
        constexpr double near = 0.2;
        return model::SafeLength(fit::MeanPosition(points) - sphere) < near * circle->radius;
    }
    void Add(FindingKind kind, double figure, std::vector<Finding>& findings) const {
        Finding finding{kind, Severity::Fault, std::vector<std::size_t>(points.size()), figure};
        std::iota(finding.points.begin(), finding.points.end(), first);
        finding.detail = kind == FindingKind::TipInForce ? 1 : 0;
        if (kind == FindingKind::TooFewPositions && IsSmall()) finding.figure = 1.0;
        findings.push_back(std::move(finding));
    }

    bool isA;
    Points points, others;
    double reach, otherReach;
    std::size_t first;
};

/// True when both sets are in one place: the distances between the points are as large as their noise.
bool AreBothInOnePlace(const fit::CapturedSets& sets) {
    const double reach =
        std::max(ReachOf(Points(sets.points).first(sets.aCount)), ReachOf(Points(sets.points).subspan(sets.aCount)));
    constexpr double largest = 1.0;
    if (reach > largest) return false;
    const fit::HeadFit head = fit::FitHead(sets.points);
    constexpr double clearly = 0.05;
    return !(head.Rms() < clearly * model::SafeLength(head.model.tip));
}

} // namespace

std::vector<Finding> JudgeSets(const fit::CapturedSets& sets) {
    if (AreBothInOnePlace(sets)) return {{FindingKind::TipInForce, Severity::Fault, {}}};
    std::vector<Finding> findings;
    for (const bool isOfASet : {true, false}) Set(sets, isOfASet).Judge(findings);
    return findings;
}

} // namespace qmv40::diagnosis
