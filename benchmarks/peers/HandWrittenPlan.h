#pragma once

#include "benchmarks/peers/PlanPeers.h"

#include <cmath>
#include <numbers>

/// The plan over a library's own vectors and rotations. `Library` has
///     Vector                     made of three doubles; +, -, * double, component access by ()
///     Rotation                   product with another, and with a Vector
///     static Rotation Turn(const Vector& unitAxis, double radians)
template <typename Library> class HandWrittenPlan final : public PlanPeer {
    using Vector = typename Library::Vector;
    using Rotation = typename Library::Rotation;

    /// One side of the head: offsets from its centre.
    struct Lever {
        Vector centre, locked, lockedApproach, unlockingCentre, unlocked, unlockedApproach, lockingCentre;
    };

public:
    explicit HandWrittenPlan(const RoundThePole& head)
        : aAxis(From(head.AAxis())), bAxis(From(head.BAxis())), centre(From(head.HeadCentre())),
          driveCup(From(head.DriveCupOffset())), approach(From(head.ApproachDirection())),
          levers{LeverOf(head, 0), LeverOf(head, 1)}, leverAxes{AxisOf(head, 0), AxisOf(head, 1)},
          unlockingTurn(head.GetLockedToUnlockedLeverRotation()), lockingTurn(head.GetUnlockedToLockedLeverRotation()),
          safeZ(head.SafePositionZ()) {}

    void Plan(const HeadAngles& from, const HeadAngles& to, RequiredMoves& moves) const override {
        constexpr double approachDistance = 10.0;
        const Rotation bNow = Library::Turn(bAxis, Radians(from.b));
        const Rotation bTarget = Library::Turn(bAxis, Radians(to.b));
        const Rotation headNow = bNow * Library::Turn(aAxis, Radians(from.a));
        const Rotation headTarget = bTarget * Library::Turn(aAxis, Radians(to.a));
        const Vector cupAndApproach = driveCup + approach * approachDistance;
        const Vector approachNow = centre - headNow * cupAndApproach;
        const Vector engageNow = centre - headNow * driveCup;
        const Vector approachTarget = centre - headTarget * cupAndApproach;

        const Lever& unlocking = levers[LeverSide(from)];
        const Lever& locking = levers[LeverSide(to)];
        const Vector pole = centre + (levers[0].centre + levers[1].centre) * 0.5;
        const Vector unlocked = centre + unlocking.unlocked;
        const Vector lockingApproach = centre + locking.unlockedApproach;
        const Vector locked = centre + locking.locked;

        moves.ApproachUnLockLever = Position(centre + unlocking.lockedApproach);
        moves.EngageWithUnLockLever = Position(centre + unlocking.locked);
        moves.UnLock = Arc(centre + unlocking.unlockingCentre, leverAxes[1], -unlockingTurn);
        moves.DisengageFromUnLockLever = AtHeight(unlocked, safeZ);
        moves.RotateToPeg = ArcRound(pole, unlocked, approachNow);
        moves.MoveToPegAtSafeZ = AtHeight(approachNow, safeZ);
        moves.ApproachPeg = Position(approachNow);
        moves.EngageWithPeg = Position(engageNow);
        moves.IntermediateAPosition = Arc(centre, bNow * aAxis, from.a);
        moves.MoveToBPosition = Arc(centre, bAxis, from.b - to.b);
        moves.MoveToAPosition = Arc(centre, bTarget * aAxis, -to.a);
        moves.DisengageFromPeg = Position(approachTarget);
        moves.DisengageFromPegToSafeZ = AtHeight(approachTarget, safeZ);
        moves.RotateToLockLever = ArcRound(pole, approachTarget, lockingApproach);
        moves.MoveToLockLeverAtSafeZ = AtHeight(lockingApproach, safeZ);
        moves.ApproachLockLever = Position(lockingApproach);
        moves.EngageWithLockLever = Position(centre + locking.unlocked);
        moves.Lock = Arc(centre + locking.lockingCentre, leverAxes[0], -lockingTurn);
        moves.DisengageFromLockLever = AtHeight(locked, locked(2) + 10.0);
    }

private:
    static double Radians(double degrees) { return degrees * (std::numbers::pi / 180.0); }
    static Vector From(const CMaVector& v) { return Vector(v[0], v[1], v[2]); }
    static int LeverSide(const HeadAngles& at) { return (at.b > 0.0) == (at.a == 0.0) ? 1 : 0; }

    static XYZData Position(const Vector& v) { return {v(0), v(1), v(2)}; }
    static XYZData AtHeight(const Vector& v, double z) { return {v(0), v(1), z}; }
    static ArcData Arc(const Vector& origin, const Vector& axis, double degrees) {
        return {origin(0), origin(1), origin(2), axis(0), axis(1), axis(2), degrees};
    }
    static ArcData ArcRound(const Vector& pole, const Vector& from, const Vector& to) {
        const double x1 = from(0) - pole(0), y1 = from(1) - pole(1);
        const double x2 = to(0) - pole(0), y2 = to(1) - pole(1);
        const double angle = std::atan2(x1 * y2 - y1 * x2, x1 * x2 + y1 * y2) * (180.0 / std::numbers::pi);
        return {pole(0), pole(1), pole(2), 0.0, 0.0, 1.0, -angle};
    }

    /// The head returns positions; the offset is the position without the centre.
    static Vector Offset(const RoundThePole& head, void (RoundThePole::*query)(int, CMaVector&) const, int lever) {
        CMaVector position(0.0, 0.0, 0.0);
        (head.*query)(lever, position);
        return From(position + head.HeadCentre() * -1.0);
    }
    static Lever LeverOf(const RoundThePole& head, int lever) {
        return {Offset(head, &RoundThePole::LeverCentrePosition, lever),
                Offset(head, &RoundThePole::LeverLockedPosition, lever),
                Offset(head, &RoundThePole::LeverLockedApproachPosition, lever),
                Offset(head, &RoundThePole::LeverUnlockingCentreOfRotation, lever),
                Offset(head, &RoundThePole::LeverUnlockedPosition, lever),
                Offset(head, &RoundThePole::LeverUnlockedApproachPosition, lever),
                Offset(head, &RoundThePole::LeverLockingCentreOfRotation, lever)};
    }
    static Vector AxisOf(const RoundThePole& head, int which) {
        CMaVector axis(0.0, 0.0, 0.0);
        head.LeverAxisOfRotation(which, axis);
        return From(axis);
    }

    Vector aAxis, bAxis, centre, driveCup, approach;
    Lever levers[2];
    Vector leverAxes[2];
    double unlockingTurn, lockingTurn, safeZ;
};
