// The machine positions at which the drive cup approaches and engages the peg, and the direction of the rotated A axis.

#include "head/RoundThePole.h"

#include "maths/CQuaternion.h"
#include "maths/RaisingGeometryErrors.h"

using namespace qmv40;

namespace {

/// Required with this shortened pi, and with the multiplication first: the results depend on it in their last bits. The
/// vector-geometry classes use the full pi.
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
    RaisingGeometryErrors(context, [&] {
        const std::unique_ptr<CQuaternion> headTurn = HeadTurn(a, b);
        const CMaVector cup = approachDirection * distance + driveCupOffset;
        out = headCentre + *headTurn->RotateVector(cup) * -1.0;
    });
}

void RoundThePole::EngagementPosition(double a, double b, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::EngagementPosition", L"Error Calculating Engagement Position"};
    RaisingGeometryErrors(context, [&] {
        const std::unique_ptr<CQuaternion> headTurn = HeadTurn(a, b);
        out = headCentre + *headTurn->RotateVector(driveCupOffset) * -1.0;
    });
}

void RoundThePole::RotatedAAxis(double b, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::RotatedAAxis", L"Error Calculating A Axis Rotation"};
    RaisingGeometryErrors(context, [&] { out = *TurnAbout(bAxis, b).RotateVector(aAxis); });
}

std::unique_ptr<CQuaternion> RoundThePole::HeadTurn(double a, double b) const {
    const CQuaternion turnAboutB = TurnAbout(bAxis, b);
    const CQuaternion turnAboutA = TurnAbout(aAxis, a);
    return turnAboutB.Multiply(turnAboutA);
}
