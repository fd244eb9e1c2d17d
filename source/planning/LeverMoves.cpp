// The moves at the lock lever: pushing it open before the head is turned, and shut again afterwards.

#include "planning/MovePlanner.h"
#include "planning/RecordFields.h"

#include "maths/LibraryStep.h"

namespace {

/// Which lever the head presents at the given angles: 0 the positive one, 1 the negative one.
/// Meant to be lopsided: B = 0 counts as negative, B = 180 and B = -180 choose different levers although the head
/// stands the same, and any A but exactly 0.0 counts as tilted.
int LeverSide(double a, double b) {
    // The second test can never fail once B is positive; it is kept as written.
    if (b > 0.0 && b != -180.0) return a == 0.0 ? 1 : 0;
    return a == 0.0 ? 0 : 1;
}

/// What one of the head's lever queries answers.
CMaVector Ask(const RoundThePole& head, void (RoundThePole::*query)(int, CMaVector&) const, int lever) {
    CMaVector answer(0.0, 0.0, 0.0);
    (head.*query)(lever, answer);
    return answer;
}

} // namespace

void MovePlanner::CalculateUnlockMoves(RequiredMoves& moves) const {
    const ErrorContext context{L"CQMVCalculator::CalculateUnlockMoves"};
    LibraryStep(context, [&] {
        const int side = LeverSide(currentA, currentB);
        const CMaVector locked = Ask(headGeometry, &RoundThePole::LeverLockedPosition, side);
        const CMaVector unlockingCentre = Ask(headGeometry, &RoundThePole::LeverUnlockingCentreOfRotation, side);
        const CMaVector lockedApproach = Ask(headGeometry, &RoundThePole::LeverLockedApproachPosition, side);
        // Unlocking is always about axis 1, whichever lever is pushed.
        const CMaVector axis = Ask(headGeometry, &RoundThePole::LeverAxisOfRotation, 1);
        const CMaVector unlocked = Ask(headGeometry, &RoundThePole::LeverUnlockedPosition, side);

        // The settings are read between the writes, and a failure there is meant to leave what was written before it.
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
    LibraryStep(context, [&] {
        const CMaVector unlockedApproach =
            Ask(headGeometry, &RoundThePole::LeverUnlockedApproachPosition, LeverSide(a, b));
        moves.RotateToLockLever = ArcRoundThePole(approachTarget, unlockedApproach);
    });
}

void MovePlanner::CalculateLockMoves(RequiredMoves& moves, double a, double b) const {
    constexpr double liftOverLockedLever = 10.0;
    const ErrorContext context{L"CQMVCalculator::CalculateLockMoves"};
    LibraryStep(context, [&] {
        const int side = LeverSide(a, b);
        const CMaVector unlocked = Ask(headGeometry, &RoundThePole::LeverUnlockedPosition, side);
        const CMaVector lockingCentre = Ask(headGeometry, &RoundThePole::LeverLockingCentreOfRotation, side);
        const CMaVector unlockedApproach = Ask(headGeometry, &RoundThePole::LeverUnlockedApproachPosition, side);
        // Locking is always about axis 0: the opposite of unlocking, whichever lever is pushed.
        const CMaVector axis = Ask(headGeometry, &RoundThePole::LeverAxisOfRotation, 0);
        const CMaVector locked = Ask(headGeometry, &RoundThePole::LeverLockedPosition, side);

        SetRotationVector(moves.Lock, axis);
        moves.Lock.RotationAngle = -headGeometry.GetUnlockedToLockedLeverRotation();
        SetOrigin(moves.Lock, lockingCentre);
        moves.MoveToLockLeverAtSafeZ = PositionAtHeight(unlockedApproach, headGeometry.SafePositionZ());
        moves.ApproachLockLever = PositionOf(unlockedApproach);
        moves.EngageWithLockLever = PositionOf(unlocked);
        // A fixed lift over the lever, not the safe height: the head is locked and nothing is crossed from here.
        moves.DisengageFromLockLever = PositionAtHeight(locked, locked[2] + liftOverLockedLever);
    });
}
