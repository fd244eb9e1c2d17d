// The moves at the lock lever: it is pushed to unlock the head before the head is turned, and to lock it afterwards.

#include "planning/MovePlanner.h"
#include "planning/RecordFields.h"

#include "maths/RaisingGeometryErrors.h"

namespace qmv40 {

namespace {

/// The lever that is pushed at the given angles: 0 is the positive lever, 1 the negative one.
/// This asymmetric rule is required: B = 0 counts as negative; B = 180 and B = -180 choose different levers although
/// the head is in the same position; every A that is not exactly 0.0 counts as tilted.
int LeverSide(double a, double b) {
    // The second test is required although it can never fail once B is positive.
    if (b > 0.0 && b != -180.0) return a == 0.0 ? 1 : 0;
    return a == 0.0 ? 0 : 1;
}

/// The result of one of the head's lever queries.
CMaVector LeverPoint(const RoundThePole& head, void (RoundThePole::*query)(int, CMaVector&) const, int lever) {
    CMaVector result(0.0, 0.0, 0.0);
    (head.*query)(lever, result);
    return result;
}

} // namespace

void MovePlanner::CalculateUnlockMoves(RequiredMoves& moves) const {
    const ErrorContext context{L"CQMVCalculator::CalculateUnlockMoves"};
    RaisingGeometryErrors(context, [&] {
        const int side = LeverSide(currentA, currentB);
        const CMaVector locked = LeverPoint(headGeometry, &RoundThePole::LeverLockedPosition, side);
        const CMaVector unlockingCentre = LeverPoint(headGeometry, &RoundThePole::LeverUnlockingCentreOfRotation, side);
        const CMaVector lockedApproach = LeverPoint(headGeometry, &RoundThePole::LeverLockedApproachPosition, side);
        // Unlocking is about axis 1 for both levers.
        const CMaVector axis = LeverPoint(headGeometry, &RoundThePole::LeverAxisOfRotation, 1);
        const CMaVector unlocked = LeverPoint(headGeometry, &RoundThePole::LeverUnlockedPosition, side);

        // The order of the writes is required. The setting is read between them: if that fails, the field written
        // before has its new value and the others keep their old ones.
        SetRotationVector(moves.UnLock, axis);
        moves.UnLock.RotationAngle = -headGeometry.GetLockedToUnlockedLeverRotation();
        moves.ApproachUnLockLever = PositionOf(lockedApproach);
        moves.EngageWithUnLockLever = PositionOf(locked);
        SetOrigin(moves.UnLock, unlockingCentre);
        moves.DisengageFromUnLockLever = PositionAtHeight(unlocked, headGeometry.SafePositionZ());
    });
}

void MovePlanner::CalculateRotateToLockLeverMoves(RequiredMoves& moves, const CMaVector& approachTarget, double a,
                                                  double b) const {
    const ErrorContext context{L"CQMVCalculator::CalculateRotateToLockLeverMoves"};
    RaisingGeometryErrors(context, [&] {
        const int side = LeverSide(a, b);
        const CMaVector unlockedApproach = LeverPoint(headGeometry, &RoundThePole::LeverUnlockedApproachPosition, side);
        const CMaVector pole = PoleLocation();
        SetOrigin(moves.RotateToLockLever, pole);
        SetRotationVector(moves.RotateToLockLever, Vertical());
        const CMaVector from = DirectionInXY(pole, approachTarget);
        const CMaVector to = DirectionInXY(pole, unlockedApproach);
        // Arcs are left-handed: a counter-clockwise turn has a negative angle.
        moves.RotateToLockLever.RotationAngle = -CalculateAngleAndDirection(from, to);
    });
}

void MovePlanner::CalculateLockMoves(RequiredMoves& moves, double a, double b) const {
    constexpr double liftOverLockedLever = 10.0; // in the unit of the captured points
    const ErrorContext context{L"CQMVCalculator::CalculateLockMoves"};
    RaisingGeometryErrors(context, [&] {
        const int side = LeverSide(a, b);
        const CMaVector unlocked = LeverPoint(headGeometry, &RoundThePole::LeverUnlockedPosition, side);
        const CMaVector lockingCentre = LeverPoint(headGeometry, &RoundThePole::LeverLockingCentreOfRotation, side);
        const CMaVector unlockedApproach = LeverPoint(headGeometry, &RoundThePole::LeverUnlockedApproachPosition, side);
        // Locking is about axis 0, the opposite of unlocking, for both levers.
        const CMaVector axis = LeverPoint(headGeometry, &RoundThePole::LeverAxisOfRotation, 0);
        const CMaVector locked = LeverPoint(headGeometry, &RoundThePole::LeverLockedPosition, side);

        SetRotationVector(moves.Lock, axis);
        moves.Lock.RotationAngle = -headGeometry.GetUnlockedToLockedLeverRotation();
        SetOrigin(moves.Lock, lockingCentre);
        moves.MoveToLockLeverAtSafeZ = PositionAtHeight(unlockedApproach, headGeometry.SafePositionZ());
        moves.ApproachLockLever = PositionOf(unlockedApproach);
        moves.EngageWithLockLever = PositionOf(unlocked);
        // A fixed height over the lever instead of the safe height: this is the last move of the plan.
        moves.DisengageFromLockLever = PositionAtHeight(locked, locked[2] + liftOverLockedLever);
    });
}

} // namespace qmv40
