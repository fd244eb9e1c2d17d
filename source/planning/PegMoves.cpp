// The moves at the peg: to the peg, onto it, the three rotations of the head about the head centre, and off the peg.

#include "planning/MovePlanner.h"
#include "planning/RecordFields.h"

#include "maths/RaisingGeometryErrors.h"

namespace qmv40 {

void MovePlanner::CalculateRotateToPeg(RequiredMoves& moves, [[maybe_unused]] const CMaVector& centre,
                                       const CMaVector& approachNow) const {
    ErrorContext context{L"CQMVCalculator::CalculateRotateToPeg"};
    RaisingGeometryErrors(context, [&] {
        const CMaVector pole = PoleLocation();
        SetOrigin(moves.RotateToPeg, pole);
        SetRotationVector(moves.RotateToPeg, Vertical());

        context.description = L"InitializeFromCartesian Call Failed.";
        const CMaVector from = DirectionInXY(pole, VectorOf(moves.DisengageFromUnLockLever));
        const CMaVector to = DirectionInXY(pole, approachNow);
        // Arcs are left-handed: a counter-clockwise turn has a negative angle.
        moves.RotateToPeg.RotationAngle = -CalculateAngleAndDirection(from, to);
    });
}

void MovePlanner::CalculateEngageWithPeg(RequiredMoves& moves, const CMaVector& approachNow,
                                         const CMaVector& engageNow) const {
    const ErrorContext context{L"CQMVCalculator::CalculateEngageWithPeg", L"Failed To Extract Value From Array"};
    RaisingGeometryErrors(context, [&] {
        moves.ApproachPeg = PositionOf(approachNow);
        moves.EngageWithPeg = PositionOf(engageNow);
        moves.MoveToPegAtSafeZ = PositionAtHeight(approachNow, headGeometry.SafePositionZ());
    });
}

void MovePlanner::CalculateHeadIndexingMoves(RequiredMoves& moves, double targetA, double targetB,
                                             const CMaVector& centre, const CMaVector& aAxisNow, const CMaVector& bAxis,
                                             const CMaVector& aAxisTarget) const {
    // The text is fixed, with its misspelling.
    const ErrorContext context{L"CQMVCalculator::CalculateHeadIndexingMoves", L"Failed To Extact Value From Array"};
    RaisingGeometryErrors(context, [&] {
        // Arcs are left-handed: an arc by +x decreases the head angle by x. The change of B is not wrapped into -180 to
        // 180.
        moves.IntermediateAPosition = ArcAbout(centre, aAxisNow, currentA);
        moves.MoveToBPosition = ArcAbout(centre, bAxis, currentB - targetB);
        moves.MoveToAPosition = ArcAbout(centre, aAxisTarget, -targetA);
    });
}

void MovePlanner::CalculateDisengageFromPeg(RequiredMoves& moves, const CMaVector& approachTarget) const {
    // The text is fixed, with its misspelling.
    const ErrorContext context{L"CQMVCalculator::CalculateDisengageFromPeg", L"Failed To Extact Value From Array"};
    RaisingGeometryErrors(context, [&] {
        moves.DisengageFromPeg = PositionOf(approachTarget);
        moves.DisengageFromPegToSafeZ = PositionAtHeight(approachTarget, headGeometry.SafePositionZ());
    });
}

} // namespace qmv40
