#include "head/RoundThePole.h"

using namespace qmv40;

RoundThePole::RoundThePole() {
    InitialiseFixedGeometry();
    // Required, although both arrays are empty already.
    aAxisPoints = CMaPointArray(0);
    bAxisPoints = CMaPointArray(0);
}

void RoundThePole::InitialiseFixedGeometry() {
    const FixedOffset driveCup = GetHeadCentreToDriveCupOffset();
    driveCupOffset = CMaVector(driveCup.x, driveCup.y, driveCup.z);
    approachDirection = CMaVector(0.0, 1.0, 0.0);
    aAxis = CMaVector(-1.0, 0.0, 0.0);
    bAxis = CMaVector(0.0, 0.0, 1.0);
}

void RoundThePole::CalculateSafePositionZ() noexcept {
    constexpr double safeHeight = 35.0;
    safePositionZ = headCentre[2] + safeHeight;
}

FixedOffset RoundThePole::GetHeadCentreToDriveCupOffset() const {
    return ReadFixedOffset(HeadOffset::HeadCentreToDriveCup);
}

FixedOffset RoundThePole::GetLockedToUnlockedOffset() const { return ReadFixedOffset(HeadOffset::LockedToUnlocked); }

double RoundThePole::GetLockedToUnlockedLeverRotation() const {
    return ReadFixedRotation(HeadOffset::UnlockingRotation);
}

double RoundThePole::GetUnlockedToLockedLeverRotation() const { return ReadFixedRotation(HeadOffset::LockingRotation); }
