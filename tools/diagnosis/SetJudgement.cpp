#include "tools/diagnosis/SetJudgement.h"

#include "tools/diagnosis/Thresholds.h"
#include "tools/diagnosis/fit/AxisCircle.h"
#include "tools/diagnosis/fit/HeadFit.h"
#include "tools/model/Angles.h"

#include <algorithm>
#include <set>

namespace qmv40::diagnosis {

namespace {

using Points = std::span<const captures::CapturedPoint>;
using Angle = double captures::CapturedPoint::*;
using model::Vector3;

double MedianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// The median distance of the points from their centre. One point that is far off hardly changes it.
double ReachOf(Points points) {
    const auto median = [&](double Vector3::*axis) {
        std::vector<double> values;
        for (const captures::CapturedPoint& point : points) values.push_back(point.position.*axis);
        return MedianOf(std::move(values));
    };
    const Vector3 middle{median(&Vector3::x), median(&Vector3::y), median(&Vector3::z)};
    std::vector<double> distances;
    for (const captures::CapturedPoint& point : points) distances.push_back(model::SafeLength(point.position - middle));
    return MedianOf(std::move(distances));
}

/// The number of different positions, up to `most`. Positions closer than `within` count as one.
std::size_t DifferentPositions(Points points, double within, std::size_t most) {
    std::vector<Vector3> different;
    for (const captures::CapturedPoint& point : points) {
        const auto isNear = [&](const Vector3& each) { return model::SafeLength(point.position - each) <= within; };
        if (std::ranges::none_of(different, isNear)) different.push_back(point.position);
        if (different.size() == most) break;
    }
    return different.size();
}

std::size_t DifferentAngles(Points points, Angle angle) {
    std::set<double> angles;
    for (const captures::CapturedPoint& point : points) angles.insert(point.*angle);
    return angles.size();
}

/// One set, and the other set for comparison.
class Set {
public:
    Set(const captures::CapturedSets& sets, bool isOfASet)
        : isA(isOfASet), points(sets.Set(isOfASet)), others(sets.Set(!isOfASet)), reach(ReachOf(points)),
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
    /// The smallest reach of a circle that can have an axis. At A = 0, the tip of a straight stylus is off the B axis
    /// by some thousandths of the stylus length, and makes a smaller circle.
    double SmallReach() const {
        const bool mayHang = !isA && std::abs(points.front().a) < hanging;
        return std::max((mayHang ? 0.06 : 0.03) * otherReach, 1e-9);
    }
    static constexpr double hanging = 10.0; ///< degrees

    /// Empty when the points form a good circle that is only far too small: the set may be in another unit.
    std::optional<FindingKind> WhySmall() const {
        const auto turned = isA ? &captures::CapturedPoint::a : &captures::CapturedPoint::b;
        if (DifferentAngles(points, turned) < 3) return FindingKind::TooFewPositions;
        if (!isA && std::abs(points.front().a) < hanging) return FindingKind::CircleTooSmall;
        if (IsACircle()) return std::nullopt;
        return AreWhereTheSphereIs() ? FindingKind::TipInForce : FindingKind::TooFewPositions;
    }
    bool IsACircle() const {
        // The radius of an arc of 40 degrees is not more than `widest` times its reach. Noise in one place gives a wide
        // circle or a poor fit.
        constexpr double goodFit = 0.03, widest = 6.0;
        const auto circle = fit::FitAxisCircle(captures::PositionsOf(points));
        return circle && circle->Rms() < goodFit * circle->radius && circle->radius < widest * reach;
    }
    /// With a tip offset in force, every point is at the place of the sphere, and both axes pass through it.
    bool AreWhereTheSphereIs() const {
        const auto circle = fit::FitAxisCircle(captures::PositionsOf(others));
        if (!circle) return false;
        // Unless the stylus points sideways, the B circle lies above the sphere.
        const double above = isA ? circle->radius / std::tan(model::ToRadians(others.front().a)) : 0.0;
        const Vector3 sphere = circle->centre - Vector3{0.0, 0.0, above};
        constexpr double nearShare = 0.2; // of the radius
        return model::SafeLength(captures::MeanPosition(points) - sphere) < nearShare * circle->radius;
    }
    void Add(FindingKind kind, double figure, std::vector<Finding>& findings) const {
        Finding finding{kind, Severity::Fault, captures::PointRange(first, first + points.size()), figure};
        finding.detail = kind == FindingKind::TipInForce ? 1 : 0;
        // The message of 1 says that the points are in one place or near each other.
        if (kind == FindingKind::TooFewPositions && IsSmall()) finding.figure = 1.0;
        findings.push_back(std::move(finding));
    }

    bool isA;
    Points points, others;
    double reach, otherReach;
    std::size_t first;
};

/// True when both sets are in one place: the distances between the points are as large as their noise.
bool AreBothInOnePlace(const captures::CapturedSets& sets) {
    const double reach = std::max(ReachOf(sets.Set(true)), ReachOf(sets.Set(false)));
    constexpr double largestNoise = 1.0; // mm, far more than a machine's noise
    if (reach > largestNoise) return false;
    // A small capture in metres or inches also has this reach, but its points form a head.
    const fit::HeadFit head = fit::FitHead(sets.points);
    constexpr double smallShare = 0.05; // of the stylus
    return !(head.Rms() < smallShare * model::SafeLength(head.model.tip));
}

bool IsHeld(Points points, Angle angle) { return DifferentAngles(points, angle) < 2; }

/// The most frequent angle of the points; of several, the first.
double CommonestOf(Points points, Angle angle) {
    const auto count = [&](const captures::CapturedPoint& point) {
        return std::ranges::count(points, point.*angle,
                                  [angle](const captures::CapturedPoint& each) { return each.*angle; });
    };
    return (*std::ranges::max_element(points, {}, count)).*angle;
}

void AddPointsNotHeld(Points points, std::size_t offset, Angle angle, std::vector<Finding>& findings) {
    if (IsHeld(points, angle)) return;
    const double commonest = CommonestOf(points, angle);
    Finding finding{FindingKind::OtherAxisNotHeld, Severity::Fault, {}, commonest, 0.0, std::nullopt};
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (points[i].*angle != commonest) finding.points.push_back(offset + i);
    }
    findings.push_back(std::move(finding));
}

} // namespace

std::vector<Finding> JudgeSets(const captures::CapturedSets& sets) {
    if (AreBothInOnePlace(sets)) return {{FindingKind::TipInForce, Severity::Fault, {}}};
    std::vector<Finding> findings;
    for (const bool isOfASet : {true, false}) Set(sets, isOfASet).Judge(findings);
    return findings;
}

std::vector<Finding> JudgeHeldAngles(const captures::CapturedSets& sets) {
    const Points aSet = sets.Set(true), bSet = sets.Set(false);
    const auto looksLike = [](Points points, Angle held, Angle turned) {
        return IsHeld(points, held) && !IsHeld(points, turned);
    };
    if (looksLike(aSet, &captures::CapturedPoint::a, &captures::CapturedPoint::b) &&
        looksLike(bSet, &captures::CapturedPoint::b, &captures::CapturedPoint::a)) {
        return {{FindingKind::SetsExchanged, Severity::Fault, {}, 0.0, 0.0, std::nullopt}};
    }
    std::vector<Finding> findings;
    AddPointsNotHeld(aSet, 0, &captures::CapturedPoint::b, findings);
    AddPointsNotHeld(bSet, sets.aCount, &captures::CapturedPoint::a, findings);
    return findings;
}

} // namespace qmv40::diagnosis
