#include "head/TurnedHead.h"

#include "head/RoundThePole.h"
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

TurnedHead::TurnedHead(const RoundThePole& theHead, double theA, double b)
    : head(theHead), a(theA), turnAboutB(TurnAbout(theHead.BAxis(), b)) {}

CMaVector TurnedHead::ApproachPosition(double distance) {
    const ErrorContext context{L"RoundThePole::ApproachPosition", L"Error Calculating Approach Position"};
    return LibraryStep(context,
                       [&] { return PositionWith(head.ApproachDirection() * distance + head.DriveCupOffset()); });
}

CMaVector TurnedHead::EngagementPosition() {
    const ErrorContext context{L"RoundThePole::EngagementPosition", L"Error Calculating Engagement Position"};
    return LibraryStep(context, [&] { return PositionWith(head.DriveCupOffset()); });
}

CMaVector TurnedHead::RotatedAAxis() const {
    const ErrorContext context{L"RoundThePole::RotatedAAxis", L"Error Calculating A Axis Rotation"};
    return LibraryStep(context, [&] { return *turnAboutB.RotateVector(head.AAxis()); });
}

const CQuaternion& TurnedHead::HeadTurn() {
    // The turn about A comes first, then the turn about B.
    if (!headTurn) headTurn = turnAboutB.Multiply(TurnAbout(head.AAxis(), a));
    return *headTurn;
}

CMaVector TurnedHead::PositionWith(const CMaVector& cupFromCentre) {
    const std::unique_ptr<CMaVector> turned = HeadTurn().RotateVector(cupFromCentre);
    return head.HeadCentre() + *turned * -1.0;
}
