// The points of the lock lever that unlocking and locking need, for both lever sides.

#include "head/RoundThePole.h"

#include "maths/RaisingGeometryErrors.h"

using namespace qmv40;

namespace {

/// Adds the offset that both levers share to the `origin` of each.
void OffsetBoth(CMaVector (&result)[2], const CMaVector (&origin)[2], const CMaVector& shared) {
    for (int lever = 0; lever < 2; ++lever) result[lever] = origin[lever] + shared;
}

} // namespace

void RoundThePole::CalculateLeverGeometry() {
    // The order is required: each offset is read and used for both levers before the next one is read.
    // Only the lever centres are mirrored: the same ball and approach offsets serve both levers.
    const ErrorContext context{L"RoundThePole::CalculateLeverGeometry"};
    RaisingGeometryErrors(context, [&] {
        GetHeadCentreToLeverCentreOffset(0, leverCentreOffset[0]);
        GetHeadCentreToLeverCentreOffset(1, leverCentreOffset[1]);

        CMaVector lockedBall(0.0, 0.0, 0.0);
        GetLeverCentreToBallCentreOffset(0, lockedBall);
        OffsetBoth(leverLockedOffset, leverCentreOffset, lockedBall);
        OffsetBoth(leverLockedApproachOffset, leverLockedOffset, *GetLeverLockedApproachOffset());
        OffsetBoth(leverUnlockingCentreOffset, leverCentreOffset, *GetLeverUnlockingCentreOfRotation());

        CMaVector unlockedBall(0.0, 0.0, 0.0);
        GetLeverCentreToBallCentreOffset(1, unlockedBall);
        OffsetBoth(leverUnlockedOffset, leverCentreOffset, unlockedBall);
        OffsetBoth(leverUnlockedApproachOffset, leverUnlockedOffset, *GetLeverUnlockedApproachOffset());
        OffsetBoth(leverLockingCentreOffset, leverCentreOffset, *GetLeverLockingCentreOfRotation());

        leverAxisOfRotation[0] = CMaVector(1.0, 0.0, 0.0);
        leverAxisOfRotation[1] = CMaVector(-1.0, 0.0, 0.0);
    });
}
