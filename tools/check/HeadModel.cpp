#include "check/HeadModel.h"

#include "check/Tolerances.h"
#include "check/Vectors.h"

namespace check {

namespace {

// What no setting changes, millimetres.
constexpr double safeHeightAbovePole = 35.0;
constexpr double pegDistance = 10.0;
constexpr double leverDistance = 5.0;
// A lever is pushed about a point beside its own centre: towards the side it is pushed from, and below.
constexpr double pushCentreAside = 2.0;
constexpr double pushCentreBelow = 4.0;

} // namespace

double HeadModel::SafeHeight() const { return centre[2] + safeHeightAbovePole; }

CMaVector HeadModel::Mounted(const CMaVector& offset) const { return TurnedAboutZ(offset, mountedTurn); }

CMaVector HeadModel::TurnedWithHead(const CMaVector& offset, const HeadAngles& angles) const {
    // A turns right-handed about -X, then B and the mounting about the vertical.
    const double c = std::cos(RadiansOf(angles.a));
    const double s = std::sin(RadiansOf(angles.a));
    const CMaVector tilted(offset[0], offset[1] * c + offset[2] * s, offset[2] * c - offset[1] * s);
    return TurnedAboutZ(tilted, mountedTurn + angles.b);
}

CMaVector HeadModel::DriveCup(const HeadAngles& angles) const { return TurnedWithHead(dimensions.driveCup, angles); }

CMaVector HeadModel::EngagementPosition(const HeadAngles& angles) const { return Way(DriveCup(angles), centre); }

ContactLine HeadModel::PegLine(const HeadAngles& angles) const {
    return {EngagementPosition(angles), TurnedWithHead({0.0, -1.0, 0.0}, angles), pegDistance};
}

Turning HeadModel::TurnOfA(double degrees, double b) const {
    return {centre, TurnedAboutZ({-1.0, 0.0, 0.0}, mountedTurn + b), degrees};
}

Turning HeadModel::TurnOfB(double degrees) const { return {centre, {0.0, 0.0, 1.0}, degrees}; }

CMaVector HeadModel::PlaceOnHead(const CMaVector& position) const { return Way(position, centre); }

CMaVector HeadModel::LeverCentre(LeverSide side) const {
    CMaVector offset = dimensions.leverCentre;
    if (side == LeverSide::Minus) offset[0] = -offset[0];
    return centre + Mounted(offset);
}

CMaVector HeadModel::LeverBall(LeverSide side, LeverState state) const {
    return LeverCentre(side) + Mounted(state == LeverState::Locked ? dimensions.lockedBall : dimensions.unlockedBall);
}

ContactLine HeadModel::LeverLine(LeverSide side, LeverState state) const {
    const double away = state == LeverState::Locked ? -1.0 : 1.0;
    return {LeverBall(side, state), Mounted({0.0, away, 0.0}), leverDistance};
}

Turning HeadModel::LeverPush(LeverSide side, LeverState state) const {
    const bool isLocked = state == LeverState::Locked;
    const CMaVector aside(0.0, isLocked ? -pushCentreAside : pushCentreAside, -pushCentreBelow);
    // Over the top either way: from there the machine leaves upwards, and the lever would be in its way from below.
    const double degrees = isLocked ? -dimensions.unlockingTurn : dimensions.lockingTurn;
    return {LeverCentre(side) + Mounted(aside), Mounted({1.0, 0.0, 0.0}), degrees};
}

LeverSide HeadModel::LeverInReach(const HeadAngles& angles) {
    // B = 180 and B = -180 are one orientation and two levers, and B = 0 counts as negative: both are meant.
    const bool pointsToPlus = angles.b > angleTolerance;
    const bool isUpright = std::abs(angles.a) <= angleTolerance;
    return pointsToPlus != isUpright ? LeverSide::Plus : LeverSide::Minus;
}

CMaVector HeadModel::SwingCentre() const {
    return (LeverCentre(LeverSide::Plus) + LeverCentre(LeverSide::Minus)) * 0.5;
}

} // namespace check
