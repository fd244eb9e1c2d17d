// The machine positions of the lock lever's points: the head centre plus the rotated offsets of the lever.

#include "head/RoundThePole.h"

#include "maths/RaisingGeometryErrors.h"

using namespace qmv40;

namespace {

/// Writes the position of one lever side: `origin` plus the side's offset. Any side except 0 is the negative lever.
void WritePosition(const wchar_t* source, const CMaVector (&offsets)[2], int lever, const CMaVector& origin,
                   CMaVector& out) {
    const ErrorContext context{source};
    RaisingGeometryErrors(context, [&] { out = offsets[lever == 0 ? 0 : 1] + origin; });
}

} // namespace

void RoundThePole::LeverCentrePosition(int lever, CMaVector& out) const {
    WritePosition(L"RoundThePole::LeverCentrePosition", leverCentreOffset, lever, headCentre, out);
}

void RoundThePole::LeverLockedPosition(int lever, CMaVector& out) const {
    WritePosition(L"RoundThePole::LeverLockedPosition", leverLockedOffset, lever, headCentre, out);
}

void RoundThePole::LeverLockedApproachPosition(int lever, CMaVector& out) const {
    WritePosition(L"RoundThePole::LeverLockedApproachPosition", leverLockedApproachOffset, lever, headCentre, out);
}

void RoundThePole::LeverUnlockingCentreOfRotation(int lever, CMaVector& out) const {
    WritePosition(L"RoundThePole::LeverUnlockingCentreOfRotation", leverUnlockingCentreOffset, lever, headCentre, out);
}

void RoundThePole::LeverUnlockedPosition(int lever, CMaVector& out) const {
    WritePosition(L"RoundThePole::LeverUnlockedPosition", leverUnlockedOffset, lever, headCentre, out);
}

void RoundThePole::LeverUnlockedApproachPosition(int lever, CMaVector& out) const {
    WritePosition(L"RoundThePole::LeverUnlockedApproachPosition", leverUnlockedApproachOffset, lever, headCentre, out);
}

void RoundThePole::LeverLockingCentreOfRotation(int lever, CMaVector& out) const {
    WritePosition(L"RoundThePole::LeverLockingCentreOfRotation", leverLockingCentreOffset, lever, headCentre, out);
}

void RoundThePole::LeverAxisOfRotation(int which, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::LeverAxisOfRotation"};
    RaisingGeometryErrors(context, [&] { out = leverAxisOfRotation[which == 0 ? 0 : 1]; });
}
