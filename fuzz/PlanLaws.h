#pragma once

#include "Support.h"

#include "interface/Records.h"

#include <algorithm>
#include <cstring>
#include <numbers>

/// The laws of a plan, worked out apart from the planner: rotation matrices and the full pi, an executor of arcs, and
/// the ideal head as the page on conventions tells of it. They hold for the built-in dimensions of the head.

using Triple = std::array<double, 3>;

struct HeadAngles {
    double a;
    double b;
};

inline Triple operator+(const Triple& l, const Triple& r) { return {l[0] + r[0], l[1] + r[1], l[2] + r[2]}; }
inline Triple operator-(const Triple& l, const Triple& r) { return {l[0] - r[0], l[1] - r[1], l[2] - r[2]}; }
inline double Length(const Triple& v) { return std::hypot(v[0], v[1], v[2]); }

inline Triple PositionIn(const XYZData& position) {
    return {position.XPosition, position.YPosition, position.ZPosition};
}
inline Triple OriginOf(const ArcData& arc) { return {arc.XOrigin, arc.YOrigin, arc.ZOrigin}; }
inline Triple AxisOf(const ArcData& arc) { return {arc.iRotationVector, arc.jRotationVector, arc.kRotationVector}; }

/// `v` turned right-handed about `axis`, of unit length.
inline Triple Turned(const Triple& v, const Triple& axis, double degrees) {
    const double radians = std::fmod(degrees, 360.0) * (std::numbers::pi / 180.0);
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    const Triple cross{axis[1] * v[2] - axis[2] * v[1], axis[2] * v[0] - axis[0] * v[2],
                       axis[0] * v[1] - axis[1] * v[0]};
    const double along = (axis[0] * v[0] + axis[1] * v[1] + axis[2] * v[2]) * (1.0 - c);
    return {v[0] * c + cross[0] * s + axis[0] * along, v[1] * c + cross[1] * s + axis[1] * along,
            v[2] * c + cross[2] * s + axis[2] * along};
}

/// Where the machine stands after `arc`, which turns it left-handed about the axis through the arc's origin.
inline Triple After(const ArcData& arc, const Triple& position) {
    return OriginOf(arc) + Turned(position - OriginOf(arc), AxisOf(arc), -arc.RotationAngle);
}

/// A head with the built-in dimensions: where it is and how far it is mounted turned about Z.
struct IdealHead {
    Triple centre;
    double mountingAngle;

    static constexpr Triple zAxis{0.0, 0.0, 1.0};

    /// An offset or direction of the ideal head's, as this head is mounted.
    Triple Mounted(const Triple& v) const { return Turned(v, zAxis, mountingAngle); }
    /// The same for what turns with the head: first A about the A axis, then B.
    Triple Indexed(const Triple& v, const HeadAngles& at) const {
        return Mounted(Turned(Turned(v, {-1.0, 0.0, 0.0}, at.a), zAxis, at.b));
    }
    Triple Engagement(const HeadAngles& at) const { return centre - Indexed({-6.95, 24.0, -11.5}, at); }
    Triple Approach(const HeadAngles& at) const { return centre - Indexed({-6.95, 34.0, -11.5}, at); }

    /// 1 for the lever at +X of the ideal head, -1 for the other.
    static double LeverSide(const HeadAngles& at) { return (at.b > 0.0) == (at.a == 0.0) ? -1.0 : 1.0; }
    Triple Lever(const HeadAngles& at, double y, double z) const {
        return centre + Mounted({LeverSide(at) * 30.3, y, -32.25 + z});
    }
};

inline bool IsFinite(const RequiredMoves& moves) {
    std::array<double, sizeof moves / sizeof(double)> numbers;
    std::memcpy(numbers.data(), &moves, sizeof moves);
    return std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); });
}

inline bool SamePlan(const RequiredMoves& left, const RequiredMoves& right) {
    std::array<double, sizeof left / sizeof(double)> l;
    std::array<double, sizeof right / sizeof(double)> r;
    std::memcpy(l.data(), &left, sizeof left);
    std::memcpy(r.data(), &right, sizeof right);
    return std::ranges::equal(l, r, SameNumber);
}

/// Heads farther out than this are on no machine, and their plans are not looked at closely.
constexpr double farthestCentre = 1e6;

/// Everything promised of the plan from `from` to `to`. The head's centre is no farther out than farthestCentre.
inline void PromisePlan(const RequiredMoves& moves, const IdealHead& head, const HeadAngles& from,
                        const HeadAngles& to) {
    // Coordinates of up to a million carry rounding errors of 1e-10, and a few of them add up.
    constexpr double tolerance = 1e-8;
    const auto isAt = [](const XYZData& position, const Triple& expected) {
        return Length(PositionIn(position) - expected) <= tolerance;
    };
    const auto isAbove = [&](const XYZData& position, const Triple& below) {
        return isAt(position, {below[0], below[1], head.centre[2] + 35.0});
    };
    const auto isAxis = [](const ArcData& arc, const Triple& expected) {
        return Length(AxisOf(arc) - expected) <= 1e-12;
    };
    Promise(IsFinite(moves), "a plan holds numbers");

    Promise(isAt(moves.ApproachUnLockLever, head.Lever(from, -24.3, -4.3)), "the approach to the locked lever");
    Promise(isAt(moves.EngageWithUnLockLever, head.Lever(from, -19.3, -4.3)), "the locked lever");
    Promise(Length(OriginOf(moves.UnLock) - head.Lever(from, -2.0, -4.0)) <= tolerance, "the centre of unlocking");
    Promise(isAxis(moves.UnLock, head.Mounted({-1.0, 0.0, 0.0})), "the axis of unlocking");
    Promise(moves.UnLock.RotationAngle == -135.0, "the turn of unlocking");
    Promise(isAbove(moves.DisengageFromUnLockLever, head.Lever(from, 19.3, -4.3)), "above the unlocked lever");

    Promise(isAt(moves.ApproachPeg, head.Approach(from)), "the approach to the peg");
    Promise(isAbove(moves.MoveToPegAtSafeZ, head.Approach(from)), "above the approach to the peg");
    Promise(isAt(moves.EngageWithPeg, head.Engagement(from)), "engagement at the current angles");

    const Triple uncoiled = After(moves.IntermediateAPosition, PositionIn(moves.EngageWithPeg));
    const Triple swivelled = After(moves.MoveToBPosition, uncoiled);
    const Triple tilted = After(moves.MoveToAPosition, swivelled);
    Promise(Length(uncoiled - head.Engagement({0.0, from.b})) <= tolerance, "the first arc ends at A = 0");
    Promise(Length(swivelled - head.Engagement({0.0, to.b})) <= tolerance, "the second arc ends at the target's B");
    Promise(Length(tilted - head.Engagement(to)) <= tolerance, "the arcs end engaged at the target");
    Promise(moves.IntermediateAPosition.RotationAngle == from.a && moves.MoveToAPosition.RotationAngle == -to.a &&
                moves.MoveToBPosition.RotationAngle == from.b - to.b,
            "the arcs turn by the differences of the angles, unwrapped");

    Promise(isAt(moves.DisengageFromPeg, head.Approach(to)), "the retreat from the peg");
    Promise(isAbove(moves.DisengageFromPegToSafeZ, head.Approach(to)), "above the retreat from the peg");
    Promise(isAbove(moves.MoveToLockLeverAtSafeZ, head.Lever(to, 24.3, -4.3)), "above the approach to the open lever");
    Promise(isAt(moves.ApproachLockLever, head.Lever(to, 24.3, -4.3)), "the approach to the open lever");
    Promise(isAt(moves.EngageWithLockLever, head.Lever(to, 19.3, -4.3)), "the open lever");
    Promise(Length(OriginOf(moves.Lock) - head.Lever(to, 2.0, -4.0)) <= tolerance, "the centre of locking");
    Promise(isAxis(moves.Lock, head.Mounted({1.0, 0.0, 0.0})), "the axis of locking");
    Promise(moves.Lock.RotationAngle == -138.0, "the turn of locking");
    Promise(isAt(moves.DisengageFromLockLever, head.Lever(to, -19.3, 5.7)), "off the locked lever");

    // Round the pole, half-way between the levers, from one bearing to another.
    const Triple pole = head.centre + Triple{0.0, 0.0, -32.25};
    const auto endsOnBearing = [&](const ArcData& arc, const XYZData& start, const XYZData& end) {
        const Triple reached = After(arc, PositionIn(start)) - pole;
        const Triple wanted = PositionIn(end) - pole;
        const double off = std::atan2(reached[0] * wanted[1] - reached[1] * wanted[0],
                                      reached[0] * wanted[0] + reached[1] * wanted[1]);
        return Length(OriginOf(arc) - pole) <= tolerance && isAxis(arc, IdealHead::zAxis) && std::abs(off) <= 1e-8 &&
               std::abs(arc.RotationAngle) <= 180.0;
    };
    Promise(endsOnBearing(moves.RotateToPeg, moves.DisengageFromUnLockLever, moves.MoveToPegAtSafeZ),
            "round the pole to the bearing of the peg");
    Promise(endsOnBearing(moves.RotateToLockLever, moves.DisengageFromPegToSafeZ, moves.MoveToLockLeverAtSafeZ),
            "round the pole to the bearing of the lever");
}
