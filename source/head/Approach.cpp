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

constexpr ErrorContext approaching{L"RoundThePole::ApproachPosition", L"Error Calculating Approach Position"};
constexpr ErrorContext engaging{L"RoundThePole::EngagementPosition", L"Error Calculating Engagement Position"};

} // namespace

void RoundThePole::ApproachPosition(double a, double b, double distance, CMaVector& out) const {
    const ErrorContext context = approaching;
    LibraryStep(context, [&] { out = ApproachFor(*HeadTurn(a, b), distance); });
}

void RoundThePole::EngagementPosition(double a, double b, CMaVector& out) const {
    const ErrorContext context = engaging;
    LibraryStep(context, [&] { out = PositionWith(*HeadTurn(a, b), driveCupOffset); });
}

void RoundThePole::ApproachAndEngagement(double a, double b, double distance, CMaVector& approach,
                                         CMaVector& engagement) const {
    ErrorContext context = approaching;
    LibraryStep(context, [&] {
        const std::unique_ptr<CQuaternion> headTurn = HeadTurn(a, b);
        approach = ApproachFor(*headTurn, distance);
        context = engaging;
        engagement = PositionWith(*headTurn, driveCupOffset);
    });
}

std::unique_ptr<CQuaternion> RoundThePole::HeadTurn(double a, double b) const {
    // The turn about A comes first, then the turn about B.
    return TurnAbout(bAxis, b).Multiply(TurnAbout(aAxis, a));
}

CMaVector RoundThePole::ApproachFor(const CQuaternion& headTurn, double distance) const {
    return PositionWith(headTurn, approachDirection * distance + driveCupOffset);
}

CMaVector RoundThePole::PositionWith(const CQuaternion& headTurn, const CMaVector& cupFromCentre) const {
    const std::unique_ptr<CMaVector> turned = headTurn.RotateVector(cupFromCentre);
    return headCentre + *turned * -1.0;
}

void RoundThePole::RotatedAAxis(double b, CMaVector& out) const {
    const ErrorContext context{L"RoundThePole::RotatedAAxis", L"Error Calculating A Axis Rotation"};
    LibraryStep(context, [&] { out = *TurnAbout(bAxis, b).RotateVector(aAxis); });
}
