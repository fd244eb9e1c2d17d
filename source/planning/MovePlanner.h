#pragma once

#include "head/RoundThePole.h"
#include "interface/Records.h"

namespace qmv40 {

/// Plans the 19 moves of one indexing from the head geometry and the head's current angles. Angles are in degrees,
/// positions in machine coordinates. Each plan reads the two lever rotations from the settings store. The same input
/// and the same settings give the same plan.
///
/// Each operation writes its fields directly into the record, so after a failure some fields may have new values.
class MovePlanner {
public:
    // The steps of a plan, in the order in which PlanMoves takes them

    /// Fields 1 to 4: push the locked lever to unlock the head, at the current head angles.
    void CalculateUnlockMoves(RequiredMoves& moves) const;
    /// Field 5: the swing about the pole, from the lever to the peg. Reads field 4. `centre` is required and not used.
    void CalculateRotateToPeg(RequiredMoves& moves, const CMaVector& centre, const CMaVector& approachNow) const;
    /// Fields 6 to 8: down to the peg and onto it.
    void CalculateEngageWithPeg(RequiredMoves& moves, const CMaVector& approachNow, const CMaVector& engageNow) const;
    /// Fields 9 to 11: A from the current angle to 0, B to its target, A to its target, about the head centre.
    void CalculateHeadIndexingMoves(RequiredMoves& moves, double targetA, double targetB, const CMaVector& centre,
                                    const CMaVector& aAxisNow, const CMaVector& bAxis,
                                    const CMaVector& aAxisTarget) const;
    /// Fields 12 and 13: off the peg and up.
    void CalculateDisengageFromPeg(RequiredMoves& moves, const CMaVector& approachTarget) const;
    /// Field 14: the swing about the pole, from the peg to the unlocked lever.
    void CalculateRotateToLockLeverMoves(RequiredMoves& moves, const CMaVector& approachTarget, double a,
                                         double b) const;
    /// Fields 15 to 19: push the unlocked lever to lock the head, at the target head angles.
    void CalculateLockMoves(RequiredMoves& moves, double a, double b) const;

    /// A point of the pole, which is the vertical axis midway between the two lever centres. Fields 5 and 14 turn about
    /// it.
    void CalculatePoleLocation(double& x, double& y, double& z) const;
    /// Signed angle from `first` to `second`, two directions in the XY plane: [-180, 180], positive if `second` is
    /// counter-clockwise of `first`, seen from +Z. Not a number if one of them is zero.
    double CalculateAngleAndDirection(const CMaVector& first, const CMaVector& second) const;

protected:
    MovePlanner() = default;
    ~MovePlanner() = default;

    /// Fills all 19 fields: from the current angles to the target angles.
    void PlanMoves(double targetA, double targetB, RequiredMoves& moves) const;

    RoundThePole headGeometry;
    double currentA = 0.0;
    double currentB = 0.0;

private:
    CMaVector PoleLocation() const;
};

} // namespace qmv40
