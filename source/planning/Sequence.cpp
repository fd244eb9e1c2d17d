// The plan of one indexing, from the current to the target angles.

#include "planning/MovePlanner.h"

namespace qmv40 {

namespace {

CMaVector ZeroVector() { return {0.0, 0.0, 0.0}; }

} // namespace

void MovePlanner::PlanMoves(double targetA, double targetB, RequiredMoves& moves) const {
    constexpr double approachDistance = 10.0;
    CMaVector approachNow = ZeroVector();
    CMaVector engageNow = ZeroVector();
    CMaVector approachTarget = ZeroVector();
    CMaVector aAxisNow = ZeroVector();
    CMaVector centre = ZeroVector();
    CMaVector aAxisTarget = ZeroVector();
    CMaVector bAxis = ZeroVector();

    headGeometry.ApproachPosition(currentA, currentB, approachDistance, approachNow);
    headGeometry.EngagementPosition(currentA, currentB, engageNow);
    headGeometry.ApproachPosition(targetA, targetB, approachDistance, approachTarget);
    headGeometry.RotatedAAxis(currentB, aAxisNow);
    centre = headGeometry.HeadCentre();
    headGeometry.RotatedAAxis(targetB, aAxisTarget);
    bAxis = headGeometry.BAxis();

    CalculateUnlockMoves(moves);
    CalculateRotateToPeg(moves, centre, approachNow);
    CalculateEngageWithPeg(moves, approachNow, engageNow);
    CalculateHeadIndexingMoves(moves, targetA, targetB, centre, aAxisNow, bAxis, aAxisTarget);
    CalculateDisengageFromPeg(moves, approachTarget);
    CalculateRotateToLockLeverMoves(moves, approachTarget, targetA, targetB);
    CalculateLockMoves(moves, targetA, targetB);
}

} // namespace qmv40
