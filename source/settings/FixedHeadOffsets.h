#pragma once

namespace qmv40 {

/// The fixed offsets and rotations of the head's mechanics, as the head model takes them from the settings store: see
/// HeadSettings.h for their names, their built-in values and the rules of reading.
///
/// Every function opens the store's key, reads it and closes it; nothing is cached or written. No function fails: a
/// missing setting has its built-in value. Lengths in the unit of the captured points, angles in degrees.

struct FixedOffset {
    double x;
    double y;
    double z;
};

/// Head centre to drive cup, in the head's frame at A = 0, B = 0.
FixedOffset ReadHeadCentreToDriveCupOffset();

/// Head centre to lever centre. `leverSide` 0: the positive lever; any other: the negative one, X mirrored.
FixedOffset ReadHeadCentreToLeverCentreOffset(int leverSide);

/// Lever centre to the centre of the lever's ball. `leverState` 0: locked; any other: unlocked, Y mirrored.
FixedOffset ReadLeverCentreToBallCentreOffset(int leverState);

/// How far the head moves when its lever is unlocked.
FixedOffset ReadLockedToUnlockedOffset();

/// How far the lever turns when it is unlocked.
double ReadLockedToUnlockedLeverRotation();

/// How far the lever turns when it is locked.
double ReadUnlockedToLockedLeverRotation();

} // namespace qmv40
