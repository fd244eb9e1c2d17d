#pragma once

#include "Support.h"

#include "interface/IQMVCalculator.h"
#include "tests/support/BuiltInHead.h"

#include <algorithm>
#include <cstring>

/// The laws of a plan, from the model of head and machine that is independent of the component. They hold for the
/// built-in dimensions of the head, which every program that includes this file uses.

extern "C" int LLVMFuzzerInitialize(int*, char***) { return ::setenv("QMV40_SETTINGS", "/nonexistent", 1); }

using qmv40::model::HeadAngles;
using qmv40::model::HeadModel;
using qmv40::model::Turning;
using qmv40::model::Vector3;

inline Vector3 PositionIn(const XYZData& position) {
    return {position.XPosition, position.YPosition, position.ZPosition};
}
inline Vector3 AxisOf(const ArcData& arc) { return {arc.iRotationVector, arc.jRotationVector, arc.kRotationVector}; }

/// Arcs are left-handed.
inline Turning TurningOf(const ArcData& arc) {
    return {{arc.XOrigin, arc.YOrigin, arc.ZOrigin}, AxisOf(arc), -arc.RotationAngle};
}

inline auto NumbersOf(const RequiredMoves& moves) {
    return std::bit_cast<std::array<double, sizeof moves / sizeof(double)>>(moves);
}

inline bool SamePlan(const RequiredMoves& left, const RequiredMoves& right) {
    return std::ranges::equal(NumbersOf(left), NumbersOf(right), SameNumber);
}

inline bool StandsAt(IQMVCalculator2& calculator, const HeadAngles& angles) {
    HeadAngles found{-1.0, -1.0};
    return calculator.GetCurrentHeadPosition(&found.a, &found.b) == S_OK && SameNumber(found.a, angles.a) &&
           SameNumber(found.b, angles.b);
}

/// Farther than on any machine: the laws are not tested for heads beyond it.
constexpr double farthestCentre = 1e6;

/// All laws of the plan from `from` to `to`. The head's centre is no farther out than farthestCentre.
inline void PromisePlan(const RequiredMoves& moves, const HeadModel& head, const HeadAngles& from,
                        const HeadAngles& to) {
    using enum qmv40::model::LeverState;
    // Coordinates of up to a million carry rounding errors of 1e-10, and a few of them add up.
    constexpr double tolerance = 1e-8;
    constexpr double turnTolerance = 1e-9; // degrees, along each axis
    const auto isAt = [](const XYZData& position, const Vector3& expected) {
        return Distance(PositionIn(position), expected) <= tolerance;
    };
    const auto isAbove = [&](const XYZData& position, const Vector3& below) {
        return isAt(position, {below.x, below.y, head.SafeHeight()});
    };
    const auto isTurn = [](const ArcData& arc, const Turning& expected) {
        const Turning turning = TurningOf(arc);
        return Distance(turning.centre, expected.centre) <= tolerance &&
               Distance(turning.degrees * turning.axis, expected.degrees * expected.axis) <= turnTolerance;
    };
    Promise(std::ranges::all_of(NumbersOf(moves), [](double number) { return std::isfinite(number); }),
            "a plan holds numbers");

    const auto lever = HeadModel::LeverInReach(from);
    Promise(isAt(moves.ApproachUnLockLever, head.LeverLine(lever, Locked).ApproachPoint()),
            "the approach to the locked lever");
    Promise(isAt(moves.EngageWithUnLockLever, head.LeverBall(lever, Locked)), "the locked lever");
    Promise(isTurn(moves.UnLock, head.LeverPush(lever, Locked)), "the push that unlocks");
    Promise(moves.UnLock.RotationAngle == -135.0, "the angle of unlocking");
    Promise(isAbove(moves.DisengageFromUnLockLever, head.LeverBall(lever, Unlocked)), "above the unlocked lever");

    const Vector3 approach = head.PegLine(from).ApproachPoint();
    Promise(isAt(moves.ApproachPeg, approach), "the approach to the peg");
    Promise(isAbove(moves.MoveToPegAtSafeZ, approach), "above the approach to the peg");
    Promise(isAt(moves.EngageWithPeg, head.EngagementPosition(from)), "engagement at the current angles");

    Promise(isTurn(moves.IntermediateAPosition, head.TurnOfA(-from.a, from.b)), "the arc to A = 0");
    Promise(isTurn(moves.MoveToBPosition, head.TurnOfB(to.b - from.b)), "the arc to the target's B");
    Promise(isTurn(moves.MoveToAPosition, head.TurnOfA(to.a, to.b)), "the arc to the target's A");
    const Vector3 atZero = TurningOf(moves.IntermediateAPosition).Carried(PositionIn(moves.EngageWithPeg));
    const Vector3 swivelled = TurningOf(moves.MoveToBPosition).Carried(atZero);
    const Vector3 tilted = TurningOf(moves.MoveToAPosition).Carried(swivelled);
    Promise(Distance(atZero, head.EngagementPosition({0.0, from.b})) <= tolerance, "the first arc ends at A = 0");
    Promise(Distance(swivelled, head.EngagementPosition({0.0, to.b})) <= tolerance,
            "the second arc ends at the target's B");
    Promise(Distance(tilted, head.EngagementPosition(to)) <= tolerance, "the arcs end engaged at the target");
    Promise(moves.IntermediateAPosition.RotationAngle == from.a && moves.MoveToAPosition.RotationAngle == -to.a &&
                moves.MoveToBPosition.RotationAngle == from.b - to.b,
            "the arcs turn by the differences of the angles, unwrapped");

    const Vector3 retreat = head.PegLine(to).ApproachPoint();
    const auto openLever = HeadModel::LeverInReach(to);
    const Vector3 leverApproach = head.LeverLine(openLever, Unlocked).ApproachPoint();
    Promise(isAt(moves.DisengageFromPeg, retreat), "the retreat from the peg");
    Promise(isAbove(moves.DisengageFromPegToSafeZ, retreat), "above the retreat from the peg");
    Promise(isAbove(moves.MoveToLockLeverAtSafeZ, leverApproach), "above the approach to the open lever");
    Promise(isAt(moves.ApproachLockLever, leverApproach), "the approach to the open lever");
    Promise(isAt(moves.EngageWithLockLever, head.LeverBall(openLever, Unlocked)), "the open lever");
    Promise(isTurn(moves.Lock, head.LeverPush(openLever, Unlocked)), "the push that locks");
    Promise(moves.Lock.RotationAngle == -138.0, "the angle of locking");
    Promise(isAt(moves.DisengageFromLockLever, head.LeverBall(openLever, Locked) + Vector3{0.0, 0.0, 10.0}),
            "off the locked lever");

    // Each swing turns about the pole, from one azimuth to another.
    const Vector3 pole = head.SwingCentre();
    const auto endsAtAzimuth = [&](const ArcData& arc, const XYZData& start, const XYZData& end) {
        const Vector3 reached = TurningOf(arc).Carried(PositionIn(start)) - pole;
        const Vector3 wanted = PositionIn(end) - pole;
        const double off =
            std::atan2(reached.x * wanted.y - reached.y * wanted.x, reached.x * wanted.x + reached.y * wanted.y);
        return isTurn(arc, {pole, {0.0, 0.0, 1.0}, -arc.RotationAngle}) && std::abs(off) <= 1e-8 &&
               std::abs(arc.RotationAngle) <= 180.0;
    };
    Promise(endsAtAzimuth(moves.RotateToPeg, moves.DisengageFromUnLockLever, moves.MoveToPegAtSafeZ),
            "round the pole to the azimuth of the peg");
    Promise(endsAtAzimuth(moves.RotateToLockLever, moves.DisengageFromPegToSafeZ, moves.MoveToLockLeverAtSafeZ),
            "round the pole to the azimuth of the lever");
}
