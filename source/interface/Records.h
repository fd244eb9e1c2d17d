#pragma once

/// The four records that cross the interface. All fields are doubles, packed as declared: lengths in the unit of the
/// captured points, positions in machine coordinates, angles in degrees. The peg is the pole sphere: the fixed
/// ball on which the head is turned.

/// A position: one that the machine moves to, or that of the pole sphere.
struct XYZData {
    double XPosition;
    double YPosition;
    double ZPosition;
};

/// A turn of the machine's position about an axis. With a positive `RotationAngle` the position moves clockwise when
/// seen from the tip of the rotation vector towards its origin (left-handed).
struct ArcData {
    double XOrigin; ///< a point on the rotation axis
    double YOrigin;
    double ZOrigin;
    double iRotationVector; ///< direction of the rotation axis, unit length
    double jRotationVector;
    double kRotationVector;
    double RotationAngle; ///< degrees, signed
};

/// A captured point: the machine position while the stylus tip is on the pole sphere and the head is unlocked, and the
/// head's angles at that moment.
struct HeadAlignmentDataItem {
    double APosition; ///< degrees
    double BPosition; ///< degrees
    double XPosition;
    double YPosition;
    double ZPosition;
};

/// The 19 moves of one indexing, in the order in which the machine makes them.
struct RequiredMoves {
    XYZData ApproachUnLockLever;
    XYZData EngageWithUnLockLever;
    ArcData UnLock;
    XYZData DisengageFromUnLockLever;
    ArcData RotateToPeg;
    XYZData MoveToPegAtSafeZ;
    XYZData ApproachPeg;
    XYZData EngageWithPeg;
    ArcData IntermediateAPosition;
    ArcData MoveToBPosition;
    ArcData MoveToAPosition;
    XYZData DisengageFromPeg;
    XYZData DisengageFromPegToSafeZ;
    ArcData RotateToLockLever;
    XYZData MoveToLockLeverAtSafeZ;
    XYZData ApproachLockLever;
    XYZData EngageWithLockLever;
    ArcData Lock;
    XYZData DisengageFromLockLever;
};

static_assert(sizeof(XYZData) == 24 && sizeof(ArcData) == 56);
static_assert(sizeof(HeadAlignmentDataItem) == 40 && sizeof(RequiredMoves) == 680);
