// The lock lever: every point that unlocking and locking need, for each of the two sides that the head can present.

#include "head/RoundThePole.h"

#include "maths/LibraryStep.h"

namespace {

/// Any side but 0 is the negative lever.
int LeverIndex(int lever) noexcept { return lever == 0 ? 0 : 1; }

std::unique_ptr<CMaVector> NewOffset(const wchar_t* source, double x, double y, double z) {
    const ErrorContext context{source};
    return LibraryStep(context, [&] { return std::make_unique<CMaVector>(x, y, z); });
}

void Assign(CMaVector& out, const FixedOffset& offset) { out = CMaVector(offset.x, offset.y, offset.z); }

} // namespace

void RoundThePole::CalculateLeverGeometry() {
    GetHeadCentreToLeverCentreOffset(0, leverCentreOffset[0]);
    GetHeadCentreToLeverCentreOffset(1, leverCentreOffset[1]);

    // The same ball and approach offsets serve both levers: only the lever centres are mirrored.
    CMaVector lockedBall(0.0, 0.0, 0.0);
    GetLeverCentreToBallCentreOffset(0, lockedBall);
    const auto lockedApproach = GetLeverLockedApproachOffset();
    const auto unlockingCentre = GetLeverUnlockingCentreOfRotation();
    CMaVector unlockedBall(0.0, 0.0, 0.0);
    GetLeverCentreToBallCentreOffset(1, unlockedBall);
    const auto unlockedApproach = GetLeverUnlockedApproachOffset();
    const auto lockingCentre = GetLeverLockingCentreOfRotation();

    for (int lever = 0; lever < 2; ++lever) {
        leverLockedOffset[lever] = leverCentreOffset[lever] + lockedBall;
        leverLockedApproachOffset[lever] = leverLockedOffset[lever] + *lockedApproach;
        leverUnlockingCentreOffset[lever] = leverCentreOffset[lever] + *unlockingCentre;
        leverUnlockedOffset[lever] = leverCentreOffset[lever] + unlockedBall;
        leverUnlockedApproachOffset[lever] = leverUnlockedOffset[lever] + *unlockedApproach;
        leverLockingCentreOffset[lever] = leverCentreOffset[lever] + *lockingCentre;
    }
    leverAxisOfRotation[0] = CMaVector(1.0, 0.0, 0.0);
    leverAxisOfRotation[1] = CMaVector(-1.0, 0.0, 0.0);
}

void RoundThePole::GetHeadCentreToLeverCentreOffset(int lever, CMaVector& out) const {
    Assign(out, ReadHeadCentreToLeverCentreOffset(LeverIndex(lever)));
}

void RoundThePole::GetLeverCentreToBallCentreOffset(int state, CMaVector& out) const {
    Assign(out, ReadLeverCentreToBallCentreOffset(state));
}

std::unique_ptr<CMaVector> RoundThePole::GetLeverLockedApproachOffset() const {
    return NewOffset(L"RoundThePole::GetLeverLockedApproachOffset", 0.0, -5.0, 0.0);
}

std::unique_ptr<CMaVector> RoundThePole::GetLeverUnlockedApproachOffset() const {
    return NewOffset(L"RoundThePole::GetLeverUnlockedApproachOffset", 0.0, 5.0, 0.0);
}

std::unique_ptr<CMaVector> RoundThePole::GetLeverUnlockingCentreOfRotation() const {
    return NewOffset(L"RoundThePole::GetLeverUnlockingCentreOfRotation", 0.0, -2.0, -4.0);
}

std::unique_ptr<CMaVector> RoundThePole::GetLeverLockingCentreOfRotation() const {
    return NewOffset(L"RoundThePole::GetLeverLockingCentreOfRotation", 0.0, 2.0, -4.0);
}

void RoundThePole::LeverCentrePosition(int lever, CMaVector& out) const {
    out = leverCentreOffset[LeverIndex(lever)] + headCentre;
}

void RoundThePole::LeverLockedPosition(int lever, CMaVector& out) const {
    out = leverLockedOffset[LeverIndex(lever)] + headCentre;
}

void RoundThePole::LeverLockedApproachPosition(int lever, CMaVector& out) const {
    out = leverLockedApproachOffset[LeverIndex(lever)] + headCentre;
}

void RoundThePole::LeverUnlockingCentreOfRotation(int lever, CMaVector& out) const {
    out = leverUnlockingCentreOffset[LeverIndex(lever)] + headCentre;
}

void RoundThePole::LeverUnlockedPosition(int lever, CMaVector& out) const {
    out = leverUnlockedOffset[LeverIndex(lever)] + headCentre;
}

void RoundThePole::LeverUnlockedApproachPosition(int lever, CMaVector& out) const {
    out = leverUnlockedApproachOffset[LeverIndex(lever)] + headCentre;
}

void RoundThePole::LeverLockingCentreOfRotation(int lever, CMaVector& out) const {
    out = leverLockingCentreOffset[LeverIndex(lever)] + headCentre;
}

void RoundThePole::LeverAxisOfRotation(int which, CMaVector& out) const {
    out = leverAxisOfRotation[LeverIndex(which)];
}
