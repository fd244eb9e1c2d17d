// Where the machine must stand for the drive cup to meet the peg, and where the A axis points after a turn of the head.

#include "head/RoundThePole.h"

#include "maths/CQuaternion.h"
#include "maths/LibraryStep.h"

namespace {

/// The design's own conversion, meant to use this shortened pi and to multiply first: results depend on it in their
/// last bits. The vector-geometry library's angles use the full pi.
double RadiansFromDegrees(double angleDegrees) noexcept {
    constexpr double shortenedPi = 3.14159265358979;
    return angleDegrees * shortenedPi / 180.0;
}

CQuaternion TurnAbout(const CMaVector& axis, double angleDegrees) {
    CQuaternion turn;
    turn.InitialiseFromAngleAndDirection(RadiansFromDegrees(angleDegrees), axis);
    return turn;
}

} // namespace

void RoundThePole::ApproachPosition(double a, double b, double distance, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::ApproachPosition", L"Error Calculating Approach Position"};
    LibraryStep(context, [&] {
        // The turn about A comes first, then the turn about B.
        const std::unique_ptr<CQuaternion> headTurn = TurnAbout(bAxis, b).Multiply(TurnAbout(aAxis, a));
        const CMaVector cupFromCentre = approachDirection * distance + driveCupOffset;
        const std::unique_ptr<CMaVector> turned = headTurn->RotateVector(cupFromCentre);
        out = headCentre + *turned * -1.0;
    });
}

void RoundThePole::EngagementPosition(double a, double b, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::EngagementPosition", L"Error Calculating Engagement Position"};
    LibraryStep(context, [&] {
        const std::unique_ptr<CQuaternion> headTurn = TurnAbout(bAxis, b).Multiply(TurnAbout(aAxis, a));
        const std::unique_ptr<CMaVector> turned = headTurn->RotateVector(driveCupOffset);
        out = headCentre + *turned * -1.0;
    });
}

void RoundThePole::RotatedAAxis(double b, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::RotatedAAxis", L"Error Calculating A Axis Rotation"};
    LibraryStep(context, [&] { out = *TurnAbout(bAxis, b).RotateVector(aAxis); });
}
