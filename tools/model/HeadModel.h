#pragma once

#include "tools/model/HeadAngles.h"
#include "tools/model/Turning.h"

/// A model of the head on the machine, for checking plans. It knows how the head is built and how it turns. It knows
/// nothing of how plans are made.
///
/// Machine coordinates, millimetres, degrees. The machine position is the place of the head's centre, the point where
/// its A and B axes meet. The pole sphere does not move. The drive cup moves with the head and turns with A and B. A
/// lever is given, as in plans, by the machine position at which the machine touches it.

namespace qmv40::model {

/// Plus: the lever at which the machine is on the +X side of the pole sphere when it touches the lever's ball (head
/// mounted square). This lever is on the head's own -X side. Minus: the other one.
enum class LeverSide { Plus, Minus };

enum class LeverState { Locked, Unlocked };

/// Dimensions as seen from the head centre at A = 0, B = 0 with the head mounted square.
struct HeadDimensions {
    Vector3 driveCup;
    Vector3 leverCentre; ///< of the plus side, as a machine position from the pole sphere; the other has the opposite X
    Vector3 lockedBall;  ///< from the lever centre
    Vector3 unlockedBall; ///< from the lever centre
    double unlockingTurn; ///< degrees by which the lever has to be pushed
    double lockingTurn;
    /// How far the machine position differs when the same place is measured with the head unlocked. It turns with
    /// neither A nor B.
    Vector3 lockedToUnlocked{};
};

/// How the machine comes to a contact and leaves it: on a straight line of length `distance`.
struct ContactLine {
    Vector3 contact; ///< the machine position in contact
    Vector3 outward; ///< of unit length, away from the contact
    double distance; ///< to a place where the machine can move freely

    Vector3 ApproachPoint() const { return contact + distance * outward; }
};

class HeadModel {
public:
    /// `theCentre`: of the pole sphere. `turnedAboutZ`: how far the head is mounted turned, +X towards +Y.
    HeadModel(const Vector3& theCentre, double turnedAboutZ, const HeadDimensions& theDimensions)
        : centre(theCentre), mountedTurn(turnedAboutZ), dimensions(theDimensions) {}

    const Vector3& PoleSphere() const { return centre; }
    const Vector3& LockedToUnlocked() const { return dimensions.lockedToUnlocked; }
    /// Z at which the machine moves freely above the pole sphere and both levers.
    double SafeHeight() const;

    /// A direction or an offset that is fixed to the head's body. Given for a head that is mounted square.
    Vector3 Mounted(const Vector3& offset) const;
    /// A direction or an offset that also turns with A and B. Given at A = 0, B = 0.
    Vector3 TurnedWithHead(const Vector3& offset, const HeadAngles& angles) const;

    // The drive cup, and the pole sphere that it sits on during indexing

    /// From the head centre to the drive cup.
    Vector3 DriveCup(const HeadAngles& angles) const;
    /// Where the machine is when the cup sits on the sphere.
    Vector3 EngagementPosition(const HeadAngles& angles) const;
    ContactLine PegLine(const HeadAngles& angles) const;
    /// The rotation about the pole sphere by which the machine changes A or B by `degrees`.
    Turning TurnOfA(double degrees, double b) const;
    Turning TurnOfB(double degrees) const;

    // The levers

    /// The place of the head, as an offset from its centre, that is at the pole sphere's centre while the machine is at
    /// `position`. Therefore the lever of the plus side is at the head's -X.
    Vector3 PlaceOnHead(const Vector3& position) const;
    Vector3 LeverCentre(LeverSide side) const;
    Vector3 LeverBall(LeverSide side, LeverState state) const;
    ContactLine LeverLine(LeverSide side, LeverState state) const;
    /// The turn of the machine, touching the lever's ball, that pushes the lever out of `state` into the other state.
    Turning LeverPush(LeverSide side, LeverState state) const;
    /// The lever that a plan uses at these angles: the plus side when A > 0 and B > 0, and when A = 0 and B <= 0;
    /// otherwise the minus side.
    static LeverSide LeverInReach(const HeadAngles& angles);

    /// The vertical axis about which the machine swings round the pole sphere: midway between the levers.
    Vector3 SwingCentre() const;

private:
    Vector3 centre;
    double mountedTurn;
    HeadDimensions dimensions;
};

constexpr LeverSide OtherLever(LeverSide side) { return side == LeverSide::Plus ? LeverSide::Minus : LeverSide::Plus; }

} // namespace qmv40::model
