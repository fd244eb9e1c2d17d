#pragma once

#include "tools/model/HeadAngles.h"
#include "tools/model/Turning.h"

/// A model of the head on the machine, made for checking plans: it knows how the head is built and how it turns, and
/// nothing of how plans are made.
///
/// Machine coordinates, millimetres, degrees. The machine's position is where the head centre is. The pole sphere stays
/// where it is; the drive cup goes with the head and turns with A and B. The levers are given, as everywhere, by the
/// machine's position at which the machine touches them.

namespace qmv40::model {

/// The lever whose ball is on the +X side of the head centre when the head is mounted square, and the other one.
enum class LeverSide { Plus, Minus };

enum class LeverState { Locked, Unlocked };

/// Dimensions as seen from the head centre at A = 0, B = 0 with the head mounted square.
struct HeadDimensions {
    Vector3 driveCup;
    Vector3 leverCentre;  ///< of the lever on the plus side; the other's X is the opposite
    Vector3 lockedBall;   ///< from the lever centre
    Vector3 unlockedBall; ///< from the lever centre
    double unlockingTurn; ///< how far the lever has to be pushed
    double lockingTurn;
    /// How far the machine stands off where it stood, measuring the same with the head unlocked; it turns with nothing.
    Vector3 lockedToUnlocked{};
};

/// How machine and head come to a contact and leave it: along one line, the last `distance` of it straight.
struct ContactLine {
    Vector3 contact; ///< the machine's position in contact
    Vector3 outward; ///< of unit length, away from the contact
    double distance; ///< far enough from the contact to move freely

    Vector3 ApproachPoint() const { return contact + distance * outward; }
};

class HeadModel {
public:
    /// `centre`: of the pole sphere, and of the head when the drive cup's offset is taken off. `turnedAboutZ`: how far
    /// the head is mounted turned, +X towards +Y.
    HeadModel(const Vector3& theCentre, double turnedAboutZ, const HeadDimensions& theDimensions)
        : centre(theCentre), mountedTurn(turnedAboutZ), dimensions(theDimensions) {}

    const Vector3& PoleSphere() const { return centre; }
    const Vector3& LockedToUnlocked() const { return dimensions.lockedToUnlocked; }
    /// Z at which the machine moves freely above the pole sphere and both levers.
    double SafeHeight() const;

    /// A direction or an offset that goes with the head's body: as it is, given as at a head mounted square.
    Vector3 Mounted(const Vector3& offset) const;
    /// One that also turns with A and B, given at A = 0, B = 0.
    Vector3 TurnedWithHead(const Vector3& offset, const HeadAngles& angles) const;

    // The drive cup and the pole sphere, which it sits on while the head is indexed

    /// From the head centre to the drive cup.
    Vector3 DriveCup(const HeadAngles& angles) const;
    /// Where the machine is when the cup sits on the sphere.
    Vector3 EngagementPosition(const HeadAngles& angles) const;
    ContactLine PegLine(const HeadAngles& angles) const;
    /// The turns that the machine gives the head about the pole sphere when A or B is to change by `degrees`.
    Turning TurnOfA(double degrees, double b) const;
    Turning TurnOfB(double degrees) const;

    // The levers

    /// Which place of the head, from its centre, is at the pole sphere's centre while the machine is at `position`. A
    /// lever's own place is so the opposite of its position seen from the pole: that on the plus side is at the head's
    /// -X.
    Vector3 PlaceOnHead(const Vector3& position) const;
    Vector3 LeverCentre(LeverSide side) const;
    Vector3 LeverBall(LeverSide side, LeverState state) const;
    ContactLine LeverLine(LeverSide side, LeverState state) const;
    /// How the machine has to turn, touching the lever's ball, to push it out of `state` into the other.
    Turning LeverPush(LeverSide side, LeverState state) const;
    /// The lever within reach while the head stands at `angles`: the stylus, or at A = 0 the drive cup, points away
    /// from the pole sphere's stem.
    static LeverSide LeverInReach(const HeadAngles& angles);

    /// The vertical about which the machine swings round the pole sphere, half-way between the levers.
    Vector3 SwingCentre() const;

private:
    Vector3 centre;
    double mountedTurn;
    HeadDimensions dimensions;
};

constexpr LeverSide OtherLever(LeverSide side) { return side == LeverSide::Plus ? LeverSide::Minus : LeverSide::Plus; }

} // namespace qmv40::model
