#include "tools/diagnosis/HeldAngles.h"

#include <algorithm>
#include <span>

namespace qmv40::diagnosis {

namespace {

using Points = std::span<const fit::CapturedPoint>;
using Angle = double fit::CapturedPoint::*;

bool IsHeld(Points points, Angle angle) {
    return std::ranges::all_of(points,
                               [&](const fit::CapturedPoint& point) { return point.*angle == points[0].*angle; });
}

/// The most frequent angle of the points; of several, the first.
double CommonestOf(Points points, Angle angle) {
    const auto count = [&](const fit::CapturedPoint& point) {
        return std::ranges::count(points, point.*angle,
                                  [angle](const fit::CapturedPoint& each) { return each.*angle; });
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

std::vector<Finding> JudgeHeldAngles(const fit::CapturedSets& sets) {
    const Points aSet = Points(sets.points).first(sets.aCount);
    const Points bSet = Points(sets.points).subspan(sets.aCount);
    const auto looksLike = [](Points points, Angle held, Angle turned) {
        return !points.empty() && IsHeld(points, held) && !IsHeld(points, turned);
    };
    if (looksLike(aSet, &fit::CapturedPoint::a, &fit::CapturedPoint::b) &&
        looksLike(bSet, &fit::CapturedPoint::b, &fit::CapturedPoint::a)) {
        return {{FindingKind::SetsExchanged, Severity::Fault, {}, 0.0, 0.0, std::nullopt}};
    }
    std::vector<Finding> findings;
    AddPointsNotHeld(aSet, 0, &fit::CapturedPoint::b, findings);
    AddPointsNotHeld(bSet, sets.aCount, &fit::CapturedPoint::a, findings);
    return findings;
}

} // namespace qmv40::diagnosis
