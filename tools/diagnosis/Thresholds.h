#pragma once

/// What counts as too much. Lengths in millimetres, angles in degrees.
namespace qmv40::diagnosis::thresholds {

/// How often chance alone may set off one kind of finding on a faultless capture; a test that looks at many points or
/// many explanations shares this among them. With some eight kinds of findings fewer than one faultless capture in a
/// thousand is called into question, and a real mistake is still thousands of times larger than what is needed.
inline constexpr double falseAlarmRate = 1e-4;

/// Points that agree better than this are taken to scatter by this much: coordinates are written to five or six
/// decimals, and what lies below is rounding, which follows no law of chance.
inline constexpr double noiseFloor = 1e-5;
inline constexpr double leastVariance = noiseFloor * noiseFloor;

/// A point is not trusted better than this when a head centre's standard deviation is judged: no machine and head
/// return to a sphere more closely, and a handful of points may agree better by luck.
inline constexpr double pointNoiseAtLeast = 1e-3;

/// Machines touch a sphere to some thousandths; what scatters by a tenth is no noise.
inline constexpr double noiseCeiling = 0.1;

/// A notch of a head is in its place to a few hundredths at worst: how far points may miss the places that their angles
/// give them.
inline constexpr double notchCeiling = 0.1;

/// The head stands in notches 15 apart and people write whole degrees: what looks like a single wrong angle, but a
/// smaller one, is a point that stands off its place.
inline constexpr double leastWrongAngle = 0.5;

/// What moves a point by less than this is merely suspicious: points a little off their places spoil a geometry, but
/// do not contradict it.
inline constexpr double leastWrongPlace = 0.1;

/// Axes out of square, a leaning B axis: what is worth a warning moves the lever, 45 from the head centre, by some
/// hundredths; what is called a fault no head can be.
inline constexpr double tiltWorthAWarning = 0.05;
inline constexpr double tiltBeyondAnyHead = 1.0;

/// The same for axes that pass each other.
inline constexpr double gapWorthAWarning = 0.05;
inline constexpr double gapBeyondAnyHead = 0.5;

/// Axes nearer than this to parallel are not two axes of one head at all.
inline constexpr double nearlyParallel = 30.0;

/// Two mounting angles that agree better than this agree: it moves the lever by less than a hundredth, and axes a
/// little out of square let the two be read that differently.
inline constexpr double leastWrongRotation = 0.01;

/// Twice the standard deviation of the head centre, when the user asks for nothing else.
inline constexpr double centreWithin = 0.05;

} // namespace qmv40::diagnosis::thresholds
