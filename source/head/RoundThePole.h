#pragma once

#include "maths/CMaCircle.h"
#include "maths/CMaPointArray.h"
#include "maths/CMaVector.h"
#include "platform/Automation.h"
#include "settings/FixedHeadOffsets.h"

#include <memory>

class CQuaternion;
namespace qmv40 {
class ProfileReader;
class ProfileWriter;
} // namespace qmv40

/// The model of one indexable probe head on its machine: the head centre, the directions of the A and B axes, the
/// offsets of the lock lever, its ball and the drive cup, and the rotation of the whole head about the machine's Z axis
/// from its ideal alignment.
///
/// Machine coordinates, in the length unit of the captured points; angles in degrees. Directions and offsets are stored
/// relative to the head centre, already rotated by that rotation. A position is the head centre plus an offset. Lever
/// side: 0 is the positive lever, any other value the negative one.
///
/// ComputeGeometry and LoadFromFile set all fields that a plan uses. If one of them fails, some fields may have new
/// values. The object does not know whether it holds a geometry: its owner keeps that flag. Failures are raised as
/// codes (RaiseError.h).
class RoundThePole {
public:
    /// The ideal head at the origin: ideal axes and approach direction, the drive cup of the settings, everything else
    /// zero.
    RoundThePole();
    RoundThePole(const RoundThePole&) = delete;
    RoundThePole& operator=(const RoundThePole&) = delete;
    virtual ~RoundThePole() = default;

    // Computing, loading and saving the geometry

    /// Computes everything from two arrays of HeadAlignmentDataItem, indexed from 0, measured with the head unlocked:
    /// the A set while A alone was turned, the B set while B alone was turned. The callers' arrays are not altered.
    void ComputeGeometry(SAFEARRAY** pAAxisPoints, SAFEARRAY** pBAxisPoints);

    /// Reads the seven numbers of a saved geometry and derives the rest. Values read before a failure stay.
    void LoadFromFile(const BSTR* fileName);

    /// Writes the seven numbers. The first failure ends the save.
    void SaveToFile(const BSTR* fileName) const;

    // Positions and directions for the planner; each writes its result into `out`

    const CMaVector& HeadCentre() const noexcept { return headCentre; }
    const CMaVector& BAxis() const noexcept { return bAxis; }

    /// The machine position `distance` before engagement, along the approach direction, at the given head angles.
    void ApproachPosition(double a, double b, double distance, CMaVector& out) const;
    /// The machine position at which the drive cup sits on the peg, at the given head angles.
    void EngagementPosition(double a, double b, CMaVector& out) const;
    /// The direction of the A axis after a rotation by `b` degrees about the B axis.
    void RotatedAAxis(double b, CMaVector& out) const;

    void LeverCentrePosition(int lever, CMaVector& out) const;
    void LeverLockedPosition(int lever, CMaVector& out) const;
    void LeverLockedApproachPosition(int lever, CMaVector& out) const;
    void LeverUnlockingCentreOfRotation(int lever, CMaVector& out) const;
    void LeverUnlockedPosition(int lever, CMaVector& out) const;
    void LeverUnlockedApproachPosition(int lever, CMaVector& out) const;
    void LeverLockingCentreOfRotation(int lever, CMaVector& out) const;
    /// A direction: no head centre is added.
    void LeverAxisOfRotation(int which, CMaVector& out) const;

    /// Z of the head centre plus 35.0: a height above the pole sphere and both levers.
    double SafePositionZ() const noexcept { return safePositionZ; }
    /// This and the next one are only kept for the geometry file: 0 unless a loaded file gives another number.
    double SafePositionX() const noexcept { return safePositionX; }
    double SafePositionY() const noexcept { return safePositionY; }

    // The fixed offsets of the head, read from the settings store at each call

    qmv40::FixedOffset GetHeadCentreToDriveCupOffset() const;
    qmv40::FixedOffset GetLockedToUnlockedOffset() const;
    double GetLockedToUnlockedLeverRotation() const;
    double GetUnlockedToLockedLeverRotation() const;
    void GetHeadCentreToLeverCentreOffset(int lever, CMaVector& out) const;
    /// `state` 0: locked, any other: unlocked.
    void GetLeverCentreToBallCentreOffset(int state, CMaVector& out) const;

    // Offsets that no setting changes

    std::unique_ptr<CMaVector> GetLeverLockedApproachOffset() const;
    std::unique_ptr<CMaVector> GetLeverUnlockedApproachOffset() const;
    std::unique_ptr<CMaVector> GetLeverUnlockingCentreOfRotation() const;
    std::unique_ptr<CMaVector> GetLeverLockingCentreOfRotation() const;

    // The steps of ComputeGeometry, in their order

    void ClearPointArrays();
    void InitialiseFixedGeometry();
    void ValidateSafeArrayData(SAFEARRAY** pAAxisPoints, SAFEARRAY** pBAxisPoints);
    void ModifyDataForLockedPosition(SAFEARRAY** points) const;
    void AddDataToPointArrays(SAFEARRAY** points, CMaPointArray& pointArray) const;
    void AddAPoint(double x, double y, double z, CMaPointArray& pointArray) const;
    std::unique_ptr<CMaCircle> FitPointsToACircle(const CMaPointArray& points) const;
    std::unique_ptr<CMaVector> GetCircleCentre(const CMaCircle& circle) const;
    void CalculateLeverGeometry();
    void CalculateSafePositionZ() noexcept;
    void CalculateRotationFromIdealAlignment(const CMaPointArray& aPoints);
    /// The quadrant, 1 to 4: on which side of the head centre the A-axis points are in X and in Y.
    int DetermineQuadrant(const CMaPointArray& aPoints) const;
    /// Rotates every direction and offset, but not the head centre. Must be called once after the fields are set.
    void AdjustForMisAlignment(double angleDegrees, CMaGeometry::EAxisType axis);

    // One number of the geometry file

    double ReadDoubleFromIniFile(const wchar_t* section, const wchar_t* key, const wchar_t* fileName) const;
    void WriteDoubleToIniFile(const wchar_t* section, const wchar_t* key, double value, const wchar_t* fileName) const;

    // What the diagnostics show

    const CMaVector& AAxis() const noexcept { return aAxis; }
    const CMaVector& DriveCupOffset() const noexcept { return driveCupOffset; }
    const CMaVector& ApproachDirection() const noexcept { return approachDirection; }
    const CMaPointArray& AAxisPoints() const noexcept { return aAxisPoints; }
    const CMaPointArray& BAxisPoints() const noexcept { return bAxisPoints; }
    double RequiredRotationAroundZ() const noexcept { return requiredRotationAroundZ; }
    double AAxisCaptureBPosition() const noexcept { return aAxisCaptureBPosition; }

private:
    /// The rotation of the head from A = 0, B = 0: the turn about A comes first, then the turn about B.
    std::unique_ptr<CQuaternion> HeadTurn(double a, double b) const;
    void PlaceHeadCentre();
    void WriteNumbers(qmv40::ProfileWriter& file) const;
    void ReadNumbers(const qmv40::ProfileReader& file);

    CMaVector aAxis{0.0, 0.0, 0.0};
    CMaVector bAxis{0.0, 0.0, 0.0};
    CMaVector headCentre{0.0, 0.0, 0.0};
    CMaVector driveCupOffset{0.0, 0.0, 0.0};
    CMaVector approachDirection{0.0, 0.0, 0.0};
    CMaVector leverCentreOffset[2]{{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    CMaVector leverLockedOffset[2]{{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    CMaVector leverLockedApproachOffset[2]{{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    CMaVector leverUnlockingCentreOffset[2]{{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    CMaVector leverUnlockedOffset[2]{{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    CMaVector leverUnlockedApproachOffset[2]{{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    CMaVector leverLockingCentreOffset[2]{{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    CMaVector leverAxisOfRotation[2]{{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
    CMaPointArray aAxisPoints{0};
    CMaPointArray bAxisPoints{0};
    // 0.0 until a geometry is computed or loaded, so that saving before that always writes the same numbers.
    double requiredRotationAroundZ = 0.0;
    double aAxisCaptureBPosition = 0.0;
    double safePositionX = 0.0;
    double safePositionY = 0.0;
    double safePositionZ = 0.0;
};
