// The moves at the peg: round to it, onto it, the three turns of the head about its centre, and off again.

#include "planning/MovePlanner.h"
#include "planning/RecordFields.h"

#include "maths/LibraryStep.h"

void MovePlanner::CalculateRotateToPeg(RequiredMoves& moves, [[maybe_unused]] const CMaVector& centre,
                                       const CMaVector& approachNow) const {
    const ErrorContext context{L"CQMVCalculator::CalculateRotateToPeg", L"InitializeFromCartesian Call Failed."};
    LibraryStep(context,
                [&] { moves.RotateToPeg = ArcRoundThePole(VectorOf(moves.DisengageFromUnLockLever), approachNow); });
}

void MovePlanner::CalculateEngageWithPeg(RequiredMoves& moves, const CMaVector& approachNow,
                                         const CMaVector& engageNow) const {
    const ErrorContext context{L"CQMVCalculator::CalculateEngageWithPeg", L"Failed To Extract Value From Array"};
    LibraryStep(context, [&] {
        moves.ApproachPeg = PositionOf(approachNow);
        moves.EngageWithPeg = PositionOf(engageNow);
        moves.MoveToPegAtSafeZ = PositionAtHeight(approachNow, headGeometry.SafePositionZ());
    });
}

void MovePlanner::CalculateHeadIndexingMoves(RequiredMoves& moves, double targetA, double targetB,
                                             const CMaVector& centre, const CMaVector& aAxisNow, const CMaVector& bAxis,
                                             const CMaVector& aAxisTarget) const {
    // The description is misspelt and stays so: callers know the text.
    const ErrorContext context{L"CQMVCalculator::CalculateHeadIndexingMoves", L"Failed To Extact Value From Array"};
    LibraryStep(context, [&] {
        // An arc by +x lowers the axis angle by x: each angle is the negated change. B is not wrapped into +-180.
        moves.IntermediateAPosition = ArcAbout(centre, aAxisNow, currentA);
        moves.MoveToBPosition = ArcAbout(centre, bAxis, currentB - targetB);
        moves.MoveToAPosition = ArcAbout(centre, aAxisTarget, -targetA);
    });
}

void MovePlanner::CalculateDisengageFromPeg(RequiredMoves& moves, const CMaVector& approachTarget) const {
    // Misspelt here too, and kept.
    const ErrorContext context{L"CQMVCalculator::CalculateDisengageFromPeg", L"Failed To Extact Value From Array"};
    LibraryStep(context, [&] {
        moves.DisengageFromPeg = PositionOf(approachTarget);
        moves.DisengageFromPegToSafeZ = PositionAtHeight(approachTarget, headGeometry.SafePositionZ());
    });
}
