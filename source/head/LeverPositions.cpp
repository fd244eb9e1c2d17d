// The machine positions of the lock lever's points: the head centre plus the rotated offsets of the lever.

#include "head/RoundThePole.h"

#include "maths/RaisingGeometryErrors.h"

using namespace qmv40;

namespace {

/// The element for a lever side. Any side except 0 is the negative lever.
const CMaVector& OfSide(const CMaVector (&pair)[2], int lever) noexcept { return pair[lever == 0 ? 0 : 1]; }

} // namespace

void RoundThePole::LeverCentrePosition(int lever, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::LeverCentrePosition"};
    RaisingGeometryErrors(context, [&] { out = OfSide(leverCentreOffset, lever) + headCentre; });
}

void RoundThePole::LeverLockedPosition(int lever, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::LeverLockedPosition"};
    RaisingGeometryErrors(context, [&] { out = OfSide(leverLockedOffset, lever) + headCentre; });
}

void RoundThePole::LeverLockedApproachPosition(int lever, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::LeverLockedApproachPosition"};
    RaisingGeometryErrors(context, [&] { out = OfSide(leverLockedApproachOffset, lever) + headCentre; });
}

void RoundThePole::LeverUnlockingCentreOfRotation(int lever, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::LeverUnlockingCentreOfRotation"};
    RaisingGeometryErrors(context, [&] { out = OfSide(leverUnlockingCentreOffset, lever) + headCentre; });
}

void RoundThePole::LeverUnlockedPosition(int lever, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::LeverUnlockedPosition"};
    RaisingGeometryErrors(context, [&] { out = OfSide(leverUnlockedOffset, lever) + headCentre; });
}

void RoundThePole::LeverUnlockedApproachPosition(int lever, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::LeverUnlockedApproachPosition"};
    RaisingGeometryErrors(context, [&] { out = OfSide(leverUnlockedApproachOffset, lever) + headCentre; });
}

void RoundThePole::LeverLockingCentreOfRotation(int lever, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::LeverLockingCentreOfRotation"};
    RaisingGeometryErrors(context, [&] { out = OfSide(leverLockingCentreOffset, lever) + headCentre; });
}

void RoundThePole::LeverAxisOfRotation(int which, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::LeverAxisOfRotation"};
    RaisingGeometryErrors(context, [&] { out = OfSide(leverAxisOfRotation, which); });
}
