// One indexing, from the current head angles to the target's.

#include "planning/MovePlanner.h"

void MovePlanner::PlanMoves(double targetA, double targetB, RequiredMoves& moves) const {
    constexpr double approachDistance = 10.0;
    CMaVector approachNow(0.0, 0.0, 0.0);
    CMaVector engageNow(0.0, 0.0, 0.0);
    CMaVector approachTarget(0.0, 0.0, 0.0);
    CMaVector aAxisNow(0.0, 0.0, 0.0);
    CMaVector aAxisTarget(0.0, 0.0, 0.0);
    headGeometry.ApproachAndEngagement(currentA, currentB, approachDistance, approachNow, engageNow);
    headGeometry.ApproachPosition(targetA, targetB, approachDistance, approachTarget);
    headGeometry.RotatedAAxis(currentB, aAxisNow);
    const CMaVector centre = headGeometry.HeadCentre();
    headGeometry.RotatedAAxis(targetB, aAxisTarget);
    const CMaVector bAxis = headGeometry.BAxis();

    CalculateUnlockMoves(moves);
    CalculateRotateToPeg(moves, centre, approachNow);
    CalculateEngageWithPeg(moves, approachNow, engageNow);
    CalculateHeadIndexingMoves(moves, targetA, targetB, centre, aAxisNow, bAxis, aAxisTarget);
    CalculateDisengageFromPeg(moves, approachTarget);
    CalculateRotateToLockLeverMoves(moves, approachTarget, targetA, targetB);
    CalculateLockMoves(moves, targetA, targetB);
}
