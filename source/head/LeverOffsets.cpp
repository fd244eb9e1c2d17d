// The dimensions of the lock lever: first those that settings may override, then the constant ones.

#include "head/RoundThePole.h"

#include "maths/RaisingGeometryErrors.h"

using namespace qmv40;

namespace {

void Fill(CMaVector& out, const FixedOffset& offset) {
    out[0] = offset.x;
    out[1] = offset.y;
    out[2] = offset.z;
}

std::unique_ptr<CMaVector> NewOffset(const wchar_t* source, double x, double y, double z) {
    const ErrorContext context{source};
    return RaisingGeometryErrors(context, [&] { return std::make_unique<CMaVector>(x, y, z); });
}

} // namespace

void RoundThePole::GetHeadCentreToLeverCentreOffset(int lever, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::GetHeadCentreToLeverCentreOffset"};
    RaisingGeometryErrors(context, [&] { Fill(out, ReadFixedOffset(HeadOffset::HeadCentreToLeverCentre, lever)); });
}

void RoundThePole::GetLeverCentreToBallCentreOffset(int state, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::GetLeverCentreToBallCentreOffset"};
    RaisingGeometryErrors(context, [&] { Fill(out, ReadFixedOffset(HeadOffset::LeverCentreToBallCentre, state)); });
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
