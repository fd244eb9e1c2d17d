#include "tools/model/TipPlace.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <cmath>

namespace qmv40::model {

namespace {

/// mm. Places that are closer than this, a few times the noise of a measuring machine, count as one.
constexpr double onePlace = 0.01;
/// mm for each radian of B. When the place of a tip moves less than this, the tip counts as being on the B axis.
constexpr double smallestArm = onePlace;

struct Placement {
    const HeadModel& head;
    const Vector3& tip;
    Measured measured;

    Vector3 Of(const HeadAngles& angles) const { return PlaceOf(head, angles, tip, measured); }
    double Off(const HeadAngles& angles, const Vector3& place) const { return Distance(Of(angles), place); }
};

/// One Gauss-Newton step towards the angles whose place is closest, in degrees.
HeadAngles StepTowards(const Placement& placement, const HeadAngles& angles, const Vector3& place) {
    const Vector3 arm = placement.head.TurnedWithHead(placement.tip, angles);
    const Vector3 byA = Cross(arm, placement.head.TurnOfA(0.0, angles.b).axis); // mm for each radian
    const Vector3 byB = Cross(arm, placement.head.TurnOfB(0.0).axis);
    const Vector3 missing = place - placement.Of(angles);
    const double aa = Dot(byA, byA);
    const double bb = Dot(byB, byB);
    const double ab = Dot(byA, byB);
    const double determinant = aa * bb - ab * ab;
    const double a = Dot(byA, missing);
    const double b = Dot(byB, missing);
    if (std::sqrt(bb) < smallestArm || determinant <= 0.0) return {aa == 0.0 ? 0.0 : ToDegrees(a / aa), 0.0};
    return {ToDegrees((a * bb - b * ab) / determinant), ToDegrees((b * aa - a * ab) / determinant)};
}

HeadAngles Solved(const Placement& placement, const HeadAngles& nearest, const Vector3& place) {
    constexpr int mostSteps = 30;
    constexpr double largestStep = 5.0; // degrees; a solution half a turn away must not be reached
    constexpr double smallestStep = 1e-12;
    HeadAngles angles = nearest;
    for (int i = 0; i < mostSteps; ++i) {
        const HeadAngles step = StepTowards(placement, angles, place);
        angles.a += std::clamp(step.a, -largestStep, largestStep);
        angles.b += std::clamp(step.b, -largestStep, largestStep);
        if (std::hypot(step.a, step.b) < smallestStep) break;
    }
    return angles;
}

bool SameTurn(double left, double right) { return std::abs(Wrapped(left - right)) < 1e-6; }

/// False when two positions have the same A, but another orientation in B: then the tip is on the B axis.
bool ShowsB(const std::vector<HeadAngles>& samePlace) {
    const HeadAngles& first = samePlace.front();
    return std::ranges::none_of(
        samePlace, [&](const HeadAngles& each) { return SameTurn(each.a, first.a) && !SameTurn(each.b, first.b); });
}

} // namespace

Vector3 PlaceOf(const HeadModel& head, const HeadAngles& angles, const Vector3& tip, Measured measured) {
    const Vector3 locked = head.PoleSphere() - head.TurnedWithHead(tip, angles);
    return measured == Measured::Locked ? locked : locked + head.LockedToUnlocked();
}

MeasuredAngles AnglesAt(const HeadModel& head, const Vector3& place, const Vector3& tip, Measured measured,
                        std::span<const HeadAngles> positions) {
    const Placement placement{head, tip, measured};
    const auto off = [&](const HeadAngles& angles) { return placement.Off(angles, place); };
    const HeadAngles nearest = *std::ranges::min_element(positions, {}, off);
    MeasuredAngles found{nearest, off(nearest), Solved(placement, nearest, place), true, {}};
    const Vector3 nearestPlace = placement.Of(nearest);
    std::ranges::copy_if(positions, std::back_inserter(found.samePlace), [&](const HeadAngles& angles) {
        return Distance(placement.Of(angles), nearestPlace) < onePlace;
    });
    found.isBKnown = ShowsB(found.samePlace);
    return found;
}

} // namespace qmv40::model
