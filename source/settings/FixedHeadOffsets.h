#pragma once

/// The fourteen fixed dimensions of the head's mechanics. Each has a built-in default that a text value in the settings
/// store may override, machine by machine, under the key "Software\Hollbeck\VRX Software\QMV40Calculator".
///
/// Every reader reads the store afresh; nothing is cached or written. A missing key or value gives the default,
/// silently. Text that does not begin a number is 0.0, not the default. Lengths in the unit of the alignment points.
/// The values of one offset are read in the order X, Y, Z, each with a buffer only as long as the text before it: see
/// the source for what that does to a site that overrides only Y or Z.

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

/// How far the lever turns when it is unlocked, degrees.
double ReadLockedToUnlockedLeverRotation();

/// How far the lever turns when it is locked, degrees.
double ReadUnlockedToLockedLeverRotation();
