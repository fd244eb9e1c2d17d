#include "tools/model/HeadModel.h"

#include "tools/model/Angles.h"
#include "tools/model/Tolerances.h"

namespace qmv40::model {

namespace {

// Dimensions that no setting changes, millimetres
constexpr double safeHeightAbovePole = 35.0;
constexpr double pegDistance = 10.0;
constexpr double leverDistance = 5.0;
// The machine pushes a lever about a point beside the lever's centre: 2 mm towards the side from which it pushes, and 4
// mm lower.
constexpr double pushCentreAside = 2.0;
constexpr double pushCentreBelow = 4.0;

} // namespace

double HeadModel::SafeHeight() const { return centre.z + safeHeightAbovePole; }

Vector3 HeadModel::Mounted(const Vector3& offset) const { return AboutZ(Rotation(ToRadians(mountedTurn)), offset); }

Vector3 HeadModel::TurnedWithHead(const Vector3& offset, const HeadAngles& angles) const {
    // A turns right-handed about -X, then B and the mounting about the vertical.
    const Vector3 tilted = AboutX(Rotation(ToRadians(-angles.a)), offset);
    return AboutZ(Rotation(ToRadians(mountedTurn + angles.b)), tilted);
}

Vector3 HeadModel::DriveCup(const HeadAngles& angles) const { return TurnedWithHead(dimensions.driveCup, angles); }

Vector3 HeadModel::EngagementPosition(const HeadAngles& angles) const { return centre - DriveCup(angles); }

ContactLine HeadModel::PegLine(const HeadAngles& angles) const {
    return {EngagementPosition(angles), TurnedWithHead({0.0, -1.0, 0.0}, angles), pegDistance};
}

Turning HeadModel::TurnOfA(double degrees, double b) const {
    return {centre, AboutZ(Rotation(ToRadians(mountedTurn + b)), {-1.0, 0.0, 0.0}), degrees};
}

Turning HeadModel::TurnOfB(double degrees) const { return {centre, {0.0, 0.0, 1.0}, degrees}; }

Vector3 HeadModel::PlaceOnHead(const Vector3& position) const { return centre - position; }

Vector3 HeadModel::LeverCentre(LeverSide side) const {
    Vector3 offset = dimensions.leverCentre;
    if (side == LeverSide::Minus) offset.x = -offset.x;
    return centre + Mounted(offset);
}

Vector3 HeadModel::LeverBall(LeverSide side, LeverState state) const {
    return LeverCentre(side) + Mounted(state == LeverState::Locked ? dimensions.lockedBall : dimensions.unlockedBall);
}

ContactLine HeadModel::LeverLine(LeverSide side, LeverState state) const {
    const double away = state == LeverState::Locked ? -1.0 : 1.0;
    return {LeverBall(side, state), Mounted({0.0, away, 0.0}), leverDistance};
}

Turning HeadModel::LeverPush(LeverSide side, LeverState state) const {
    const bool isLocked = state == LeverState::Locked;
    const Vector3 aside{0.0, isLocked ? -pushCentreAside : pushCentreAside, -pushCentreBelow};
    // Both turns go over the top, because the machine leaves upwards afterwards. If it pushed below, the lever would
    // then be in its way.
    const double degrees = isLocked ? -dimensions.unlockingTurn : dimensions.lockingTurn;
    return {LeverCentre(side) + Mounted(aside), Mounted({1.0, 0.0, 0.0}), degrees};
}

LeverSide HeadModel::LeverInReach(const HeadAngles& angles) {
    // B = 180 and B = -180 are one orientation, but the lever differs; B = 0 counts as negative. Both are required.
    const bool pointsToPlus = angles.b > angleTolerance;
    const bool isUpright = std::abs(angles.a) <= angleTolerance;
    return pointsToPlus != isUpright ? LeverSide::Plus : LeverSide::Minus;
}

Vector3 HeadModel::SwingCentre() const { return 0.5 * (LeverCentre(LeverSide::Plus) + LeverCentre(LeverSide::Minus)); }

} // namespace qmv40::model
