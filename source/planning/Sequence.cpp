// The plan of one indexing, from the current to the target angles.

#include "planning/MovePlanner.h"

namespace qmv40 {

void MovePlanner::PlanMoves(double targetA, double targetB, RequiredMoves& moves) const {
    constexpr double approachDistance = 10.0; // before engagement with the peg, in the unit of the captured points
    const CMaVector zero(0.0, 0.0, 0.0);
    CMaVector approachNow = zero, engageNow = zero, approachTarget = zero, aAxisNow = zero, aAxisTarget = zero;
    headGeometry.ApproachPosition(currentA, currentB, approachDistance, approachNow);
    headGeometry.EngagementPosition(currentA, currentB, engageNow);
    headGeometry.ApproachPosition(targetA, targetB, approachDistance, approachTarget);
    headGeometry.RotatedAAxis(currentB, aAxisNow);
    headGeometry.RotatedAAxis(targetB, aAxisTarget);
    const CMaVector& centre = headGeometry.HeadCentre();
    const CMaVector& bAxis = headGeometry.BAxis();

    CalculateUnlockMoves(moves);
    CalculateRotateToPeg(moves, centre, approachNow);
    CalculateEngageWithPeg(moves, approachNow, engageNow);
    CalculateHeadIndexingMoves(moves, targetA, targetB, centre, aAxisNow, bAxis, aAxisTarget);
    CalculateDisengageFromPeg(moves, approachTarget);
    CalculateRotateToLockLeverMoves(moves, approachTarget, targetA, targetB);
    CalculateLockMoves(moves, targetA, targetB);
}

} // namespace qmv40
