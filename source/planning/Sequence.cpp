// One indexing, from the current head angles to the target's.

#include "planning/MovePlanner.h"

#include "head/TurnedHead.h"

void MovePlanner::PlanMoves(double targetA, double targetB, RequiredMoves& moves) const {
    constexpr double approachDistance = 10.0;
    TurnedHead now(headGeometry, currentA, currentB);
    TurnedHead target(headGeometry, targetA, targetB);
    const CMaVector approachNow = now.ApproachPosition(approachDistance);
    const CMaVector engageNow = now.EngagementPosition();
    const CMaVector approachTarget = target.ApproachPosition(approachDistance);
    const CMaVector aAxisNow = now.RotatedAAxis();
    const CMaVector centre = headGeometry.HeadCentre();
    const CMaVector aAxisTarget = target.RotatedAAxis();
    const CMaVector bAxis = headGeometry.BAxis();

    CalculateUnlockMoves(moves);
    CalculateRotateToPeg(moves, centre, approachNow);
    CalculateEngageWithPeg(moves, approachNow, engageNow);
    CalculateHeadIndexingMoves(moves, targetA, targetB, centre, aAxisNow, bAxis, aAxisTarget);
    CalculateDisengageFromPeg(moves, approachTarget);
    CalculateRotateToLockLeverMoves(moves, approachTarget, targetA, targetB);
    CalculateLockMoves(moves, targetA, targetB);
}
